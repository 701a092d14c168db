#include "forge/noise.h"

#include <algorithm>
#include <cmath>

namespace forge {
float latticeValue(int x, int y, uint32_t seed) {
    uint32_t h =
        static_cast<uint32_t>(x) * 0x8da6b343u ^ static_cast<uint32_t>(y) * 0xd8163841u ^ seed * 0xcb1ab31fu;
    h ^= h >> 15;
    h *= 0x2c1b3c6du;
    h ^= h >> 12;
    h *= 0x297a2d39u;
    h ^= h >> 15;
    return static_cast<float>(h & 0xffffffu) / 16777215.0f;
}

static int wrapped(int value, int period) {
    return period > 0 ? ((value % period) + period) % period : value;
}

float noise(float x, float y, uint32_t seed, int period) {
    const int ix = static_cast<int>(std::floor(x)), iy = static_cast<int>(std::floor(y));
    const float fx = x - static_cast<float>(ix), fy = y - static_cast<float>(iy);
    const float sx = fx * fx * (3 - 2 * fx), sy = fy * fy * (3 - 2 * fy);
    const int x0 = wrapped(ix, period), x1 = wrapped(ix + 1, period);
    const int y0 = wrapped(iy, period), y1 = wrapped(iy + 1, period);
    const float top = mix(latticeValue(x0, y0, seed), latticeValue(x1, y0, seed), sx);
    const float bottom = mix(latticeValue(x0, y1, seed), latticeValue(x1, y1, seed), sx);
    return mix(top, bottom, sy);
}

float fractalNoise(float x, float y, uint32_t seed, int octaves, int period) {
    float sum = 0, weight = 1, total = 0;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * noise(x, y, seed + static_cast<uint32_t>(i) * 17u, period);
        total += weight;
        weight *= 0.5f;
        x *= 2;
        y *= 2;
        period *= 2;
    }
    return sum / total;
}

float smoothStep(float a, float b, float x) {
    const float t = clamp01((x - a) / (b - a));
    return t * t * (3 - 2 * t);
}

float clamp01(float x) {
    return std::clamp(x, 0.0f, 1.0f);
}

float mix(float a, float b, float t) {
    return a + (b - a) * t;
}
} // namespace forge
