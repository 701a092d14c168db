#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <vector>

/// A cloud of camera-facing textured quads. Filled once after construction and never re-emitted; a system
/// updates and draws until its last particle is gone. Textures belong to the cache.
class cParticleSystem {
public:
    cParticleSystem(uint32_t maxCount, const cVector3& origin, float sizeValue);
    virtual ~cParticleSystem() = default;

    virtual void spawn(uint32_t index) = 0;
    virtual void update(float dt) = 0;
    void emit(uint32_t n);
    void reset(); ///< no particles, arrays for maxCount
    /// In the current view, additively or blended by alpha.
    void draw();
    uint32_t count() const { return count_; }

protected:
    struct cParticle {
        cVector3 position, velocity, acceleration;
        float lifetime = 0, energy = 0, size = 0, fadeRate = 0;
        float r = 1, g = 1, b = 1, a = 1;
    };
    static constexpr uint32_t kWobbleRows = 8;

    void fillWobble(uint32_t columns, float divisor);
    const cVector3& wobble(uint32_t particle) const { return wobble_[particle % kWobbleRows]; }
    /// The last live particle moves into the slot; look at the same index again.
    void remove(uint32_t index);

    std::vector<cParticle> particles_;
    uint32_t count_ = 0;
    uint32_t maxCount_;
    cVector3 origin_;
    float sizeValue_;
    int32_t texture_ = -1;
    bool additive_ = false;

private:
    cVector3 wobble_[kWobbleRows];
    std::vector<cVector3> vertices_;
    std::vector<float> texCoords_, colours_;
};

class cExplosion : public cParticleSystem {
public:
    explicit cExplosion(const cVector3& origin);
    void spawn(uint32_t index) override;
    void update(float dt) override;
};

class cSmoke : public cParticleSystem {
public:
    explicit cSmoke(const cVector3& origin);
    void spawn(uint32_t index) override;
    void update(float dt) override;
};

/// Replaces the one running pair of burst and smoke.
void startExplosion(const cVector3& position);
/// Updates and draws the pair, at the end of every frame in every state.
void tickEffects();
bool effectsRunning();
void destroyEffects();
