#include "render/image.h"

#include "core/log_mgr.h"
#include "data/binary_reader.h"

#include <algorithm>
#include <cstring>
#include <span>

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
constexpr const char* kNoMemory = "Out of memory loading file \"%s\"";
constexpr const char* kCorruptRaw = "File %s is invalid or corrupt";

constexpr uint64_t kLargestPicture = uint64_t{1} << 30; ///< bytes of pixels

// Where the fields of the two headers stand, bytes from the file's start.
constexpr size_t kTgaHeader = 18, kTgaIdLength = 0, kTgaType = 2, kTgaWidth = 12, kTgaHeight = 14,
                 kTgaBits = 16;
constexpr uint8_t kTgaPlain = 2, kTgaRunLength = 10;
constexpr size_t kBmpDataOffset = 10, kBmpSize = 18, kBmpBits = 28, kBmpPalette = 54;

void swapBytes(std::span<uint8_t> pixels, size_t step, size_t a, size_t b) {
    for (size_t i = 0; i + step <= pixels.size(); i += step) std::swap(pixels[i + a], pixels[i + b]);
}

/// Fills with one pixel of 3 or 4 bytes: each copy is as long as what is there already.
void repeat(const uint8_t* pixel, size_t pixelBytes, std::span<uint8_t> out) {
    std::copy_n(pixel, pixelBytes, out.data());
    for (size_t done = pixelBytes; done < out.size();) {
        const size_t n = std::min(done, out.size() - done);
        std::memcpy(out.data() + done, out.data(), n);
        done += n;
    }
}

/// Run-length packets into rows, the file's first row last, red and blue exchanged.
class cRunDecoder {
public:
    cRunDecoder(cBinaryReader& in, size_t pixelBytes, size_t rowBytes, size_t rows)
        : in_(in), pixelBytes_(pixelBytes), rowBytes_(rowBytes), left_(uint64_t{rowBytes} * rows) {}

    /// Null when all is well, else the row to log. A header alone reserves nothing: memory is taken only when
    /// the packets can fill it.
    const char* decode(platform::Bytes& pixels) {
        const uint64_t packets = in_.left() / (1 + pixelBytes_) + 1;
        writes_ = left_ <= packets * kLongestPacket * pixelBytes_;
        if (writes_ && left_ > kLargestPicture) return kNoMemory;
        if (writes_) pixels.resize(static_cast<size_t>(left_));
        row_ = pixels.data() + pixels.size();
        while (left_ > 0) {
            if (const char* problem = packet()) return problem;
        }
        return nullptr;
    }

private:
    /// One that runs past the last pixel is clipped.
    const char* packet() {
        if (in_.left() == 0) return kCorrupt;
        const uint8_t head = in_.u8();
        const bool run = head >= 128;
        const uint64_t length = (run ? head - 127u : head + 1u) * pixelBytes_;
        uint8_t pixel[4] = {};
        if (run && !in_.raw(pixel, pixelBytes_)) return kCorrupt;
        std::swap(pixel[0], pixel[2]);
        const auto bytes = static_cast<size_t>(std::min<uint64_t>(length, left_));
        left_ -= bytes;
        if (!writes_ && !run) in_.skip(bytes);
        for (size_t done = 0; writes_ && done < bytes && in_.good();) {
            const std::span<uint8_t> out = next(bytes - done);
            run ? repeat(pixel, pixelBytes_, out) : copy(out);
            done += out.size();
        }
        return in_.good() ? nullptr : kCorruptRaw;
    }
    void copy(std::span<uint8_t> out) {
        in_.raw(out.data(), out.size());
        swapBytes(out, pixelBytes_, 0, 2);
    }
    /// The next bytes to fill, at most to the end of the row.
    std::span<uint8_t> next(size_t most) {
        if (column_ == rowBytes_) column_ = 0;
        if (column_ == 0) row_ -= rowBytes_;
        const std::span<uint8_t> out(row_ + column_, std::min(most, rowBytes_ - column_));
        column_ += out.size();
        return out;
    }

    static constexpr uint64_t kLongestPacket = 128; ///< pixels
    cBinaryReader& in_;
    const size_t pixelBytes_, rowBytes_;
    uint64_t left_;
    bool writes_ = false;
    uint8_t* row_ = nullptr;
    size_t column_ = 0;
};
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
    swapBytes(pixels_, static_cast<size_t>(channels), static_cast<size_t>(a), static_cast<size_t>(b));
}

int cImage::loadTga(const std::string& fileName) {
    cBinaryReader in(fileName);
    if (!in.isOpen()) return fail(kNotFound, fileName);
    uint8_t header[kTgaHeader];
    if (!in.raw(header, sizeof header)) return fail(kCorrupt, fileName);
    const uint8_t type = header[kTgaType];
    if (type != kTgaPlain && type != kTgaRunLength) return fail(kCorrupt, fileName);
    width_ = header[kTgaWidth] | header[kTgaWidth + 1] << 8;
    height_ = header[kTgaHeight] | header[kTgaHeight + 1] << 8;
    bpp_ = header[kTgaBits];
    if (bpp_ != 24 && bpp_ != 32) return fail("Unsupported format in file \"%s\"", fileName);
    const size_t pixelBytes = bpp_ / 8u;
    const uint64_t count = static_cast<uint64_t>(width_) * static_cast<uint64_t>(height_);
    in.skip(header[kTgaIdLength]);
    if (count == 0 || !in.good()) return fail(kCorrupt, fileName);
    const size_t rowBytes = static_cast<size_t>(width_) * pixelBytes;
    const auto rows = static_cast<size_t>(height_);
    if (type == kTgaRunLength) {
        const char* problem = cRunDecoder(in, pixelBytes, rowBytes, rows).decode(pixels_);
        return problem ? fail(problem, fileName) : 0;
    }
    if (count * pixelBytes > in.left()) return fail(kCorrupt, fileName);
    pixels_.resize(count * pixelBytes);
    for (size_t row = 0; row < rows; ++row) in.raw(pixels_.data() + (rows - 1 - row) * rowBytes, rowBytes);
    swapChannels(0, 2);
    return 0;
}

int cImage::loadBmp(const std::string& fileName) {
    cBinaryReader in(fileName);
    if (!in.isOpen()) return fail(kNotFound, fileName);
    in.seek(kBmpDataOffset);
    const uint32_t dataOffset = in.u32();
    in.seek(kBmpSize);
    width_ = in.i32();
    height_ = in.i32();
    in.seek(kBmpBits);
    const uint32_t format = in.u32(); // bit count, and above it the low half of the compression
    if (!in.good()) return fail(kCorrupt, fileName);
    if (format != 8 && format != 24)
        return fail("\"%s\": Cannot handle BMP images not using 8 or 24 bpp", fileName);
    uint8_t palette[256][4] = {};
    if (format == 8) {
        // OUR OWN RULE: a short palette ends where the pixels begin; the colours that are missing are black.
        in.seek(kBmpPalette);
        size_t bytes = std::min(sizeof palette, in.left());
        if (dataOffset > kBmpPalette) bytes = std::min<size_t>(bytes, dataOffset - kBmpPalette);
        in.raw(palette, bytes / 4 * 4);
    }
    in.seek(dataOffset);
    if (width_ <= 0 || height_ <= 0 || !in.good()) return fail(kCorrupt, fileName);
    const uint64_t count = static_cast<uint64_t>(width_) * static_cast<uint64_t>(height_);
    if (count * (format / 8) > in.left()) return fail(kCorrupt, fileName);

    if (count * 3 > kLargestPicture) return fail(kNoMemory, fileName);
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
