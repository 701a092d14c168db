#include "render/particles.h"

#include "platform/clock.h"
#include "platform/gl_api.h"
#include "platform/random.h"
#include "render/texture_cache.h"

#include <algorithm>
#include <memory>

namespace {
constexpr uint32_t kBurstParticles = 100, kSmokeParticles = 30;
constexpr float kBurstStep = 0.2f, kSmokeStep = 0.15f;

std::unique_ptr<cExplosion> g_burst;
std::unique_ptr<cSmoke> g_smoke;
bool g_running = false;

float R() {
    return platform::randomSigned();
}

/// Each component drawn in order x, y, z.
cVector3 randomTimes(const cVector3& v) {
    const float x = R() * v.x, y = R() * v.y, z = R() * v.z;
    return {x, y, z};
}
} // namespace

cParticleSystem::cParticleSystem(uint32_t maxCount, const cVector3& origin, float sizeValue)
    : maxCount_(maxCount), origin_(origin), sizeValue_(sizeValue) {
    reset();
}

void cParticleSystem::reset() {
    particles_.assign(maxCount_, {});
    vertices_.resize(maxCount_ * 4);
    texCoords_.resize(maxCount_ * 8);
    colours_.resize(maxCount_ * 16);
    count_ = 0;
}

void cParticleSystem::emit(uint32_t n) {
    for (; n > 0 && count_ < maxCount_; --n) spawn(count_++);
}

void cParticleSystem::fillWobble(uint32_t columns, float divisor) {
    for (cVector3& row : wobble_) {
        for (uint32_t c = 0; c < columns; ++c) {
            const float value = R() / divisor;
            if (c < 3) row[static_cast<int>(c)] = value;
        }
    }
}

void cParticleSystem::remove(uint32_t index) {
    particles_[index] = particles_[--count_];
}

void cParticleSystem::draw() {
    if (!platform::hasGlContext()) return;
    float m[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, m);
    const cVector3 right(m[0], m[4], m[8]), up(m[1], m[5], m[9]);
    static constexpr float kCorners[8] = {0, 0, 1, 0, 1, 1, 0, 1};
    GLsizei drawn = 0;
    for (uint32_t i = 0; i < count_; ++i) {
        const cParticle& p = particles_[i];
        if (p.a < 0) continue;
        const float h = p.size / 2;
        const cVector3 corners[4] = {p.position + (right + up) * h, p.position - (right - up) * h,
                                     p.position - (right + up) * h, p.position + (right - up) * h};
        for (size_t k = 0; k < 4; ++k) {
            const size_t vertex = static_cast<size_t>(drawn) * 4 + k;
            vertices_[vertex] = corners[k];
            texCoords_[vertex * 2] = kCorners[k * 2];
            texCoords_[vertex * 2 + 1] = kCorners[k * 2 + 1];
            const float colour[4] = {p.r, p.g, p.b, p.a};
            std::copy(colour, colour + 4, colours_.begin() + static_cast<std::ptrdiff_t>(vertex * 4));
        }
        ++drawn;
    }
    if (drawn == 0) return;
    glPushAttrib(GL_ENABLE_BIT);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glDisable(GL_CULL_FACE); // the corners run clockwise
    if (additive_) glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    texture_ > 0 ? glEnable(GL_TEXTURE_2D) : glDisable(GL_TEXTURE_2D);
    if (texture_ > 0) glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture_));
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(cVector3), vertices_.data());
    glTexCoordPointer(2, GL_FLOAT, 0, texCoords_.data());
    glColorPointer(4, GL_FLOAT, 0, colours_.data());
    glDrawArrays(GL_QUADS, 0, 4 * drawn);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDepthMask(GL_TRUE);
    glPopAttrib();
    if (additive_) glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

cExplosion::cExplosion(const cVector3& origin) : cParticleSystem(kBurstParticles, origin, 16.0f) {
    platform::seedRandom(platform::ticks());
    additive_ = true;
    emit(maxCount_);
    texture_ = cTextureCache::instance().load("particles/explo32x32.tga");
    fillWobble(3, 80);
}

void cExplosion::spawn(uint32_t index) {
    cParticle& p = particles_[index];
    const float x = 3 * R(), x2 = R(), y = 2 * R(), y2 = R();
    p.position = origin_ + cVector3(x + x2, y + y2, 0);
    p.size = 5.5f * R() + 3.5f;
    p.velocity = randomTimes({2, 2, 2}) + cVector3(0.2f, -0.5f + 1, 0.2f);
    p.acceleration = {0, 0.5f, 0};
    p.r = p.g = 1;
    p.b = 0.5f;
    p.a = 0.8f;
    p.energy = R() + 4;
}

void cExplosion::update(float dt) {
    for (uint32_t i = 0; i < count_;) {
        cParticle& p = particles_[i];
        p.velocity += p.acceleration * dt;
        p.lifetime -= dt;
        p.position += wobble(i);
        for (float* channel : {&p.r, &p.g, &p.b, &p.a}) *channel -= 0.01f;
        p.size += 0.01f;
        p.energy -= R() / 20 * 0.02f;
        if (p.energy > 0 && p.a >= 0) {
            ++i;
        } else {
            remove(i);
        }
    }
}

cSmoke::cSmoke(const cVector3& origin) : cParticleSystem(kSmokeParticles, origin, 1.0f) {
    emit(maxCount_);
    texture_ = cTextureCache::instance().load("particles/smoke04.tga");
    fillWobble(8, 60);
}

void cSmoke::spawn(uint32_t index) {
    cParticle& p = particles_[index];
    p.position = origin_;
    p.size = 15 * R() + 8;
    p.velocity = randomTimes({0, 2, 0}) + cVector3(0, 2, 0);
    p.acceleration = {0, 0.2f, 0};
    p.r = p.g = p.b = 0.7f;
    p.a = 0.9f;
    p.lifetime = 5.5f;
    p.fadeRate = -p.size / p.lifetime;
}

void cSmoke::update(float) {
    for (uint32_t i = 0; i < count_;) {
        cParticle& p = particles_[i];
        const cVector3& w = wobble(i);
        p.position += cVector3(w.x / 2, w.y, w.z / 2);
        for (float* channel : {&p.r, &p.g, &p.b}) *channel -= 0.001f;
        if (p.a >= 0) p.a -= 0.005f;
        p.lifetime -= 0.008f;
        if (p.lifetime > 0 && p.a > 0) {
            ++i;
        } else {
            remove(i);
        }
    }
}

void startExplosion(const cVector3& position) {
    g_burst = std::make_unique<cExplosion>(position);
    g_smoke = std::make_unique<cSmoke>(position);
    g_running = true;
}

void tickEffects() {
    if (!g_running) return;
    if (g_smoke->count() == 0) {
        g_running = false;
        return;
    }
    g_smoke->update(kSmokeStep);
    g_smoke->draw();
    if (g_burst->count() > 0) {
        g_burst->update(kBurstStep);
        g_burst->draw();
    }
}

bool effectsRunning() {
    return g_running;
}

void destroyEffects() {
    g_burst.reset();
    g_smoke.reset();
    g_running = false;
}
