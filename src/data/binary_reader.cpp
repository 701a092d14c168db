#include "data/binary_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {
/// Bytes of a little-endian file into words of this machine.
void toNative(void* words, size_t count, size_t wordBytes) {
    if constexpr (std::endian::native == std::endian::little) return;
    auto* bytes = static_cast<uint8_t*>(words);
    for (size_t i = 0; i < count; ++i) std::reverse(bytes + i * wordBytes, bytes + (i + 1) * wordBytes);
}
} // namespace

void cBinaryReader::seek(size_t position) {
    if (position > bytes_.size()) {
        bad_ = true;
    } else {
        at_ = position;
    }
}

void cBinaryReader::skip(size_t count) {
    if (count > left()) {
        bad_ = true;
    } else {
        at_ += count;
    }
}

void cBinaryReader::recover(size_t position) {
    bad_ = false;
    at_ = std::min(position, bytes_.size());
}

bool cBinaryReader::canHold(int64_t count, size_t bytesEach) {
    const bool ok = count >= 0 && (bytesEach == 0 || static_cast<uint64_t>(count) <= left() / bytesEach);
    if (!ok) bad_ = true;
    return ok;
}

bool cBinaryReader::raw(void* out, size_t count) {
    if (count > left()) {
        bad_ = true;
        std::memset(out, 0, count);
        return false;
    }
    if (count > 0) std::memcpy(out, bytes_.data() + at_, count);
    at_ += count;
    return true;
}

bool cBinaryReader::words16(void* out, size_t count) {
    const bool ok = raw(out, count * 2);
    toNative(out, count, 2);
    return ok;
}

bool cBinaryReader::words32(void* out, size_t count) {
    const bool ok = raw(out, count * 4);
    toNative(out, count, 4);
    return ok;
}

uint8_t cBinaryReader::u8() {
    uint8_t b = 0;
    raw(&b, 1);
    return b;
}

uint16_t cBinaryReader::u16() {
    uint8_t b[2];
    raw(b, 2);
    return static_cast<uint16_t>(b[0] | b[1] << 8);
}

uint32_t cBinaryReader::u32() {
    uint8_t b[4];
    raw(b, 4);
    return static_cast<uint32_t>(b[0]) | static_cast<uint32_t>(b[1]) << 8 |
           static_cast<uint32_t>(b[2]) << 16 | static_cast<uint32_t>(b[3]) << 24;
}

float cBinaryReader::f32() {
    const uint32_t bits = u32();
    float v;
    std::memcpy(&v, &bits, 4);
    return v;
}

cVector3 cBinaryReader::vector3() {
    const float x = f32(), y = f32(), z = f32();
    return {x, y, z};
}

std::string cBinaryReader::fixedText(size_t size) {
    if (size > left()) {
        bad_ = true;
        return {};
    }
    const char* start = reinterpret_cast<const char*>(bytes_.data() + at_);
    at_ += size;
    return {start, strnlen(start, size)};
}

std::string cBinaryReader::zeroText(size_t limit) {
    const size_t available = left();
    if (available == 0) {
        bad_ = true;
        return {};
    }
    const char* start = reinterpret_cast<const char*>(bytes_.data() + at_);
    // No further than the limit: whoever tries many positions may not pass over the file for each.
    const size_t reach = std::min(available, limit < SIZE_MAX ? limit + 1 : limit);
    const size_t length = strnlen(start, reach);
    if (length == reach) {
        bad_ = true;
        return {};
    }
    at_ += length + 1;
    return {start, length};
}

void cBinaryWriter::u16(uint16_t v) {
    u8(static_cast<uint8_t>(v));
    u8(static_cast<uint8_t>(v >> 8));
}

void cBinaryWriter::u32(uint32_t v) {
    u16(static_cast<uint16_t>(v));
    u16(static_cast<uint16_t>(v >> 16));
}

void cBinaryWriter::f32(float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, 4);
    u32(bits);
}

void cBinaryWriter::vector3(const cVector3& v) {
    f32(v.x);
    f32(v.y);
    f32(v.z);
}

void cBinaryWriter::raw(const void* data, size_t count) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    bytes_.insert(bytes_.end(), bytes, bytes + count);
}

void cBinaryWriter::fixedText(const std::string& text, size_t size) {
    const size_t n = std::min(text.size(), size - 1);
    raw(text.data(), n);
    bytes_.insert(bytes_.end(), size - n, 0);
}

void cBinaryWriter::zeroText(const std::string& text) {
    raw(text.c_str(), text.size() + 1);
}
