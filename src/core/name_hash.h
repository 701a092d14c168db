#pragma once
#include <cstdint>
#include <string_view>

/// Identity of a name: c0 + c1·1 + c2·2 + … + c(n−1)·(n−1) over signed characters, wrapping in 32 bits.
/// Weak on purpose of the data format ("ab" and "ba" both give 195): look-ups take the first match.
constexpr int32_t nameHash(std::string_view name) {
    uint32_t h = 0;
    for (size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(name[i])));
        h += i == 0 ? c : c * static_cast<uint32_t>(i);
    }
    return static_cast<int32_t>(h);
}
