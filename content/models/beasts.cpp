// Animals: three stiff parts each, legs that swing, a body that bobs, a head that nods.

#include "forge/recipes.h"
#include "forge/skeleton.h"
#include "forge/writers.h"
#include "pictures/tints.h"

#include <cmath>

using namespace forge;
using tints::Tint;
using tints::tinted;

namespace {
constexpr float kTurn = 6.28318531f;

struct BeastGait {
    const char* name;
    int frames, fps;
    float swing;    ///< of the legs, degrees
    float bob;      ///< of the body, units
    float nod;      ///< of the head, degrees down at the deepest
    float poke;     ///< how sharply it nods: 1 a wave, more: a quick peck and a rest
    float fall = 0; ///< of the body onto its side by the end, degrees; such a gait does not loop
};
/// Facing −z, the middle of its body at the origin.
struct Beast {
    struct Leg {
        cVector3 hip;
        float phase; ///< of its swing, in cycles
    };
    Mesh leg; ///< hanging from the origin
    std::vector<Leg> legs;
    Mesh body;
    cVector3 neck; ///< where the head is joined
    Mesh head;     ///< around the neck
    std::vector<BeastGait> gaits;
};

CharacterPart part(const char* name, const Mesh& shape) {
    CharacterPart p;
    p.meshName = name;
    p.texture = "src_mdl/tints.tga";
    p.texCoords = shape.texCoords;
    p.faces = shape.faces;
    return p;
}

/// Its middle sinks to the ground as it rolls over.
float sunk(const Beast& b, float roll) {
    constexpr float kDegree = 57.29578f;
    const float lying = -b.legs.front().hip.y - b.leg.low().y + b.body.low().x;
    return -lying * std::sin(roll / kDegree);
}

Mesh legsAt(const Beast& b, float t, float swing) {
    Mesh m;
    for (const Beast::Leg& leg : b.legs)
        m.append(b.leg.tilted(swing * std::sin(kTurn * (t + leg.phase))).moved(leg.hip));
    return m;
}

void putBeast(Output& out, const std::string& base, const Beast& b) {
    CharacterPart lower = part("legs", legsAt(b, 0, 0)), upper = part("body", b.body),
                  head = part("head", b.head);
    for (const BeastGait& g : b.gaits) {
        const AnimationRow row{g.name, static_cast<int>(lower.frames.size()), g.frames, g.fps};
        lower.animations.push_back(row);
        upper.animations.push_back(row);
        // One that does not loop ends with its last pose twice: the game blends towards the frame after it.
        const int poses = g.fall != 0 ? g.frames + 1 : g.frames;
        for (int i = 0; i < poses; ++i) {
            const float t = static_cast<float>(i) / static_cast<float>(g.frames);
            const float gone = std::min(1.0f, static_cast<float>(i + 1) / static_cast<float>(g.frames));
            const float roll = g.fall * gone * gone, sink = g.fall != 0 ? sunk(b, roll) : 0;
            lower.frames.push_back(legsAt(b, t, g.swing).rolled(roll).moved({0, sink, 0}).positions);
            const Joint side = turnZ(roll);
            lower.tags.push_back(
                {{"tag_torso", {0, sink + g.bob * std::sin(2 * kTurn * t), 0}, {side.x, side.y, side.z}}});
            upper.frames.push_back(b.body.positions);
            const float down = std::pow(0.5f - 0.5f * std::cos(kTurn * t), g.poke) * g.nod;
            const Joint j = turnX(-down);
            upper.tags.push_back({{"tag_head", b.neck, {j.x, j.y, j.z}}, {"tag_weapon", b.neck}});
        }
    }
    head.frames.push_back(b.head.positions);
    head.tags.push_back({{"tag_top", {0, 0.1f, 0}}});
    out.put(base + "_lower.cff", cffFile(lower, true));
    out.put(base + "_upper.cff", cffFile(upper, true));
    out.put(base + "_head.cff", cffFile(head, true));
}

void addEyes(Mesh& head, const cVector3& at, float size) {
    for (float side : {-1.0f, 1.0f}) {
        head.append(tinted(ball(size, 7, 5), Tint::kWhite).moved({side * at.x, at.y, at.z}));
        head.append(tinted(ball(size * 0.6f, 6, 4), Tint::kIron)
                        .moved({side * (at.x + size * 0.5f), at.y, at.z - size * 0.45f}));
    }
}
} // namespace

// 0.6 high; its feet stand 0.3 below its middle.
FORGE_RECIPE(model_hen) {
    Beast hen;
    hen.leg = tinted(tube({{0, 0, 0}, {0, -0.12f, 0}}, {0.02f, 0.016f}, 5), Tint::kYellow);
    for (float x : {-0.03f, 0.0f, 0.03f})
        hen.leg.append(
            tinted(tube({{0, -0.115f, 0.01f}, {x, -0.12f, -0.07f}}, {0.014f, 0.006f}, 4), Tint::kYellow));
    hen.legs = {{{-0.07f, -0.18f, 0.02f}, 0}, {{0.07f, -0.18f, 0.02f}, 0.5f}};
    hen.body = tinted(ball(0.2f, 12, 8).scaled({0.8f, 0.82f, 1.1f}), Tint::kCream).moved({0, -0.05f, 0});
    for (float side : {-1.0f, 1.0f})
        hen.body.append(tinted(ball(0.13f, 8, 5).scaled({0.25f, 0.7f, 1.15f}), Tint::kClay)
                            .tilted(-12)
                            .moved({side * 0.155f, -0.03f, 0.03f}));
    for (float turn : {-24.0f, 0.0f, 24.0f})
        hen.body.append(tinted(ball(0.12f, 7, 5).scaled({0.3f, 1.05f, 0.5f}), Tint::kClay)
                            .tilted(38)
                            .turned(turn)
                            .moved({0, 0.07f, 0.2f}));
    hen.neck = {0, 0.04f, -0.15f};
    hen.head =
        tinted(tube({{0, -0.06f, 0.03f}, {0, 0.08f, -0.02f}, {0, 0.15f, -0.03f}}, {0.10f, 0.075f, 0.06f}, 9),
               Tint::kCream);
    hen.head.append(tinted(ball(0.075f, 9, 6), Tint::kCream).moved({0, 0.17f, -0.04f}));
    hen.head.append(
        tinted(tube({{0, 0.165f, -0.10f}, {0, 0.15f, -0.16f}}, {0.03f, 0.005f}, 5), Tint::kYellow));
    for (float z : {-0.075f, -0.035f, 0.005f})
        hen.head.append(
            tinted(ball(0.035f, 6, 4).scaled({0.5f, 1.1f, 0.8f}), Tint::kRed).moved({0, 0.25f, z}));
    hen.head.append(
        tinted(ball(0.025f, 6, 4).scaled({0.7f, 1.3f, 0.7f}), Tint::kRed).moved({0, 0.12f, -0.115f}));
    addEyes(hen.head, {0.055f, 0.19f, -0.085f}, 0.018f);
    hen.gaits = {{"BOTH_IDLE", 30, 15, 0, 0.004f, 95, 5},
                 {"BOTH_WALK", 8, 15, 30, 0.01f, 16, 1},
                 {"BOTH_RUN", 6, 21, 44, 0.025f, 22, 1}};
    putBeast(out, "chars/hen/hen", hen);
}

// As long as a man; its feet stand 0.8 below its middle.
FORGE_RECIPE(model_tortoise) {
    Beast beast;
    beast.leg = tinted(
        lathe({{0, -0.42f}, {0.20f, -0.42f}, {0.22f, -0.36f}, {0.17f, -0.2f}, {0.2f, 0.05f}, {0, 0.1f}}, 9),
        Tint::kReed);
    for (float x : {-0.1f, 0.0f, 0.1f})
        beast.leg.append(tinted(ball(0.055f, 6, 4), Tint::kCream).moved({x, -0.39f, -0.19f}));
    beast.legs = {{{-0.55f, -0.38f, -0.6f}, 0},
                  {{0.55f, -0.38f, -0.6f}, 0.5f},
                  {{-0.55f, -0.38f, 0.6f}, 0.5f},
                  {{0.55f, -0.38f, 0.6f}, 0}};
    beast.body = tinted(lathe({{0, -0.42f}, {0.75f, -0.36f}, {0.92f, -0.22f}}, 16), Tint::kCream)
                     .scaled({0.95f, 1, 1.12f});
    beast.body.append(tinted(lathe({{0.92f, -0.22f}, {1.0f, -0.16f}, {0.93f, -0.06f}}, 16), Tint::kBook)
                          .scaled({0.95f, 1, 1.12f}));
    beast.body.append(
        tinted(lathe({{0.93f, -0.06f}, {0.83f, 0.24f}, {0.58f, 0.5f}, {0.28f, 0.64f}, {0, 0.68f}}, 16),
               Tint::kCabbage)
            .scaled({0.95f, 1, 1.12f}));
    // Plates on the shell: a ring and a crown.
    const auto plate = [&](float around, float up, float size) {
        const Mesh m =
            tinted(lathe({{size, -0.02f}, {size * 0.92f, 0.035f}, {size * 0.3f, 0.06f}, {0, 0.065f}}, 6),
                   Tint::kReed);
        beast.body.append(m.tilted(up)
                              .moved({0, 0, 0.0f})
                              .turned(around)
                              .moved({0.92f * std::sin(around / 57.3f) * std::sin(up / 57.3f),
                                      0.66f * std::cos(up / 57.3f) + 0.01f,
                                      1.06f * std::cos(around / 57.3f) * std::sin(up / 57.3f)}));
    };
    for (int i = 0; i < 7; ++i) plate(360.0f / 7 * static_cast<float>(i), 52, 0.3f);
    plate(0, 0, 0.27f);
    beast.neck = {0, -0.12f, -0.95f};
    beast.head =
        tinted(tube({{0, -0.06f, 0.2f}, {0, 0.08f, -0.2f}, {0, 0.2f, -0.36f}}, {0.19f, 0.16f, 0.14f}, 10),
               Tint::kReed);
    beast.head.append(
        tinted(ball(0.22f, 11, 8).scaled({0.9f, 0.85f, 1.15f}), Tint::kReed).moved({0, 0.27f, -0.45f}));
    beast.head.append(
        tinted(ball(0.1f, 8, 5).scaled({1.1f, 0.6f, 0.8f}), Tint::kCream).moved({0, 0.2f, -0.64f}));
    addEyes(beast.head, {0.15f, 0.34f, -0.56f}, 0.055f);
    beast.gaits = {{"BOTH_IDLE", 36, 10, 0, 0.008f, 14, 1}, {"BOTH_WALK", 24, 21, 30, 0.03f, 8, 1}};
    putBeast(out, "chars/tortoise/tortoise", beast);
}

// A wild boar, chest high; its feet stand 0.55 below its middle.
FORGE_RECIPE(model_boar) {
    Beast boar;
    boar.leg = tinted(tube({{0, 0.06f, 0}, {0, -0.16f, 0.02f}, {0, -0.33f, 0}}, {0.085f, 0.06f, 0.045f}, 7),
                      Tint::kBook);
    boar.leg.append(
        tinted(lathe({{0, -0.36f}, {0.06f, -0.36f}, {0.05f, -0.28f}, {0, -0.28f}}, 6), Tint::kIron));
    boar.legs = {{{-0.17f, -0.19f, -0.30f}, 0},
                 {{0.17f, -0.19f, -0.30f}, 0.5f},
                 {{-0.16f, -0.19f, 0.34f}, 0.5f},
                 {{0.16f, -0.19f, 0.34f}, 0}};
    boar.body =
        tinted(ball(0.34f, 13, 9).scaled({0.86f, 0.98f, 1.05f}), Tint::kBook).moved({0, 0.06f, -0.16f});
    boar.body.append(
        tinted(ball(0.29f, 12, 8).scaled({0.86f, 0.95f, 1.2f}), Tint::kBook).moved({0, 0.0f, 0.24f}));
    // Bristles along the back, a tail.
    for (int i = 0; i < 7; ++i) {
        const float z = -0.42f + 0.14f * static_cast<float>(i),
                    y = 0.36f - 0.035f * static_cast<float>(i) - (i == 0 ? 0.05f : 0.0f);
        boar.body.append(
            tinted(
                lathe({{0.06f, -0.06f}, {0.035f, 0.06f}, {0, 0.15f}}, 5).scaled({0.5f, 1, 1.2f}).tilted(28),
                Tint::kIron)
                .moved({0, y, z}));
    }
    boar.body.append(tinted(
        tube({{0, 0.08f, 0.56f}, {0.03f, 0.02f, 0.66f}, {-0.02f, -0.12f, 0.69f}}, {0.025f, 0.02f, 0.03f}, 5),
        Tint::kIron));
    boar.neck = {0, 0.02f, -0.42f};
    boar.head =
        tinted(tube({{0, 0.06f, 0.14f}, {0, 0.02f, -0.14f}, {0, -0.10f, -0.38f}}, {0.25f, 0.20f, 0.10f}, 10),
               Tint::kBook);
    boar.head.append(
        tinted(lathe({{0, 0}, {0.095f, 0}, {0.10f, 0.05f}, {0, 0.06f}}, 9).tilted(-112), Tint::kClay)
            .moved({0, -0.115f, -0.385f}));
    for (float side : {-1.0f, 1.0f}) {
        boar.head.append(tinted(tube({{side * 0.09f, -0.14f, -0.28f},
                                      {side * 0.16f, -0.08f, -0.36f},
                                      {side * 0.17f, 0.05f, -0.39f}},
                                     {0.03f, 0.025f, 0.006f}, 6),
                                Tint::kCream));
        boar.head.append(tinted(lathe({{0.075f, 0}, {0.06f, 0.1f}, {0, 0.19f}}, 6)
                                    .scaled({1, 1, 0.4f})
                                    .tilted(18)
                                    .rolled(-side * 26),
                                Tint::kBook)
                             .moved({side * 0.15f, 0.17f, 0.02f}));
    }
    addEyes(boar.head, {0.125f, 0.085f, -0.17f}, 0.035f);
    boar.gaits = {{"BOTH_IDLE", 36, 12, 0, 0.006f, 26, 3},
                  {"BOTH_WALK", 14, 21, 26, 0.012f, 8, 1},
                  {"BOTH_RUN", 8, 25, 48, 0.04f, 14, 1},
                  {"BOTH_PAW", 12, 18, 16, 0.02f, 34, 1},
                  {"BOTH_DEATH1", 12, 18, 20, 0, 10, 1, 82}};
    putBeast(out, "chars/boar/boar", boar);
}
