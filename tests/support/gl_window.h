#pragma once
#include <cstdint>
#include <gtest/gtest.h>

/// A test with a real OpenGL context: a 64 × 64 window with a stencil buffer, identity matrices (clip space
/// is world space), everything cleared. Fails when there is no display.
class GlTest : public ::testing::Test {
protected:
    static constexpr int kSize = 64;

    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;
    void TearDown() override; ///< no GL error may be left

    /// Red, green and blue, 0xRRGGBB, of a pixel by clip coordinates −1 … 1.
    static uint32_t pixel(float x, float y);
    static int stencil(float x, float y);
};
