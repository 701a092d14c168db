#include "models/humanoid.h"

#include "forge/noise.h"
#include "forge/preview.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace humanoid {
namespace {
// Joints at rest, system coordinates, right side (x positive).
constexpr cVector3 kWaist{0, -0.30f, 0}, kHip{0.105f, -0.40f, 0}, kKnee{0.105f, -0.79f, 0},
    kAnkle{0.105f, -1.16f, 0};
constexpr cVector3 kChest{0, -0.14f, 0}, kNeck{0, 0.24f, 0.01f};
constexpr float kShoulderHeight = 0.13f, kElbowHeight = -0.15f, kWristHeight = -0.40f;
constexpr float kThigh = 0.39f, kShin = 0.37f;

enum LowerBone { kPelvis, kThighR, kShinR, kFootR, kThighL, kShinL, kFootL, kLowerBones };
enum UpperBone { kBelly, kBreast, kUpperArmR, kForeArmR, kUpperArmL, kForeArmL, kUpperBones };

cVector3 mirrored(const cVector3& v, int side) {
    return {side == 0 ? v.x : -v.x, v.y, v.z};
}

std::vector<Ring> onSide(std::vector<Ring> rings, int side) {
    for (Ring& r : rings) r.centre = mirrored(r.centre, side);
    return rings;
}

std::vector<cVector3> lowerRest() {
    std::vector<cVector3> rest(kLowerBones, kWaist);
    for (int side = 0; side < 2; ++side) {
        const auto first = static_cast<size_t>(side == 0 ? kThighR : kThighL);
        rest[first] = mirrored(kHip, side);
        rest[first + 1] = mirrored(kKnee, side);
        rest[first + 2] = mirrored(kAnkle, side);
    }
    return rest;
}

std::vector<cVector3> upperRest(const Build& b) {
    std::vector<cVector3> rest(kUpperBones, kWaist);
    rest[kBreast] = kChest;
    for (int side = 0; side < 2; ++side) {
        const auto first = static_cast<size_t>(side == 0 ? kUpperArmR : kUpperArmL);
        rest[first] = mirrored({b.shoulders, kShoulderHeight, 0}, side);
        rest[first + 1] = mirrored({b.shoulders, kElbowHeight, 0}, side);
    }
    return rest;
}

Skin lowerSkin(const Build& b) {
    Skin skin;
    const float g = b.girth, l = b.limbs;
    for (int side = 0; side < 2; ++side) {
        const int thigh = side == 0 ? kThighR : kThighL, shin = thigh + 1, foot = thigh + 2;
        const float x = kHip.x;
        skin.addBody(onSide({{{x, -1.17f, 0.005f}, 0.068f * l, 0.078f * l, foot, shin, 0.3f},
                             {{x, -1.12f, 0.005f}, 0.066f * l, 0.074f * l, shin, foot, 0.3f},
                             {{x, -1.02f, 0.008f}, 0.076f * l, 0.084f * l, shin, shin, 0},
                             {{x, -0.93f, 0.010f}, 0.086f * l, 0.094f * l, shin, shin, 0},
                             {{x, -0.91f, 0.008f}, 0.074f * l, 0.082f * l, shin, shin, 0},
                             {{x, -0.84f, 0.000f}, 0.074f * l, 0.080f * l, shin, thigh, 0.25f},
                             {{x, -0.79f, -0.004f}, 0.078f * l, 0.084f * l, thigh, shin, 0.5f},
                             {{x, -0.74f, -0.002f}, 0.080f * l, 0.086f * l, thigh, shin, 0.22f},
                             {{x, -0.62f, 0}, 0.090f * l, 0.098f * l, thigh, thigh, 0},
                             {{x, -0.50f, 0}, 0.098f * l, 0.108f * l, thigh, kPelvis, 0.15f},
                             {{x * 0.95f, -0.40f, 0}, 0.096f * l, 0.110f * l, kPelvis, thigh, 0.5f}},
                            side),
                     10, {0, 0.5f}, {0.5f, 1}, Along::kUp, 0.02f, 0.02f);
        // Boot, from heel to toe.
        skin.addBody(onSide({{{x, -1.185f, 0.085f}, 0.050f, 0.055f, foot, foot, 0},
                             {{x, -1.170f, 0.03f}, 0.070f, 0.080f, foot, foot, 0},
                             {{x, -1.185f, -0.06f}, 0.074f, 0.062f, foot, foot, 0},
                             {{x + 0.006f, -1.20f, -0.14f}, 0.076f, 0.050f, foot, foot, 0},
                             {{x + 0.006f, -1.207f, -0.20f}, 0.058f, 0.040f, foot, foot, 0}},
                            side),
                     10, {0.5f, 0.5f}, {1, 1}, Along::kForwards, 0.02f, 0.035f);
    }
    // Hips and coat tails; the hem follows the thighs by half through the blended sides.
    skin.addBody({{{0, -0.47f, 0}, 0.17f * g, 0.12f * g, kPelvis, kPelvis, 0},
                  {{0, -0.38f, 0}, 0.195f * g, 0.145f * g, kPelvis, kPelvis, 0},
                  {{0, -0.26f, 0}, 0.172f * g, 0.128f * g, kPelvis, kPelvis, 0}},
                 14, {0, 0}, {0.25f, 0.5f}, Along::kUp, 0.02f, 0.0f);
    const float hem = -0.34f - b.skirt, flare = g * (1 + 0.45f * std::max(0.0f, b.skirt - 0.22f));
    for (int side = 0; side < 2; ++side) {
        const int thigh = side == 0 ? kThighR : kThighL;
        skin.addBody(
            onSide(
                {{{0.085f * g, hem, 0}, 0.135f * flare, 0.175f * flare, kPelvis, thigh, 0.92f},
                 {{0.080f * g, (hem - 0.36f) / 2, 0}, 0.132f * flare, 0.165f * flare, kPelvis, thigh, 0.6f},
                 {{0.070f * g, -0.36f, 0}, 0.122f * g, 0.148f * g, kPelvis, kPelvis, 0},
                 {{0.055f * g, -0.27f, 0}, 0.122f * g, 0.132f * g, kPelvis, kPelvis, 0}},
                side),
            12, {0.25f, 0}, {0.75f, 0.5f}, Along::kUp, -0.05f, 0.0f);
    }
    return skin;
}

void addArm(Skin& skin, const Build& b, int side) {
    const int upper = side == 0 ? kUpperArmR : kUpperArmL, fore = upper + 1;
    const float x = b.shoulders, l = b.limbs;
    skin.addBody(onSide({{{x, kWristHeight, 0}, 0.044f * l, 0.050f * l, fore, fore, 0},
                         {{x, -0.37f, 0}, 0.060f * l, 0.064f * l, fore, fore, 0},
                         {{x, -0.29f, 0}, 0.060f * l, 0.064f * l, fore, fore, 0},
                         {{x, -0.20f, 0}, 0.062f * l, 0.066f * l, fore, upper, 0.25f},
                         {{x, -0.15f, 0}, 0.062f * l, 0.066f * l, upper, fore, 0.5f},
                         {{x, -0.10f, 0}, 0.064f * l, 0.068f * l, upper, fore, 0.2f},
                         {{x, 0.00f, 0}, 0.070f * l, 0.074f * l, upper, upper, 0},
                         {{x - 0.005f, 0.09f, 0}, 0.078f * l, 0.084f * l, upper, upper, 0},
                         {{x - 0.03f, 0.155f, 0}, 0.066f * l, 0.072f * l, upper, kBreast, 0.5f},
                         {{x - 0.08f, 0.185f, 0}, 0.050f * l, 0.060f * l, kBreast, kBreast, 0}},
                        side),
                 10, {0, 0}, {0.5f, 0.5f}, Along::kUp, 0.02f, 0.01f);
    // Hand and thumb.
    skin.addBody(onSide({{{x, -0.545f, -0.012f}, 0.026f, 0.034f, fore, fore, 0},
                         {{x, -0.50f, -0.008f}, 0.038f, 0.052f, fore, fore, 0},
                         {{x, -0.45f, 0}, 0.040f, 0.054f, fore, fore, 0},
                         {{x, -0.40f, 0}, 0.034f, 0.040f, fore, fore, 0}},
                        side),
                 8, {0.5f, 0}, {0.75f, 0.25f}, Along::kUp, 0.015f, 0.0f);
    skin.addBody(onSide({{{x - 0.012f, -0.49f, -0.075f}, 0.016f, 0.018f, fore, fore, 0},
                         {{x - 0.008f, -0.43f, -0.040f}, 0.020f, 0.022f, fore, fore, 0}},
                        side),
                 6, {0.5f, 0}, {0.75f, 0.25f}, Along::kUp, 0.012f, 0.0f);
}

Skin upperSkin(const Build& b) {
    Skin skin;
    const float g = b.girth, s = b.shoulders, w = b.girth * b.waist;
    skin.addBody({{{0, -0.335f, 0}, 0.176f * g, 0.134f * g, kBelly, kBelly, 0},
                  {{0, -0.27f, 0}, 0.168f * w, 0.130f * w, kBelly, kBelly, 0},
                  {{0, -0.20f, 0}, 0.158f * w, 0.122f * w, kBelly, kBreast, 0.3f},
                  {{0, -0.11f, -0.004f}, 0.172f * w, 0.130f * w, kBreast, kBelly, 0.3f},
                  {{0, -0.01f, -0.008f}, 0.200f * g, 0.144f * g, kBreast, kBreast, 0},
                  {{0, 0.08f, -0.006f}, 0.205f * g, 0.142f * g, kBreast, kBreast, 0},
                  {{0, 0.155f, 0}, s * 0.74f, 0.116f * g, kBreast, kBreast, 0},
                  {{0, 0.20f, 0.008f}, 0.115f, 0.085f, kBreast, kBreast, 0},
                  {{0, 0.23f, 0.010f}, 0.066f, 0.066f, kBreast, kBreast, 0},
                  {{0, 0.29f, 0.010f}, 0.060f, 0.060f, kBreast, kBreast, 0}},
                 16, {0, 0.5f}, {1, 1}, Along::kUp, 0.0f, 0.0f);
    addArm(skin, b, 0);
    addArm(skin, b, 1);
    // A scarf round the neck, with an end on the chest.
    skin.addBody({{{0, 0.185f, 0.004f}, 0.118f, 0.104f, kBreast, kBreast, 0},
                  {{0, 0.215f, 0.004f}, 0.128f, 0.116f, kBreast, kBreast, 0},
                  {{0, 0.250f, 0.008f}, 0.112f, 0.104f, kBreast, kBreast, 0},
                  {{0, 0.265f, 0.010f}, 0.084f, 0.082f, kBreast, kBreast, 0}},
                 14, {0.75f, 0}, {1, 0.25f}, Along::kUp, -0.02f, -0.03f);
    skin.addBody({{{0.05f, 0.02f, -0.158f}, 0.045f, 0.016f, kBreast, kBreast, 0},
                  {{0.045f, 0.12f, -0.150f}, 0.038f, 0.020f, kBreast, kBreast, 0},
                  {{0.04f, 0.21f, -0.105f}, 0.028f, 0.024f, kBreast, kBreast, 0}},
                 8, {0.75f, 0}, {1, 0.25f}, Along::kUp, 0.01f, 0.0f);
    return skin;
}

constexpr TexCoord kHairLow{0, 0}, kHairHigh{0.5f, 0.5f}, kHatLow{0.5f, 0}, kHatHigh{1, 0.5f};

/// A cloth tied round the head, its knot and ends behind.
void addScarf(Skin& skin) {
    skin.addBody({{{0, 0.535f, 0.012f}, 0.236f, 0.240f, 0, 0, 0},
                  {{0, 0.600f, 0.010f}, 0.236f, 0.244f, 0, 0, 0},
                  {{0, 0.680f, 0.012f}, 0.190f, 0.208f, 0, 0, 0},
                  {{0, 0.735f, 0.016f}, 0.100f, 0.116f, 0, 0, 0}},
                 16, kHatLow, kHatHigh, Along::kUp, -0.01f, 0.015f);
    skin.addPiece(
        ball(0.06f, 8, 5).mapped(kHatLow.u, kHatLow.v, kHatHigh.u, kHatHigh.v).moved({0, 0.545f, 0.255f}), 0);
    for (float side : {-1.0f, 1.0f})
        skin.addPiece(lathe({{0.012f, -0.22f}, {0.055f, -0.2f}, {0.02f, 0}}, 6)
                          .scaled({1, 1, 0.4f})
                          .rolled(side * 16)
                          .tilted(-14)
                          .mapped(kHatLow.u, kHatLow.v, kHatHigh.u, kHatHigh.v)
                          .moved({side * 0.03f, 0.54f, 0.27f}),
                      0);
}

void addHat(Skin& skin, Hat hat) {
    if (hat == Hat::kFelt)
        skin.addBody({{{0, 0.560f, 0.01f}, 0.330f, 0.340f, 0, 0, 0},
                      {{0, 0.585f, 0.01f}, 0.325f, 0.335f, 0, 0, 0},
                      {{0, 0.600f, 0.010f}, 0.226f, 0.244f, 0, 0, 0},
                      {{0, 0.690f, 0.010f}, 0.190f, 0.208f, 0, 0, 0},
                      {{0, 0.740f, 0.010f}, 0.120f, 0.135f, 0, 0, 0}},
                     16, kHatLow, kHatHigh, Along::kUp, -0.01f, 0.01f);
    if (hat == Hat::kScarf) addScarf(skin);
    // Its brim hangs down to the neck behind and is short in front.
    if (hat == Hat::kSouwester)
        skin.addBody({{{0, 0.440f, 0.115f}, 0.270f, 0.300f, 0, 0, 0},
                      {{0, 0.500f, 0.085f}, 0.262f, 0.302f, 0, 0, 0},
                      {{0, 0.580f, 0.020f}, 0.228f, 0.246f, 0, 0, 0},
                      {{0, 0.660f, 0.010f}, 0.214f, 0.232f, 0, 0, 0},
                      {{0, 0.730f, 0.010f}, 0.150f, 0.168f, 0, 0, 0},
                      {{0, 0.770f, 0.010f}, 0.060f, 0.070f, 0, 0, 0}},
                     16, kHatLow, kHatHigh, Along::kUp, -0.05f, 0.01f);
}

/// Locks over the brow.
void addLocks(Skin& skin, Hair hair) {
    struct Lock {
        float x, lean, length;
    };
    static constexpr Lock kFringe[] = {{-0.12f, 24, 1}, {-0.035f, 9, 1}, {0.06f, -12, 1}, {0.14f, -28, 1}};
    static constexpr Lock kParted[] = {
        {-0.15f, 38, 1.25f}, {-0.085f, 34, 1.1f}, {0.10f, -40, 1.2f}, {0.04f, -46, 1}, {0.16f, -34, 1.35f}};
    static constexpr Lock kWild[] = {{-0.15f, 40, 1.1f}, {-0.10f, -14, 1.2f}, {-0.04f, 20, 1},
                                     {0.03f, -30, 1.3f}, {0.09f, 14, 1.1f},   {0.15f, -36, 1}};
    const auto hang = [&](const Lock& l) {
        const Mesh lock =
            lathe({{0, -0.15f * l.length}, {0.030f, -0.09f * l.length}, {0.050f, 0}, {0, 0.06f}}, 7);
        skin.addPiece(lock.tilted(-24)
                          .rolled(l.lean)
                          .mapped(kHairLow.u, kHairLow.v, kHairHigh.u, kHairHigh.v)
                          .moved({l.x, 0.635f, -0.195f + std::fabs(l.x) * 0.35f}),
                      0);
    };
    if (hair == Hair::kLong) {
        for (const Lock& l : kParted) hang(l);
    } else if (hair == Hair::kTousled) {
        for (const Lock& l : kWild) hang(l);
        // And some that stand up on the crown.
        for (const auto& [turn, lean] : {std::pair{20.0f, 34.0f}, {140.0f, 42.0f}, {250.0f, 30.0f}}) {
            const Mesh tuft = lathe({{0.045f, 0}, {0.03f, 0.08f}, {0, 0.15f}}, 6);
            skin.addPiece(tuft.tilted(lean)
                              .turned(turn)
                              .mapped(kHairLow.u, kHairLow.v, kHairHigh.u, kHairHigh.v)
                              .moved({0, 0.70f, 0.02f}),
                          0);
        }
    } else {
        for (const Lock& l : kFringe) hang(l);
    }
}

void addHair(Skin& skin, const Build& b) {
    const bool covered = b.hat != Hat::kNone; // flattened below a hat
    const float top = covered ? 0.66f : 0.735f, crown = covered ? 0.8f : 1.0f;
    skin.addBody({{{0, 0.325f, 0.085f}, 0.110f, 0.095f, 0, 0, 0},
                  {{0, 0.380f, 0.080f}, 0.185f, 0.135f, 0, 0, 0},
                  {{0, 0.470f, 0.075f}, 0.217f, 0.158f, 0, 0, 0},
                  {{0, 0.560f, 0.040f}, 0.222f, 0.200f, 0, 0, 0},
                  {{0, 0.625f, 0.006f}, 0.208f * crown, 0.226f * crown, 0, 0, 0},
                  {{0, 0.685f, 0.004f}, 0.164f * crown, 0.186f * crown, 0, 0, 0},
                  {{0, top, 0.010f}, 0.085f, 0.100f, 0, 0, 0}},
                 16, kHairLow, kHairHigh, Along::kUp, 0.01f, 0.015f);
    if (!covered) addLocks(skin, b.hair);
    if (b.hair == Hair::kPonytail)
        skin.addBody({{{0, 0.18f, 0.300f}, 0.030f, 0.030f, 0, 0, 0},
                      {{0, 0.28f, 0.315f}, 0.055f, 0.050f, 0, 0, 0},
                      {{0, 0.40f, 0.290f}, 0.060f, 0.058f, 0, 0, 0},
                      {{0, 0.50f, 0.235f}, 0.036f, 0.036f, 0, 0, 0}},
                     8, kHairLow, kHairHigh, Along::kUp, 0.05f, 0.01f);
    if (b.hair == Hair::kLong) {
        skin.addBody({{{0, 0.02f, 0.150f}, 0.095f, 0.050f, 0, 0, 0},
                      {{0, 0.12f, 0.155f}, 0.165f, 0.078f, 0, 0, 0},
                      {{0, 0.26f, 0.140f}, 0.205f, 0.100f, 0, 0, 0},
                      {{0, 0.40f, 0.110f}, 0.222f, 0.130f, 0, 0, 0},
                      {{0, 0.50f, 0.080f}, 0.200f, 0.140f, 0, 0, 0}},
                     14, kHairLow, kHairHigh, Along::kUp, 0.03f, 0.0f);
        for (float side : {-1.0f, 1.0f})
            skin.addBody({{{side * 0.165f, 0.20f, -0.075f}, 0.022f, 0.022f, 0, 0, 0},
                          {{side * 0.192f, 0.32f, -0.080f}, 0.036f, 0.044f, 0, 0, 0},
                          {{side * 0.200f, 0.46f, -0.070f}, 0.036f, 0.060f, 0, 0, 0},
                          {{side * 0.175f, 0.58f, -0.070f}, 0.030f, 0.060f, 0, 0, 0}},
                         8, kHairLow, kHairHigh, Along::kUp, 0.04f, 0.0f);
        // A band holds it back.
        skin.addBody(
            {{{0, 0.600f, 0.022f}, 0.224f, 0.214f, 0, 0, 0}, {{0, 0.640f, 0.020f}, 0.212f, 0.208f, 0, 0, 0}},
            16, {0.55f, 0.27f}, {0.95f, 0.31f}, Along::kUp, 0.0f, 0.0f);
    }
    if (b.beard)
        skin.addBody({{{0, 0.215f, -0.150f}, 0.050f, 0.045f, 0, 0, 0},
                      {{0, 0.275f, -0.130f}, 0.115f, 0.085f, 0, 0, 0},
                      {{0, 0.335f, -0.105f}, 0.150f, 0.108f, 0, 0, 0},
                      {{0, 0.385f, -0.090f}, 0.150f, 0.100f, 0, 0, 0}},
                     12, kHairLow, kHairHigh, Along::kUp, 0.03f, -0.02f);
}

Skin headSkin(const Build& b) {
    Skin skin;
    const float j = b.jaw, cheek = mix(1.0f, b.jaw, 0.5f);
    skin.addBody({{{0, 0.270f, -0.02f}, 0.080f * j, 0.090f, 0, 0, 0},
                  {{0, 0.310f, -0.018f}, 0.132f * j, 0.152f, 0, 0, 0},
                  {{0, 0.365f, -0.010f}, 0.172f * j, 0.184f, 0, 0, 0},
                  {{0, 0.430f, -0.004f}, 0.192f * cheek, 0.198f, 0, 0, 0},
                  {{0, 0.510f, 0.000f}, 0.199f, 0.204f, 0, 0, 0},
                  {{0, 0.590f, 0.004f}, 0.190f, 0.198f, 0, 0, 0},
                  {{0, 0.660f, 0.008f}, 0.150f, 0.162f, 0, 0, 0},
                  {{0, 0.710f, 0.010f}, 0.080f, 0.090f, 0, 0, 0}},
                 20, {0, 0.5f}, {1, 1}, Along::kUp, 0.01f, 0.008f);
    // Nose and ears take plain skin from below the face.
    const Mesh nose = ball(0.030f * b.nose, 8, 5).scaled({0.8f, 1, 1.1f}).mappedTo({0.04f, 0.94f});
    skin.addPiece(nose.moved({0, 0.430f, -0.208f}), 0);
    for (float side : {-1.0f, 1.0f})
        skin.addPiece(ball(0.05f, 8, 5)
                          .scaled({0.5f, 1.1f, 0.8f})
                          .mappedTo({0.04f, 0.94f})
                          .moved({side * 0.197f, 0.445f, 0.01f}),
                      0);
    addHat(skin, b.hat);
    addHair(skin, b);
    return skin;
}

struct LowerFrame {
    std::vector<Joint> joints;
    Tag torso;
};

Tag tagAt(const char* name, const Joint& j) {
    return {name, j.origin, {j.x, j.y, j.z}};
}

LowerFrame poseLower(const Pose& p) {
    LowerFrame f;
    f.joints.resize(kLowerBones);
    Joint body = turnY(p.yaw) * turnX(-p.lean) * turnZ(p.tilt);
    body.origin = kWaist + cVector3(p.right, -p.down, -p.forwards);
    Joint ground = turnY(p.yaw);
    ground.origin = kWaist;
    const Joint& space = p.legsFollowBody ? body : ground;
    f.joints[kPelvis] = body;
    f.torso = tagAt("tag_torso", body);
    for (int side = 0; side < 2; ++side) {
        const auto first = static_cast<size_t>(side == 0 ? kThighR : kThighL);
        const Leg& leg = p.leg[side];
        const cVector3 hip = body.point(mirrored(kHip, side) - kWaist);
        const cVector3 moved = kAnkle + cVector3(leg.out, leg.up, -leg.forwards);
        const LimbBend bend = reach(hip, space.point(mirrored(moved, side) - kWaist), kThigh, kShin,
                                    space.direction({0, 0, -1}), space.x);
        f.joints[first] = bend.upper;
        f.joints[first + 1] = bend.lower;
        f.joints[first + 2] = space * turnX(leg.toe);
        f.joints[first + 2].origin = bend.end;
    }
    return f;
}

struct UpperFrame {
    std::vector<Joint> joints; ///< in the space of tag_torso
    Tag head, weapon;
};

UpperFrame poseUpper(const Pose& p, const Build& b) {
    UpperFrame f;
    f.joints.resize(kUpperBones);
    f.joints[kBelly] = Joint();
    const Joint breast = Joint().child(kChest - kWaist, turnY(p.twist) * turnX(-p.bend) * turnZ(p.sway));
    f.joints[kBreast] = breast;
    f.head = tagAt("tag_head", breast.child(kNeck - kChest, turnY(p.look) * turnX(-p.nod)));
    for (int side = 0; side < 2; ++side) {
        const auto first = static_cast<size_t>(side == 0 ? kUpperArmR : kUpperArmL);
        const Arm& arm = p.arm[side];
        const float sign = side == 0 ? 1.0f : -1.0f;
        const cVector3 shoulder = mirrored({b.shoulders, kShoulderHeight, 0}, side);
        const Joint turn = turnZ(sign * arm.out) * turnX(arm.forwards) * turnY(sign * arm.twist);
        const Joint upper = breast.child(shoulder - kChest, turn);
        const Joint fore = upper.child({0, kElbowHeight - kShoulderHeight, 0}, turnX(arm.elbow));
        f.joints[first] = upper;
        f.joints[first + 1] = fore;
        if (side == 0)
            f.weapon = tagAt("tag_weapon", fore.child({0, -0.49f - kElbowHeight, -0.03f}, Joint()));
    }
    return f;
}

CharacterPart partOf(const Skin& skin, const std::string& meshName, const std::string& texture) {
    CharacterPart part;
    part.meshName = meshName;
    part.texture = texture;
    part.texCoords = skin.texCoords();
    part.faces = skin.faces();
    return part;
}

/// The person as seen at one frame, put together as the game does it.
Parts assembled(const CharacterPart& lower, const CharacterPart& upper, const CharacterPart& head,
                size_t frame) {
    const auto placed = [](const CharacterPart& part, size_t at, const Joint& j) {
        Mesh m;
        m.positions = part.frames[at];
        for (cVector3& p : m.positions) p = j.point(p);
        m.texCoords = part.texCoords;
        m.faces = part.faces;
        return Part{"", part.texture, {}, m};
    };
    const auto jointOf = [](const Tag& t) { return Joint{t.axes[0], t.axes[1], t.axes[2], t.origin}; };
    const Joint torso = jointOf(lower.tags[frame][0]), neck = jointOf(upper.tags[frame][0]);
    Joint top = torso * neck;
    top.origin = torso.point(neck.origin);
    return {placed(lower, frame, Joint()), placed(upper, frame, torso), placed(head, 0, top)};
}

void addShots(const std::string& name, const CharacterPart& lower, const CharacterPart& upper,
              const CharacterPart& head) {
    Parts front, side;
    float x = 0;
    for (const AnimationRow& row : lower.animations)
        for (int k : {0, row.count / 4, row.count / 2, row.count * 3 / 4}) {
            const auto put = [&](Parts& into, float turn) {
                for (Part part : assembled(lower, upper, head, static_cast<size_t>(row.first + k))) {
                    part.mesh =
                        part.mesh.turned(turn).moved({std::fmod(x, 9.6f), -2.3f * std::floor(x / 9.6f), 0});
                    into.push_back(std::move(part));
                }
            };
            put(front, 180 - 25);
            put(side, -90);
            x += 1.2f;
        }
    const float rows = std::floor((x - 0.1f) / 9.6f);
    const cVector3 middle(4.2f, -1.15f * rows - 0.25f, 0);
    addPreview({name + "_front", middle + cVector3(0, 0, 40), middle, 3.0f * (rows + 1), 1200, 1300}, front);
    addPreview({name + "_side", middle + cVector3(0, 0, 40), middle, 3.0f * (rows + 1), 1200, 1300}, side);
    Parts close;
    int i = 0;
    for (float turn : {180.0f, 130.0f, 90.0f, 0.0f})
        for (Part part : assembled(lower, upper, head, 0)) {
            part.mesh = part.mesh.turned(turn).moved({1.1f * static_cast<float>(i++ / 3), 0, 0});
            close.push_back(std::move(part));
        }
    addPreview({name + "_close", {1.65f, 0, 12}, {1.65f, -0.25f, 0}, 11.5f, 1200, 640}, close);
}
} // namespace

namespace {
void scale(CharacterPart& part, float by) {
    for (auto& frame : part.frames)
        for (cVector3& p : frame) p *= by;
    for (auto& tags : part.tags)
        for (Tag& t : tags) t.origin *= by;
}
} // namespace

void make(Output& out, const std::string& directory, const std::string& name, const Build& build,
          const Dress& dress, bool zUp) {
    const std::string base = directory + "/" + name;
    const Skin lowerBody = lowerSkin(build), upperBody = upperSkin(build), headBody = headSkin(build);
    CharacterPart lower = partOf(lowerBody, "lower", base + "_lower.tga");
    CharacterPart upper = partOf(upperBody, "upper", base + "_upper.tga");
    CharacterPart head = partOf(headBody, "head", base + "_head.tga");
    for (const Move& move : moves()) {
        lower.animations.push_back({move.name, static_cast<int>(lower.frames.size()), move.frames, move.fps});
        const int count = move.frames + (move.loops ? 0 : 1);
        for (int i = 0; i < count; ++i) {
            const int steps = move.loops ? move.frames : move.frames - 1;
            const Pose pose =
                move.pose(static_cast<float>(std::min(i, move.frames - 1)) / static_cast<float>(steps));
            const LowerFrame low = poseLower(pose);
            const UpperFrame high = poseUpper(pose, build);
            lower.frames.push_back(lowerBody.posed(lowerRest(), low.joints));
            lower.tags.push_back({low.torso});
            upper.frames.push_back(upperBody.posed(upperRest(build), high.joints));
            upper.tags.push_back({high.head, high.weapon});
        }
    }
    upper.animations = lower.animations;
    head.frames.push_back(headBody.posed({kNeck}, {Joint()}));
    for (cVector3& p : head.frames[0]) p *= build.head;
    head.tags.push_back({tagAt("tag_top", Joint().child({0, 0.5f, 0}, Joint()))});
    for (CharacterPart* part : {&lower, &upper, &head}) scale(*part, build.scale);
    out.put(base + "_lower.cff", cffFile(lower, zUp));
    out.put(base + "_upper.cff", cffFile(upper, zUp));
    out.put(base + "_head.cff", cffFile(head, zUp));
    paint(out, directory, name, build, dress);
    addShots(name, lower, upper, head);
}
} // namespace humanoid
