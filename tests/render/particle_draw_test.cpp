#include "platform/gl_api.h"
#include "render/particles.h"
#include "support/gl_window.h"

namespace {
/// One square of half a unit that stays where it is.
struct Spark : cParticleSystem {
    Spark(float alpha, bool additive) : cParticleSystem(1, {}, 1), alpha_(alpha) {
        additive_ = additive;
        emit(1);
    }
    void spawn(uint32_t index) override {
        cParticle& p = particles_[index];
        p.size = 1;
        p.r = p.g = 0.5f;
        p.b = 0;
        p.a = alpha_;
    }
    void update(float) override {}
    float alpha_;
};
} // namespace

class ParticleDraw : public GlTest {
protected:
    /// The colour at (x, y) of the spark over dark blue, 0xRRGGBB.
    uint32_t drawn(Spark spark, float x = 0, float y = 0) const {
        glClearColor(0, 0, 0.4f, 0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        spark.draw();
        return pixel(x, y);
    }
};

TEST_F(ParticleDraw, FacesTheViewAndAddsOrCovers) {
    EXPECT_EQ(drawn({1, false}), 0x808000u) << "covers";
    EXPECT_EQ(drawn({1, true}), 0x808066u) << "adds";
    EXPECT_EQ(drawn({0.5f, true}), 0x404066u) << "adds its share";
    EXPECT_EQ(drawn({-0.1f, false}), 0x000066u) << "gone out, but not yet removed";
    for (const auto& [x, y] : {std::pair{0.4f, 0.4f}, {0.4f, -0.4f}, {-0.4f, 0.4f}, {-0.4f, -0.4f}})
        EXPECT_EQ(drawn({1, false}, x, y), 0x808000u) << x << ", " << y;
    EXPECT_EQ(drawn({1, false}, 0.6f, 0), 0x000066u) << "beyond its size";
    glRotatef(80, 0, 1, 0);
    EXPECT_EQ(drawn({1, false}, 0.4f, 0.4f), 0x808000u) << "turned with the view, not away from it";
}

TEST_F(ParticleDraw, HidesNothingThatIsDrawnLater) {
    glEnable(GL_DEPTH_TEST);
    EXPECT_EQ(drawn({1, false}), 0x808000u);
    float depth = 0;
    glReadPixels(kSize / 2, kSize / 2, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_EQ(depth, 1.0f);
    GLint factor = 0;
    drawn({1, true});
    glGetIntegerv(GL_BLEND_DST, &factor);
    EXPECT_EQ(factor, GL_ONE_MINUS_SRC_ALPHA) << "later drawing is not additive";
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
}
