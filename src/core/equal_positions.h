#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <span>
#include <vector>

/// Group of a position that is no number: it equals nothing, not even itself.
constexpr uint32_t kNoPosition = UINT32_MAX;

/// Groups of exactly equal positions (−0 equals 0), in linear time. Keeps its memory for the next mesh.
class cEqualPositions {
public:
    /// For each position the index of the first one that equals it. Valid until the next call.
    const std::vector<uint32_t>& find(std::span<const cVector3> positions);

private:
    std::vector<uint32_t> first_;
    std::vector<uint32_t> table_; ///< hash table of indices, open addressing; a power of two long
};

std::vector<uint32_t> firstEqualPositions(std::span<const cVector3> positions);
