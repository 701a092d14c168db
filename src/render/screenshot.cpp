#include "render/screenshot.h"

#include "platform/gl_api.h"

#include <cstring>
#include <png.h>
#include <vector>

bool writeScreenshot(const std::string& path, int width, int height) {
    std::vector<unsigned char> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    // A negative stride means that the first row in memory is the bottom one.
    return png_image_write_to_file(&image, path.c_str(), 0, pixels.data(), -width * 3, nullptr) != 0;
}
