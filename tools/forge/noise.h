#pragma once
#include <cstdint>

namespace forge {
/// A value in 0..1 that depends on the lattice point alone.
float latticeValue(int x, int y, uint32_t seed);
/// Smooth noise in 0..1. With period > 0 it repeats after so many lattice cells in both directions.
float noise(float x, float y, uint32_t seed, int period = 0);
/// Sum of `octaves` noises of halving size and weight, in 0..1; tiles when period > 0.
float fractalNoise(float x, float y, uint32_t seed, int octaves, int period = 0);
/// 0 below a, 1 above b, smooth between.
float smoothStep(float a, float b, float x);
float clamp01(float x);
float mix(float a, float b, float t);
} // namespace forge
