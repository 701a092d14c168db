#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <span>
#include <vector>

/// Group of a position that is no number: it equals nothing, not even itself.
constexpr uint32_t kNoPosition = UINT32_MAX;

/// For each position the index of the first one that equals it exactly (−0 equals 0), in linear time.
std::vector<uint32_t> firstEqualPositions(std::span<const cVector3> positions);
