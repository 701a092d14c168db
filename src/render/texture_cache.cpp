#include "render/texture_cache.h"

#include "platform/files.h"
#include "platform/gl_api.h"
#include "render/image.h"

cTextureCache& cTextureCache::instance() {
    static cTextureCache cache;
    return cache;
}

int32_t cTextureCache::load(const std::string& fileName) {
    for (size_t i = 0; i < names_.size(); ++i) {
        if (!names_[i].empty() && platform::equalIgnoringCase(names_[i], fileName))
            return static_cast<int32_t>(ids_[i]);
    }
    cImage image;
    if (image.load(fileName) != 0) return -1;
    const int32_t id = create(image.width(), image.height(), image.bpp(), image.pixels().data());
    names_.back() = fileName;
    return id;
}

int32_t cTextureCache::create(int32_t width, int32_t height, int bpp, const void* pixels) {
    GLuint id = ++nextWithoutContext_;
    if (platform::hasGlContext()) {
        const GLenum format = bpp > 24 ? GL_RGBA : GL_RGB;
        glGenTextures(1, &id);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glBindTexture(GL_TEXTURE_2D, id);
        gluBuild2DMipmaps(GL_TEXTURE_2D, bpp / 8, width, height, format, GL_UNSIGNED_BYTE, pixels);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    }
    ids_.push_back(id);
    names_.emplace_back();
    return static_cast<int32_t>(id);
}

int32_t cTextureCache::create1D(const void* texels, int32_t width) {
    if (!platform::hasGlContext()) return -1;
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_1D, id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    // A shade of exactly 1 would wrap to the dark end of the ramp.
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexImage1D(GL_TEXTURE_1D, 0, GL_RGB, width, 0, GL_RGB, GL_UNSIGNED_BYTE, texels);
    ids1D_.push_back(id);
    return static_cast<int32_t>(id);
}

std::string cTextureCache::fileName(int32_t texture) const {
    std::string found;
    for (size_t i = 0; i < ids_.size(); ++i) {
        if (static_cast<int32_t>(ids_[i]) == texture) found = names_[i];
    }
    return found;
}

void cTextureCache::releaseAll() {
    if (platform::hasGlContext()) {
        for (size_t i = ids_.size(); i-- > 0;) glDeleteTextures(1, &ids_[i]);
        for (const uint32_t& id : ids1D_) glDeleteTextures(1, &id);
    }
    ids_.clear();
    names_.clear();
    ids1D_.clear();
    nextWithoutContext_ = 0;
}
