#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// Textures by file name, without regard to case. Names handed out are valid until releaseAll. Without a GL
/// context pictures are still read and names given, so that models keep their texture names when they are
/// written.
class cTextureCache {
public:
    static cTextureCache& instance();

    /// GL texture name, −1 when the picture cannot be read (it is tried again at the next request).
    int32_t load(const std::string& fileName);
    /// Mipmapped 2D texture from rows of 24 or 32 bit pixels.
    int32_t create(int32_t width, int32_t height, int bpp, const void* pixels);
    /// 1D RGB texture with nearest filtering, clamped to its edge.
    int32_t create1D(const void* texels, int32_t width);
    /// File that a texture was loaded from; empty when unknown.
    std::string fileName(int32_t texture) const;
    void releaseAll();

private:
    std::vector<uint32_t> ids_;
    std::vector<std::string> names_; ///< one entry per id; empty for textures that come from no file
    std::vector<uint32_t> ids1D_;
    uint32_t nextWithoutContext_ = 0;
};
