#pragma once
#include "platform/files.h"

#include <cstdint>
#include <string>

/// A picture in memory: rows packed without padding, memory row 0 is the bottom row, channels R, G, B (, A).
class cImage {
public:
    /// TGA (types 2 and 10, 24 or 32 bit) or, when the name contains ".bmp" or ".BMP", BMP (8 or 24 bit).
    /// 0, or −1 with one error row in the log and no pixels.
    int load(const std::string& fileName);

    int32_t width() const { return width_; }
    int32_t height() const { return height_; }
    uint8_t bpp() const { return bpp_; } ///< 24 or 32
    const platform::Bytes& pixels() const { return pixels_; }
    /// Exchanges two bytes of every pixel; nothing for channels that the picture does not have.
    void swapChannels(int a, int b);

private:
    int loadTga(const std::string& fileName);
    int loadBmp(const std::string& fileName);

    int32_t width_ = 0, height_ = 0;
    uint8_t bpp_ = 0;
    platform::Bytes pixels_;
};
