#include "core/equal_positions.h"

#include <bit>

namespace {
uint64_t bits(float f) {
    return std::bit_cast<uint32_t>(f + 0.0f); // −0 equals 0, so both must hash alike
}

uint64_t hashOf(const cVector3& p) {
    uint64_t h = bits(p.x) * 0x9E3779B97F4A7C15ull;
    h = (h ^ (h >> 29) ^ bits(p.y)) * 0xBF58476D1CE4E5B9ull;
    return (h ^ (h >> 32) ^ bits(p.z)) * 0x94D049BB133111EBull;
}
} // namespace

const std::vector<uint32_t>& cEqualPositions::find(std::span<const cVector3> positions) {
    const size_t slots = std::bit_ceil(positions.size() * 2 + 2); // never more than half full
    const int shift = 64 - std::countr_zero(slots);
    table_.assign(slots, kNoPosition);
    first_.resize(positions.size());
    for (uint32_t i = 0; i < positions.size(); ++i) {
        const cVector3& p = positions[i];
        if (!(p == p)) {
            first_[i] = kNoPosition;
            continue;
        }
        size_t slot = static_cast<size_t>(hashOf(p) >> shift);
        while (table_[slot] != kNoPosition && !(positions[table_[slot]] == p))
            slot = (slot + 1) & (slots - 1);
        if (table_[slot] == kNoPosition) table_[slot] = i;
        first_[i] = table_[slot];
    }
    return first_;
}

std::vector<uint32_t> firstEqualPositions(std::span<const cVector3> positions) {
    return cEqualPositions().find(positions);
}
