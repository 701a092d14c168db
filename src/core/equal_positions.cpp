#include "core/equal_positions.h"

#include <cstring>
#include <unordered_map>

namespace {
struct PositionHash {
    static uint64_t bits(float f) {
        const float positive = f == 0.0f ? 0.0f : f; // −0 equals 0, so both must hash alike
        uint32_t b;
        std::memcpy(&b, &positive, sizeof b);
        return b;
    }
    size_t operator()(const cVector3& p) const {
        uint64_t h = bits(p.x) * 0x9E3779B97F4A7C15ull;
        h = (h ^ (h >> 29) ^ bits(p.y)) * 0xBF58476D1CE4E5B9ull;
        h = (h ^ (h >> 32) ^ bits(p.z)) * 0x94D049BB133111EBull;
        return static_cast<size_t>(h ^ (h >> 31));
    }
};
} // namespace

std::vector<uint32_t> firstEqualPositions(std::span<const cVector3> positions) {
    std::unordered_map<cVector3, uint32_t, PositionHash> first;
    first.reserve(positions.size());
    std::vector<uint32_t> result(positions.size(), kNoPosition);
    for (uint32_t i = 0; i < positions.size(); ++i) {
        const cVector3& p = positions[i];
        if (p == p) result[i] = first.try_emplace(p, i).first->second;
    }
    return result;
}
