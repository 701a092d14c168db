#include "render/particles.h"

#include "support/temp_game.h"

#include <gtest/gtest.h>

namespace {
/// With a look at what the particles become.
struct Smoke : cSmoke {
    using cSmoke::cSmoke;
    const cParticle& first() const { return particles_[0]; }
};
/// Until nothing is left.
template <typename System> int updates(System& system) {
    int count = 0;
    for (; system.count() > 0 && count < 1000; ++count) system.update(0.15f);
    return count;
}
} // namespace

TEST(Particles, SmokeStaysGreyAndABurstGoesOutFirst) {
    const TempGame game; // without pictures
    Smoke smoke({1, 2, 3});
    EXPECT_EQ(smoke.count(), 30u);
    for (int i = 0; i < 100; ++i) smoke.update(0.15f);
    for (const float channel : {smoke.first().r, smoke.first().g, smoke.first().b})
        EXPECT_NEAR(channel, 0.6f, 1e-4f);
    EXPECT_NEAR(smoke.first().a, 0.4f, 1e-4f);
    EXPECT_NEAR(100 + updates(smoke), 180, 1);
    cExplosion burst({0, 0, 0});
    EXPECT_EQ(burst.count(), 100u);
    EXPECT_NEAR(updates(burst), 81, 1);
    startExplosion({0, 0, 0});
    for (int i = 0; i < 100; ++i) tickEffects();
    startExplosion({5, 0, 0});
    int ticks = 0;
    for (; effectsRunning() && ticks < 1000; ++ticks) tickEffects();
    EXPECT_NEAR(ticks, 181, 2) << "a new explosion replaces the pair";
    destroyEffects();
}
