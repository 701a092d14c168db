#include "render/image.h"

#include "core/log_mgr.h"
#include "data/binary_reader.h"

#include <algorithm>

namespace {
int fail(const char* format, const std::string& fileName) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    char text[4096];
    std::snprintf(text, sizeof text, format, fileName.c_str());
#pragma GCC diagnostic pop
    cLogMgr::instance().error("%s", text);
    return -1;
}
constexpr const char* kNotFound = "Cannot find image \"%s\"";
constexpr const char* kCorrupt = "File \"%s\" is invalid or corrupt";
constexpr const char* kCorruptRaw = "File %s is invalid or corrupt";

/// Appends run-length packets to `pixels` up to `size` bytes; null when all is well, else the row to log. A
/// packet that runs past the last pixel is clipped. The array grows with what was read: a header alone
/// reserves nothing.
const char* decodeRuns(cBinaryReader& in, platform::Bytes& pixels, uint64_t size, size_t pixelBytes) {
    while (pixels.size() < size) {
        if (in.left() == 0) return kCorrupt;
        const uint8_t head = in.u8();
        const size_t at = pixels.size();
        const size_t packet = (head < 128 ? head + 1u : head - 127u) * pixelBytes;
        const auto bytes = static_cast<size_t>(std::min<uint64_t>(packet, size - at));
        pixels.resize(at + bytes);
        if (head < 128) {
            if (!in.raw(pixels.data() + at, bytes)) return kCorruptRaw;
        } else {
            if (!in.raw(pixels.data() + at, pixelBytes)) return kCorrupt;
            // Doubling copies: each copy is as long as what is there already.
            for (size_t done = pixelBytes; done < bytes;) {
                const size_t n = std::min(done, bytes - done);
                std::copy_n(pixels.data() + at, n, pixels.data() + at + done);
                done += n;
            }
        }
    }
    return nullptr;
}
} // namespace

int cImage::load(const std::string& fileName) {
    pixels_.clear();
    width_ = height_ = 0;
    const bool isBmp =
        fileName.find(".bmp") != std::string::npos || fileName.find(".BMP") != std::string::npos;
    const int result = isBmp ? loadBmp(fileName) : loadTga(fileName);
    if (result != 0) {
        pixels_.clear();
        width_ = height_ = 0;
    }
    return result;
}

void cImage::swapChannels(int a, int b) {
    const int channels = bpp_ / 8;
    if (a < 0 || b < 0 || a >= channels || b >= channels || a == b) return;
    const auto step = static_cast<size_t>(channels);
    uint8_t* p = pixels_.data();
    for (size_t i = 0; i + step <= pixels_.size(); i += step)
        std::swap(p[i + static_cast<size_t>(a)], p[i + static_cast<size_t>(b)]);
}

int cImage::loadTga(const std::string& fileName) {
    cBinaryReader in(fileName);
    if (!in.isOpen()) return fail(kNotFound, fileName);
    uint8_t header[18];
    if (!in.raw(header, sizeof header)) return fail(kCorrupt, fileName);
    const uint8_t type = header[2];
    if (type != 2 && type != 10) return fail(kCorrupt, fileName);
    width_ = header[12] | header[13] << 8;
    height_ = header[14] | header[15] << 8;
    bpp_ = header[16];
    if (bpp_ != 24 && bpp_ != 32) return fail("Unsupported format in file \"%s\"", fileName);
    const size_t pixelBytes = bpp_ / 8u;
    const uint64_t count = static_cast<uint64_t>(width_) * static_cast<uint64_t>(height_);
    in.skip(header[0]);
    if (count == 0 || !in.good()) return fail(kCorrupt, fileName);
    const size_t rowBytes = static_cast<size_t>(width_) * pixelBytes;
    const auto rows = static_cast<size_t>(height_);
    if (type == 2) {
        if (count * pixelBytes > in.left()) return fail(kCorrupt, fileName);
        pixels_.resize(count * pixelBytes);
        for (size_t row = 0; row < rows; ++row)
            in.raw(pixels_.data() + (rows - 1 - row) * rowBytes, rowBytes);
    } else {
        if (const char* problem = decodeRuns(in, pixels_, count * pixelBytes, pixelBytes))
            return fail(problem, fileName);
        for (size_t row = 0; row < rows / 2; ++row) {
            uint8_t* low = pixels_.data() + row * rowBytes;
            std::swap_ranges(low, low + rowBytes, pixels_.data() + (rows - 1 - row) * rowBytes);
        }
    }
    swapChannels(0, 2);
    return 0;
}

int cImage::loadBmp(const std::string& fileName) {
    cBinaryReader in(fileName);
    if (!in.isOpen()) return fail(kNotFound, fileName);
    in.seek(10);
    const uint32_t dataOffset = in.u32();
    in.seek(18);
    width_ = in.i32();
    height_ = in.i32();
    in.seek(28);
    const uint32_t format = in.u32(); // bit count, and above it the low half of the compression
    if (!in.good()) return fail(kCorrupt, fileName);
    if (format != 8 && format != 24)
        return fail("\"%s\": Cannot handle BMP images not using 8 or 24 bpp", fileName);
    uint8_t palette[256][4] = {};
    if (format == 8) {
        in.seek(54);
        in.raw(palette, sizeof palette);
    }
    in.seek(dataOffset);
    if (width_ <= 0 || height_ <= 0 || !in.good()) return fail(kCorrupt, fileName);
    const uint64_t count = static_cast<uint64_t>(width_) * static_cast<uint64_t>(height_);
    if (count * (format / 8) > in.left()) return fail(kCorrupt, fileName);

    bpp_ = 24;
    pixels_.resize(count * 3);
    if (format == 24) {
        in.raw(pixels_.data(), pixels_.size());
    } else {
        for (size_t i = 0; i < count; ++i) std::copy_n(palette[in.u8()], 3, pixels_.data() + i * 3);
    }
    swapChannels(0, 2);
    return 0;
}
