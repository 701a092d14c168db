#pragma once
#include "core/vector3.h"
#include "platform/files.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

/// Bounds-checked little-endian reader over a whole file in memory. A read past the end gives zeros and makes
/// the reader bad for good; ask once at the end.
class cBinaryReader {
public:
    explicit cBinaryReader(const std::string& fileName) : open_(platform::readFile(fileName, bytes_)) {}
    explicit cBinaryReader(platform::Bytes bytes) : bytes_(std::move(bytes)), open_(true) {}

    bool isOpen() const { return open_; }
    bool good() const { return open_ && !bad_; }
    void setBad() { bad_ = true; }
    size_t position() const { return at_; }
    size_t size() const { return bytes_.size(); }
    size_t left() const { return bad_ ? 0 : bytes_.size() - at_; }
    /// Goes bad when the position lies behind the end.
    void seek(size_t position);
    void skip(size_t count);
    /// Reads on from a position as if nothing had failed: for what can be saved of a damaged file. Positions
    /// behind the end become the end.
    void recover(size_t position);
    const platform::Bytes& bytes() const { return bytes_; }
    /// Whether `count` records of at least `bytesEach` can still come; goes bad when not. Ask before any
    /// sizing.
    bool canHold(int64_t count, size_t bytesEach);

    uint8_t u8();
    uint16_t u16();
    uint32_t u32();
    int16_t i16() { return static_cast<int16_t>(u16()); }
    int32_t i32() { return static_cast<int32_t>(u32()); }
    float f32();
    cVector3 vector3();
    /// `count` raw bytes; false (and bad) when fewer are left.
    bool raw(void* out, size_t count);
    /// `count` little-endian words into the machine's own; false (and bad) when fewer are left.
    bool words16(void* out, size_t count);
    bool words32(void* out, size_t count);
    /// Replaces the array by `count` records that consist of 32-bit words. False (and bad), with nothing
    /// sized by the count, when they cannot all come.
    template <typename Record> bool records(std::vector<Record>& out, int64_t count) {
        static_assert(std::is_trivially_copyable_v<Record> && sizeof(Record) % 4 == 0);
        if (!canHold(count, sizeof(Record))) return false;
        out.resize(static_cast<size_t>(count));
        return words32(out.data(), out.size() * (sizeof(Record) / 4));
    }
    /// A fixed field of `size` bytes as text up to its first zero.
    std::string fixedText(size_t size);
    /// Text up to and without its zero terminator, at most `limit` characters (more goes bad).
    std::string zeroText(size_t limit);

private:
    platform::Bytes bytes_;
    size_t at_ = 0;
    bool open_ = false;
    bool bad_ = false;
};

/// Little-endian counterpart; collects bytes in memory, so a file is replaced whole or not at all.
class cBinaryWriter {
public:
    void u8(uint8_t v) { bytes_.push_back(v); }
    void u16(uint16_t v);
    void u32(uint32_t v);
    void i32(int32_t v) { u32(static_cast<uint32_t>(v)); }
    void f32(float v);
    void vector3(const cVector3& v);
    void raw(const void* data, size_t count);
    /// Cut to size − 1 characters, padded with zeros to `size`.
    void fixedText(const std::string& text, size_t size);
    /// The characters and a zero.
    void zeroText(const std::string& text);

    const platform::Bytes& bytes() const { return bytes_; }
    bool save(const std::string& fileName) const { return platform::writeFile(fileName, bytes_); }

private:
    platform::Bytes bytes_;
};
