#include "forge/noise.h"
#include "models/humanoid.h"

#include <cmath>

// How people move. t runs 0..1 over a cycle (loops) or from the first to the last frame (one-shot moves).
namespace humanoid {
namespace {
using forge::mix;
using forge::smoothStep;

constexpr float kTurn = 6.28318531f;
// The game shows a frame for three of its 16 ms steps at this rate, so cycles are counted in steps of 48 ms.
constexpr int kRate = 21;
constexpr float kFrameSeconds = 0.048f;
constexpr int kWalkFrames = 10, kRunFrames = 9;
// 0.95 of 0.05 and 0.11 units in 16 ms: what the ground does under a walking and a running foot, units a
// second.
constexpr float kWalkSpeed = 2.97f, kRunSpeed = 6.53f;

float wave(float t) {
    return std::sin(t * kTurn);
}

struct Gait {
    float standing; ///< part of the cycle that a foot is on the ground
    float distance; ///< that the ground moves in the meantime
    float lift;     ///< of the ankle in the air
    float heel;     ///< degrees that the heel rises at the end
    float strike;   ///< degrees that the toe is up when the heel touches
};
constexpr Gait kWalk{0.5f, 0.5f * kWalkFrames* kFrameSeconds* kWalkSpeed, 0.13f, 38, 16};
constexpr Gait kRun{0.28f, 0.28f * kRunFrames* kFrameSeconds* kRunSpeed, 0.36f, 50, 8};

/// A planted foot moves straight back with the ground; the ball of the foot stays down while the heel rises.
Leg stride(const Gait& g, float phase) {
    constexpr float kBall = 0.15f; // from the ankle, units
    phase -= std::floor(phase);
    Leg leg;
    if (phase < g.standing) {
        const float s = phase / g.standing;
        const float rise = g.heel * smoothStep(0.45f, 1.0f, s);
        leg.forwards = g.distance * (0.5f - s) + kBall * (1 - std::cos(rise / 57.3f));
        leg.up = kBall * std::sin(rise / 57.3f);
        leg.toe = g.strike * smoothStep(0.22f, 0.0f, s) - rise;
        return leg;
    }
    const float s = (phase - g.standing) / (1 - g.standing);
    const float ease = mix(s, s * s * (3 - 2 * s), 0.7f);
    const float startUp = kBall * std::sin(g.heel / 57.3f);
    leg.forwards = mix(-g.distance / 2, g.distance / 2, ease);
    leg.up = mix(startUp, 0.0f, s) + g.lift * std::sin(std::pow(s, 0.85f) * kTurn / 2);
    leg.toe = mix(-g.heel, g.strike, smoothStep(0.0f, 0.8f, s));
    return leg;
}

/// Four seconds: two breaths, the weight goes from foot to foot, the eyes wander.
Pose idle(float t) {
    Pose p;
    const float breath = wave(2 * t), shift = wave(t);
    p.down = 0.004f + 0.003f * breath;
    p.right = 0.016f * shift;
    p.tilt = -0.8f * shift;
    p.bend = 1.5f + 1.6f * wave(2 * t + 0.1f);
    p.sway = 1.2f * shift;
    p.nod = -1 + 1.5f * wave(2 * t + 0.3f);
    // The head rests, turns, rests: a sine with flat ends.
    const float turn = wave(t + 0.12f);
    p.look = 17 * turn * (1.5f - 0.5f * turn * turn);
    p.twist = 0.15f * p.look;
    for (int i = 0; i < 2; ++i) {
        p.leg[i].out = 0.02f;
        p.leg[i].forwards = i == 0 ? 0.02f : -0.02f;
        p.arm[i].out = 9 + 1.5f * wave(2 * t + 0.2f);
        p.arm[i].forwards = 3 * wave(t + 0.15f) + 2 * wave(2 * t);
        p.arm[i].elbow = 18 + 5 * wave(t + 0.5f * static_cast<float>(i)) + 2 * breath;
    }
    return p;
}

Pose walk(float t) {
    Pose p;
    p.down = 0.055f + 0.020f * std::cos(2 * kTurn * t);
    p.lean = 3;
    p.bend = 2;
    p.twist = 7 * wave(t + 0.25f);
    p.yaw = -5 * wave(t + 0.25f);
    p.look = -2 * wave(t + 0.25f);
    p.right = 0.012f * wave(t);
    for (int i = 0; i < 2; ++i) {
        const float phase = t + 0.5f * static_cast<float>(i);
        p.leg[i] = stride(kWalk, phase);
        p.leg[i].out = -0.02f;
        p.arm[i].forwards = -30 * std::cos(kTurn * phase);
        p.arm[i].elbow = 26 - 14 * std::cos(kTurn * phase);
        p.arm[i].out = 8;
    }
    return p;
}

Pose run(float t) {
    Pose p;
    // Lowest in the middle of a step, highest in the air.
    p.down = 0.055f + 0.05f * std::cos(2 * kTurn * (t - 0.14f));
    p.lean = 12;
    p.bend = 5;
    p.nod = -10;
    p.twist = 13 * wave(t + 0.25f);
    p.yaw = -7 * wave(t + 0.25f);
    for (int i = 0; i < 2; ++i) {
        const float phase = t + 0.5f * static_cast<float>(i);
        p.leg[i] = stride(kRun, phase);
        p.leg[i].out = -0.03f;
        p.arm[i].forwards = 6 - 52 * std::cos(kTurn * phase);
        p.arm[i].elbow = 82 - 18 * std::cos(kTurn * phase);
        p.arm[i].out = 12;
        p.arm[i].twist = 18;
    }
    return p;
}

Pose jump(float t) {
    Pose p;
    const float tuck = smoothStep(0.1f, 0.5f, t) * (1 - 0.45f * smoothStep(0.6f, 1.0f, t));
    p.down = -0.02f;
    p.lean = 6 - 4 * t;
    p.bend = 6 * tuck;
    p.nod = -6;
    for (int i = 0; i < 2; ++i) {
        const float ahead = i == 0 ? 1.0f : -0.55f;
        p.leg[i].up = (i == 0 ? 0.34f : 0.20f) * tuck;
        p.leg[i].forwards = 0.22f * ahead * tuck;
        p.leg[i].toe = -45 * (1 - tuck) - (i == 0 ? 5.0f : 40.0f) * tuck;
        p.arm[i].forwards = mix(-35, i == 0 ? 70 : 35, smoothStep(0, 0.4f, t));
        p.arm[i].out = mix(12, 38, tuck);
        p.arm[i].elbow = 45;
    }
    return p;
}

Pose fall(float t) {
    Pose p;
    p.lean = -6;
    p.bend = -4 + 4 * wave(t);
    p.nod = 14;
    for (int i = 0; i < 2; ++i) {
        const float phase = t + 0.5f * static_cast<float>(i);
        p.leg[i].up = 0.16f + 0.07f * wave(phase);
        p.leg[i].forwards = 0.13f * std::cos(kTurn * phase);
        p.leg[i].out = 0.07f;
        p.leg[i].toe = -30;
        p.arm[i].out = 105 + 22 * wave(phase);
        p.arm[i].forwards = 20 * std::cos(kTurn * phase);
        p.arm[i].elbow = 30;
    }
    return p;
}

/// A blow that throws the body to one side and lets it come back.
Pose hit(float t, float side) {
    Pose p = idle(0);
    const float k = smoothStep(0, 0.25f, t) * (1 - smoothStep(0.45f, 1.0f, t));
    p.bend += -16 * k;
    p.twist += side * 26 * k;
    p.sway += side * 8 * k;
    p.nod += -14 * k;
    p.down += 0.04f * k;
    p.forwards = -0.05f * k;
    for (int i = 0; i < 2; ++i) {
        p.arm[i].out += 22 * k;
        p.arm[i].elbow += 38 * k;
    }
    return p;
}
Pose bodyHit1(float t) {
    return hit(t, 1);
}
Pose bodyHit2(float t) {
    return hit(t, -1);
}

/// The knees give way, then the body goes over backwards and lies.
Pose death(float t) {
    Pose p;
    const float knees = smoothStep(0, 0.38f, t), over = smoothStep(0.28f, 0.82f, t);
    const float settle = smoothStep(0.8f, 1.0f, t);
    p.legsFollowBody = over > 0.02f;
    p.lean = mix(10 * knees, -88, over);
    p.down = mix(0.16f * knees, 0.815f, over * over);
    p.forwards = mix(0.0f, -0.35f, over);
    p.bend = mix(16 * knees, -3, over);
    p.nod = mix(22 * knees, mix(-16, 4, settle), over);
    p.look = 26 * settle;
    for (int i = 0; i < 2; ++i) {
        const float bent = p.legsFollowBody ? 0.16f * (1 - over) : 0.0f;
        p.leg[i].up = bent + (i == 0 ? 0.10f : 0.0f) * over;
        p.leg[i].forwards = (i == 0 ? 0.14f : 0.0f) * over;
        p.leg[i].out = 0.07f * over;
        p.leg[i].toe = -18 * over;
        p.arm[i].out = mix(10, i == 0 ? 62 : 44, over);
        p.arm[i].forwards = mix(26 * knees, -4, over);
        p.arm[i].elbow = mix(14 + 40 * knees, 16, over);
    }
    return p;
}

/// The right arm goes up to aim, kicks and comes down.
Pose aim(float t) {
    Pose p = idle(0);
    const float up = smoothStep(0, 0.25f, t) * (1 - smoothStep(0.75f, 1.0f, t));
    const float kick = smoothStep(0.25f, 0.33f, t) * (1 - smoothStep(0.35f, 0.6f, t));
    p.twist = 8 * up;
    p.arm[0].forwards = 88 * up + 16 * kick;
    p.arm[0].elbow = mix(18, 4, up) + 14 * kick;
    p.arm[0].out = mix(9, -4, up);
    p.arm[1].elbow += 14 * up;
    return p;
}

/// A blow from above with the right arm.
Pose strike(float t) {
    Pose p = idle(0);
    const float back = smoothStep(0, 0.3f, t) * (1 - smoothStep(0.3f, 0.5f, t));
    const float down = smoothStep(0.3f, 0.5f, t) * (1 - smoothStep(0.65f, 1.0f, t));
    p.twist = -24 * back + 22 * down;
    p.bend += 14 * down - 6 * back;
    p.arm[0].forwards = 150 * back + 62 * down;
    p.arm[0].elbow = 18 + 60 * back + 8 * down;
    p.arm[1].forwards = 20 * back - 24 * down;
    p.arm[1].elbow += 24 * (back + down);
    p.leg[0].forwards += 0.10f * down;
    p.down += 0.05f * down;
    return p;
}

/// An overarm throw.
Pose throwing(float t) {
    Pose p = idle(0);
    const float back = smoothStep(0, 0.4f, t) * (1 - smoothStep(0.42f, 0.6f, t));
    const float out = smoothStep(0.42f, 0.6f, t) * (1 - smoothStep(0.7f, 1.0f, t));
    p.twist = -30 * back + 26 * out;
    p.bend += -8 * back + 12 * out;
    p.arm[0].forwards = 100 * back + 96 * out;
    p.arm[0].out = 9 + 46 * back;
    p.arm[0].elbow = 18 + 78 * back - 10 * out;
    p.arm[1].forwards = 58 * back - 18 * out;
    p.leg[1].forwards += 0.12f * (back + out);
    p.down += 0.04f * (back + out);
    return p;
}

/// A greeting: the right hand waves above the shoulder.
Pose greet(float t) {
    Pose p = idle(t);
    p.arm[0].out = 150;
    p.arm[0].forwards = 6;
    p.arm[0].elbow = 28;
    p.arm[0].twist = 0;
    p.arm[0].out += 14 * wave(2 * t);
    p.sway = -3 + 2 * wave(2 * t);
    p.nod = -3;
    return p;
}

/// Talking with the hands.
Pose talk(float t) {
    Pose p = idle(t);
    p.arm[0].forwards = 22 + 9 * wave(2 * t);
    p.arm[0].elbow = 72 + 14 * wave(2 * t + 0.2f);
    p.arm[0].twist = 20;
    p.arm[1].forwards = 12 + 8 * wave(t + 0.4f);
    p.arm[1].elbow = 54 + 16 * wave(t + 0.1f);
    p.arm[1].twist = 16;
    p.nod = 2 + 4 * wave(2 * t);
    return p;
}
} // namespace

const std::vector<Move>& moves() {
    static const std::vector<Move> all = {
        {"BOTH_IDLE", 48, 12, true, idle},
        {"BOTH_WALK", kWalkFrames, kRate, true, walk},
        {"BOTH_RUN", kRunFrames, kRate, true, run},
        {"BOTH_JUMP", 10, kRate, false, jump},
        {"BOTH_FALL", 8, 16, true, fall},
        {"BOTH_BODYHIT1", 8, kRate, false, bodyHit1},
        {"BOTH_BODYHIT2", 8, kRate, false, bodyHit2},
        {"BOTH_DEATH1", 31, kRate, false, death},
        {"BOTH_AIM", 10, kRate, false, aim},
        {"BOTH_STRIKE", 11, kRate, false, strike},
        {"BOTH_THROW", 12, kRate, false, throwing},
        {"BOTH_GREET", 20, kRate, true, greet},
        {"BOTH_TALK", 24, kRate, true, talk},
    };
    return all;
}
} // namespace humanoid
