#include "support/picture.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <png.h>

Picture Picture::read(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
    image.format = PNG_FORMAT_RGB;
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.rgb.resize(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr);
    return picture;
}

uint32_t Picture::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return 0;
    const auto i = static_cast<size_t>((height - 1 - y) * width + x) * 3;
    return static_cast<uint32_t>(rgb[i] << 16 | rgb[i + 1] << 8 | rgb[i + 2]);
}

void Box::add(int x, int y) {
    loX = std::min(loX, x);
    loY = std::min(loY, y);
    hiX = std::max(hiX, x);
    hiY = std::max(hiY, y);
    ++count;
}

bool Box::within(int x0, int y0, int x1, int y1) const {
    return count == 0 || (loX >= x0 && loY >= y0 && hiX <= x1 && hiY <= y1);
}

std::ostream& operator<<(std::ostream& out, const Box& box) {
    return out << box.count << " pixels in " << box.loX << ", " << box.loY << " to " << box.hiX << ", "
               << box.hiY;
}

namespace {
template <typename Condition> Box where(const Picture& picture, Condition condition) {
    Box box;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (condition(x, y)) box.add(x, y);
        }
    }
    return box;
}
} // namespace

Box whereIs(const Picture& picture, uint32_t colour) {
    return where(picture, [&](int x, int y) { return picture.at(x, y) == colour; });
}

bool differs(uint32_t a, uint32_t b) {
    for (const int shift : {0, 8, 16}) {
        if (std::abs(static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255)) > 24)
            return true;
    }
    return false;
}

Box changed(const Picture& a, const Picture& b, int fromX, int fromY) {
    return where(a,
                 [&](int x, int y) { return x >= fromX && y >= fromY && differs(a.at(x, y), b.at(x, y)); });
}
