#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <cstdlib>
#include <string>

/// Numbers in data files, read the way the C library's atoi and atof do: as far as the text is a number, else 0.
inline int32_t toInt(const std::string& text) { return static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10)); }
inline float toFloat(const std::string& text) { return static_cast<float>(std::atof(text.c_str())); }

/// Before the first comma, between the first and the last, after the last; (0, 0, 0) with fewer than two commas.
inline cVector3 toVector3(const std::string& text) {
    const size_t first = text.find(','), last = text.rfind(',');
    if (first == std::string::npos || first == last) return {};
    return {toFloat(text.substr(0, first)), toFloat(text.substr(first + 1, last - first - 1)),
            toFloat(text.substr(last + 1))};
}
