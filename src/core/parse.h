#pragma once
#include "core/vector3.h"

#include <cfloat>
#include <cstdint>
#include <cstdlib>
#include <string>

/// Numbers in data files, read the way the C library's atoi and atof do: as far as the text is a number, else
/// 0.
inline int32_t toInt(const std::string& text) {
    return static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10));
}
/// A word that is no number ("nan") gives 0; what a float cannot hold becomes the largest one.
inline float toFloat(const std::string& text) {
    const double value = std::atof(text.c_str());
    const double largest = static_cast<double>(FLT_MAX);
    if (value > largest) return FLT_MAX;
    if (value < -largest) return -FLT_MAX;
    return value == value ? static_cast<float>(value) : 0.0f;
}

/// Before the first comma, between the first and the last, after the last; (0, 0, 0) with fewer than two
/// commas.
inline cVector3 toVector3(const std::string& text) {
    const size_t first = text.find(','), last = text.rfind(',');
    if (first == std::string::npos || first == last) return {};
    return {toFloat(text.substr(0, first)), toFloat(text.substr(first + 1, last - first - 1)),
            toFloat(text.substr(last + 1))};
}
