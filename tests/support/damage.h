#pragma once
#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <sys/resource.h>

/// Hands `read` every truncation of a good file and `flips` copies with a few bytes changed. Readers must
/// come back from each; what they return is theirs to decide.
template <typename Read> void readDamaged(const platform::Bytes& good, int flips, Read read) {
    for (size_t size = 0; size < good.size(); ++size) {
        read(platform::Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)));
    }
    uint32_t seed = 12345;
    const auto random = [&seed] { return (seed = seed * 1664525u + 1013904223u) >> 8; };
    for (int i = 0; i < flips; ++i) {
        platform::Bytes bytes = good;
        for (uint32_t n = 1 + random() % 3; n > 0; --n) {
            constexpr uint8_t kNasty[] = {0x00, 0xFF, 0x7F, 0x80, 0x01};
            bytes[random() % bytes.size()] =
                random() % 2 ? kNasty[random() % 5] : static_cast<uint8_t>(random());
        }
        read(bytes);
    }
}

/// While it lives no file grows beyond `bytes`, as if the disk were full there.
class FullDisk {
public:
    explicit FullDisk(size_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit now{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit before_{};
};
