#include "forge/noise.h"
#include "forge/preview.h"
#include "forge/recipes.h"
#include "forge/writers.h"
#include "levels/growth.h"

#include <cmath>

using namespace forge;
using growth::foliage;
using growth::skirt;

// Things that stand about: static models in units, standing on y 0. The level scales them to half their
// longest side.
namespace {
constexpr cColour4 kIron{74, 80, 92, 0}, kBark{110, 74, 44, 0}, kGlow{255, 222, 130, 0},
    kBrass{206, 160, 74, 0}, kRope{196, 160, 104, 0}, kWhite{238, 232, 216, 0}, kRed{186, 62, 58, 0};
constexpr cColour4 kBlue{52, 98, 140, 0}, kClay{178, 98, 62, 0}, kSteel{150, 160, 172, 0},
    kGreen{82, 110, 62, 0};
const std::string kPlanks = "src_mdl\\planks.tga", kBeams = "src_mdl\\beams.tga",
                  kStone = "src_mdl\\stone.tga", kLeaves = "src_mdl\\leaves.tga",
                  kPaleLeaves = "src_mdl\\leaves_pale.tga", kNeedles = "src_mdl\\needles.tga";

void putModel(Output& out, const std::string& name, const Parts& parts) {
    out.put("s_mdl/" + name + ".cpm", cpmFile(parts));
    Parts shown = parts;
    cVector3 low = shown[0].mesh.low(), high = shown[0].mesh.high();
    for (const Part& p : shown)
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], p.mesh.low()[k]);
            high[k] = std::max(high[k], p.mesh.high()[k]);
        }
    const cVector3 middle = (low + high) / 2;
    addPreview({"thing_" + name, middle + cVector3(0.6f, 0.5f, 1) * ((high - low).length() * 1.1f), middle,
                45, 240, 240},
               shown);
}

Mesh boxOf(float x0, float y0, float z0, float x1, float y1, float z1, float repeats = 0.8f) {
    return faceted(box({x0, y0, z0}, {x1, y1, z1}, repeats));
}
} // namespace

FORGE_RECIPE(thing_barrel) {
    Mesh staves = lathe({{0, 0.03f},
                         {0.36f, 0.03f},
                         {0.36f, 0},
                         {0.40f, 0},
                         {0.47f, 0.3f},
                         {0.49f, 0.6f},
                         {0.47f, 0.9f},
                         {0.40f, 1.2f},
                         {0.36f, 1.2f},
                         {0.36f, 1.14f},
                         {0, 1.14f}},
                        14, 3, 1.4f);
    Mesh hoops;
    for (float y : {0.16f, 0.42f, 0.78f, 1.04f}) {
        const float r = 0.405f + 0.09f * std::sin(y / 1.2f * 3.14159f);
        hoops.append(lathe({{r - 0.02f, y - 0.045f},
                            {r + 0.015f, y - 0.04f},
                            {r + 0.015f, y + 0.04f},
                            {r - 0.02f, y + 0.045f}},
                           14));
    }
    putModel(out, "barrel", {{"wood", kPlanks, {}, staves}, {"iron", "", kIron, hoops}});
}

FORGE_RECIPE(thing_crate) {
    Mesh boards = boxOf(-0.46f, 0.04f, -0.46f, 0.46f, 0.96f, 0.46f, 1);
    Mesh frame;
    for (float y : {0.0f, 0.88f})
        for (float s : {-0.5f, 0.42f}) {
            frame.append(boxOf(-0.5f, y, s, 0.5f, y + 0.12f, s + 0.08f));
            frame.append(boxOf(s, y, -0.42f, s + 0.08f, y + 0.12f, 0.42f));
        }
    for (float x : {-0.5f, 0.42f})
        for (float z : {-0.5f, 0.42f}) frame.append(boxOf(x, 0.12f, z, x + 0.08f, 0.88f, z + 0.08f));
    putModel(out, "crate", {{"boards", kPlanks, {}, boards}, {"frame", kBeams, {}, frame}});
}

FORGE_RECIPE(thing_lantern) {
    Mesh post = lathe(
        {{0, 0}, {0.16f, 0}, {0.14f, 0.1f}, {0.07f, 0.16f}, {0.055f, 2.0f}, {0.09f, 2.06f}, {0, 2.06f}}, 10);
    Mesh cage = lathe({{0, 2.05f}, {0.13f, 2.06f}, {0.15f, 2.12f}, {0.11f, 2.12f}, {0, 2.12f}}, 8);
    cage.append(lathe({{0, 2.42f}, {0.19f, 2.42f}, {0.05f, 2.58f}, {0.03f, 2.66f}, {0, 2.68f}}, 8));
    for (int i = 0; i < 4; ++i)
        cage.append(
            boxOf(0.105f, 2.12f, -0.015f, 0.135f, 2.42f, 0.015f).turned(45 + 90 * static_cast<float>(i)));
    Mesh glass = lathe({{0, 2.12f}, {0.09f, 2.12f}, {0.115f, 2.27f}, {0.09f, 2.42f}, {0, 2.42f}}, 8);
    putModel(out, "lantern",
             {{"post", "", kIron, post}, {"cage", "", kIron, cage}, {"glass", "", kGlow, glass}});
}

FORGE_RECIPE(thing_tree) {
    Mesh trunk = tube({{0, 0, 0}, {0.05f, 0.4f, 0}, {-0.03f, 1.4f, 0.06f}, {0.05f, 2.6f, 0}},
                      {0.36f, 0.22f, 0.17f, 0.12f}, 9);
    trunk.append(
        tube({{-0.02f, 1.5f, 0.05f}, {0.5f, 2.1f, 0.25f}, {0.85f, 2.7f, 0.3f}}, {0.10f, 0.08f, 0.05f}, 7));
    trunk.append(
        tube({{0, 1.8f, 0.03f}, {-0.5f, 2.3f, -0.2f}, {-0.7f, 2.8f, -0.25f}}, {0.09f, 0.07f, 0.05f}, 7));
    struct Clump {
        float radius, x, y, z;
    };
    Mesh dark, light;
    uint32_t seed = 2;
    for (const Clump& c : {Clump{1.05f, -0.25f, 3.15f, 0.1f},
                           {0.78f, 0.95f, 2.95f, 0.35f},
                           {0.75f, -0.95f, 3.0f, -0.35f},
                           {0.7f, 0.2f, 3.1f, -0.85f},
                           {0.68f, -0.1f, 3.0f, 0.9f}})
        dark.append(foliage(c.radius, ++seed).moved({c.x, c.y, c.z}));
    for (const Clump& c : {Clump{0.85f, 0.55f, 3.75f, 0.25f},
                           {0.8f, -0.5f, 3.95f, -0.2f},
                           {0.7f, 0.1f, 4.4f, 0.05f},
                           {0.5f, 1.05f, 3.5f, -0.3f}})
        light.append(foliage(c.radius, ++seed).moved({c.x, c.y, c.z}));
    for (TexCoord& t : trunk.texCoords) t = {t.u * 2, t.v * 1.5f};
    putModel(out, "tree",
             {{"bark", kBeams, {}, trunk}, {"leaf", kLeaves, {}, dark}, {"crown", kPaleLeaves, {}, light}});
}

FORGE_RECIPE(thing_pine) {
    Mesh trunk = lathe({{0, 0}, {0.28f, 0}, {0.17f, 0.3f}, {0.13f, 1.5f}, {0, 1.5f}}, 9, 2, 1);
    Mesh needles;
    for (int i = 0; i < 5; ++i) {
        const auto t = static_cast<float>(i);
        needles.append(skirt(1.42f - 0.25f * t, 0.95f + 0.72f * t, 1.35f - 0.06f * t, 0.7f * t));
    }
    putModel(out, "pine", {{"bark", kBeams, {}, trunk}, {"needles", kNeedles, {}, needles}});
}

FORGE_RECIPE(thing_bush) {
    Mesh leaves = foliage(0.5f, 11).moved({0, 0.35f, 0});
    leaves.append(foliage(0.38f, 12).moved({0.42f, 0.28f, 0.15f}));
    leaves.append(foliage(0.34f, 13).moved({-0.36f, 0.26f, -0.12f}));
    Mesh berries;
    for (int i = 0; i < 14; ++i) {
        const float a = static_cast<float>(i) * 2.4f, y = 0.3f + 0.03f * static_cast<float>(i % 7);
        berries.append(ball(0.045f, 6, 4).moved({0.05f + 0.72f * std::sin(a), y, 0.5f * std::cos(a)}));
    }
    putModel(out, "bush", {{"leaf", kPaleLeaves, {}, leaves}, {"berry", "", kRed, berries}});
}

FORGE_RECIPE(thing_signpost) {
    Mesh post = boxOf(-0.07f, 0, -0.07f, 0.07f, 1.7f, 0.07f);
    Mesh arms = boxOf(-0.1f, 1.25f, 0.07f, 0.85f, 1.52f, 0.13f, 1.2f).turned(12);
    arms.append(boxOf(-0.85f, 0.92f, 0.07f, 0.1f, 1.17f, 0.13f, 1.2f).turned(-20));
    putModel(out, "signpost", {{"post", kBeams, {}, post}, {"arms", kPlanks, {}, arms}});
}

FORGE_RECIPE(thing_stool) {
    Mesh seat = lathe({{0, 0.40f}, {0.24f, 0.40f}, {0.26f, 0.43f}, {0.24f, 0.47f}, {0, 0.47f}}, 14, 2);
    Mesh legs;
    for (float a : {30.0f, 150.0f, 270.0f})
        legs.append(tube({{0.22f, 0, 0}, {0.13f, 0.42f, 0}}, {0.035f, 0.03f}, 7).turned(a));
    putModel(out, "stool", {{"seat", kPlanks, {}, seat}, {"legs", kBeams, {}, legs}});
}

FORGE_RECIPE(thing_chest) {
    Mesh body = boxOf(-0.5f, 0, -0.3f, 0.5f, 0.42f, 0.3f, 1);
    Mesh lid =
        lathe({{0, -0.5f}, {0.3f, -0.5f}, {0.3f, 0.5f}, {0, 0.5f}}, 16, 2).rolled(90).scaled({1, 0.72f, 1});
    for (cVector3& p : lid.positions) p.y = std::max(p.y, 0.0f) + 0.42f;
    Mesh bands;
    for (float x : {-0.4f, 0.34f}) bands.append(boxOf(x, -0.005f, -0.315f, x + 0.07f, 0.46f, 0.315f));
    bands.append(boxOf(-0.07f, 0.3f, 0.29f, 0.07f, 0.48f, 0.34f));
    putModel(out, "chest",
             {{"body", kPlanks, {}, body}, {"lid", kPlanks, {}, faceted(lid)}, {"bands", "", kIron, bands}});
}

FORGE_RECIPE(thing_pot) {
    Mesh clay = lathe({{0, 0},
                       {0.16f, 0},
                       {0.28f, 0.22f},
                       {0.26f, 0.42f},
                       {0.14f, 0.54f},
                       {0.18f, 0.62f},
                       {0.14f, 0.62f},
                       {0.10f, 0.52f},
                       {0, 0.5f}},
                      14);
    putModel(out, "pot", {{"clay", "", kClay, clay}});
}

FORGE_RECIPE(thing_boat) {
    // Hull as a tube bent open: sections from bow to stern, outside and inside.
    Mesh hull, trim;
    constexpr int kSections = 9, kAcross = 8;
    const auto point = [](int section, int across, float shrink) {
        const float s = static_cast<float>(section) / (kSections - 1) * 2 - 1,
                    a = static_cast<float>(across) / kAcross * 3.14159f;
        const float wide = 0.72f * std::sqrt(std::max(0.0f, 1 - s * s)) * shrink;
        const float deep = (0.5f - 0.1f * s * s) * shrink, rim = 0.55f + 0.22f * s * s;
        return cVector3(-std::cos(a) * wide, rim - std::sin(a) * deep, s * 1.9f * (0.9f + 0.1f * shrink));
    };
    for (int pass = 0; pass < 2; ++pass) {
        Mesh m;
        for (int j = 0; j < kSections; ++j)
            for (int i = 0; i <= kAcross; ++i)
                m.addVertex(point(j, i, pass == 0 ? 1 : 0.9f), static_cast<float>(i) * 0.4f,
                            static_cast<float>(j) * 0.35f);
        for (uint32_t j = 0; j + 1 < kSections; ++j)
            for (uint32_t i = 0; i < kAcross; ++i) {
                const uint32_t k = j * (kAcross + 1) + i;
                m.addTriangle(k, k + 1, k + kAcross + 2);
                m.addTriangle(k, k + kAcross + 2, k + kAcross + 1);
            }
        hull.append(pass == 0 ? m : m.insideOut());
    }
    for (float z : {-0.7f, 0.5f}) trim.append(boxOf(-0.62f, 0.40f, z, 0.62f, 0.46f, z + 0.28f));
    putModel(out, "boat", {{"hull", kPlanks, {}, hull}, {"seats", kBeams, {}, trim}});
}

FORGE_RECIPE(thing_flag) {
    Mesh pole = lathe({{0, 0}, {0.07f, 0}, {0.05f, 3.2f}, {0.09f, 3.25f}, {0, 3.36f}}, 9);
    Mesh cloth;
    for (int side = 0; side < 2; ++side) {
        Mesh m;
        for (int i = 0; i <= 8; ++i)
            for (float y : {2.25f, 3.1f}) {
                const float x = 0.05f + 0.16f * static_cast<float>(i);
                m.addVertex({x, y - 0.03f * static_cast<float>(i), 0.10f * std::sin(x * 5)}, x, y);
            }
        for (uint32_t i = 0; i < 8; ++i) {
            m.addTriangle(2 * i, 2 * i + 2, 2 * i + 3);
            m.addTriangle(2 * i, 2 * i + 3, 2 * i + 1);
        }
        cloth.append(side == 0 ? m : m.insideOut().moved({0, 0, -0.012f}));
    }
    putModel(out, "flag", {{"pole", kBeams, {}, pole}, {"cloth", "", kBlue, cloth}});
}

FORGE_RECIPE(thing_well) {
    Mesh ring =
        lathe({{0.62f, 0.1f}, {0.62f, 0.85f}, {0.84f, 0.85f}, {0.84f, 0.72f}, {0.78f, 0.70f}, {0.82f, 0}}, 14,
              6, 1.2f)
            .insideOut();
    Mesh wood;
    for (float x : {-0.74f, 0.64f}) wood.append(boxOf(x, 0.8f, -0.06f, x + 0.1f, 2.1f, 0.06f));
    wood.append(tube({{-0.85f, 1.45f, 0}, {0.95f, 1.45f, 0}}, {0.07f, 0.07f}, 8));
    wood.append(boxOf(0.9f, 1.2f, -0.03f, 0.95f, 1.5f, 0.03f));
    wood.append(boxOf(0.9f, 1.2f, -0.03f, 1.1f, 1.25f, 0.03f));
    Mesh roof;
    for (float turn : {0.0f, 180.0f}) {
        Mesh side;
        side.addQuad({-0.95f, 1.86f, 0.72f}, {0.95f, 1.86f, 0.72f}, {0.95f, 2.42f, 0}, {-0.95f, 2.42f, 0}, 3,
                     1.4f);
        side.addQuad({-0.95f, 2.36f, 0}, {0.95f, 2.36f, 0}, {0.95f, 1.80f, 0.72f}, {-0.95f, 1.80f, 0.72f}, 3,
                     1.4f);
        side.addQuad({-0.95f, 1.80f, 0.72f}, {0.95f, 1.80f, 0.72f}, {0.95f, 1.86f, 0.72f},
                     {-0.95f, 1.86f, 0.72f}, 3, 0.1f);
        for (float x : {-0.95f, 0.95f}) {
            const cVector3 a(x, 1.80f, 0.72f), b(x, 1.86f, 0.72f), c(x, 2.42f, 0), d(x, 2.36f, 0);
            x > 0 ? side.addQuad(a, d, c, b, 1, 0.1f) : side.addQuad(b, c, d, a, 1, 0.1f);
        }
        roof.append(side.turned(turn));
    }
    Mesh bucket = lathe({{0, 0.86f}, {0.15f, 0.86f}, {0.19f, 1.12f}, {0.16f, 1.12f}, {0, 0.95f}}, 10, 2)
                      .moved({0, 0, 0.7f});
    Mesh rope = tube({{0, 1.38f, 0.04f}, {0, 0.5f, 0.04f}}, {0.02f, 0.02f}, 5);
    Mesh water = lathe({{0.6f, 0.42f}, {0, 0.42f}}, 12);
    putModel(out, "well",
             {{"ring", kStone, {}, ring},
              {"wood", kBeams, {}, wood},
              {"roof", kPlanks, {}, roof},
              {"bucket", kPlanks, {}, bucket},
              {"rope", "", kRope, rope},
              {"water", "", kBlue, water}});
}

FORGE_RECIPE(thing_telescope) {
    Mesh legs;
    for (float turn : {0.0f, 120.0f, 240.0f})
        legs.append(tube({{0.42f, 0, 0}, {0.03f, 1.15f, 0}}, {0.03f, 0.035f}, 6).turned(turn));
    // It looks to the east and a little down, at the horizon.
    Mesh brass = tube({{-0.35f, 1.26f, 0}, {0.1f, 1.24f, 0}}, {0.055f, 0.06f}, 10);
    brass.append(tube({{0.1f, 1.24f, 0}, {0.62f, 1.215f, 0}}, {0.08f, 0.085f}, 10));
    brass.append(tube({{-0.42f, 1.265f, 0}, {-0.35f, 1.26f, 0}}, {0.07f, 0.04f}, 8));
    Mesh glass = lathe({{0.075f, 0}, {0, 0.01f}}, 10).rolled(-90).moved({0.622f, 1.215f, 0});
    putModel(out, "telescope",
             {{"legs", kBeams, {}, legs}, {"brass", "", kBrass, brass}, {"glass", "", kBlue, glass}});
}

FORGE_RECIPE(thing_buoy) {
    Mesh red = lathe({{0, 0}, {0.42f, 0.08f}, {0.46f, 0.3f}, {0.40f, 0.42f}}, 14);
    red.append(lathe({{0.32f, 0.66f}, {0.16f, 0.95f}, {0.1f, 1.02f}, {0, 1.02f}}, 14));
    Mesh white = lathe({{0.40f, 0.42f}, {0.32f, 0.66f}}, 14);
    Mesh iron = lathe({{0.03f, 1.0f}, {0.03f, 1.14f}, {0.07f, 1.2f}, {0.05f, 1.28f}, {0, 1.3f}}, 8);
    putModel(out, "buoy", {{"red", "", kRed, red}, {"white", "", kWhite, white}, {"iron", "", kIron, iron}});
}

FORGE_RECIPE(thing_bell) {
    Mesh bell = lathe({{0.27f, 0.03f},
                       {0.30f, 0.0f},
                       {0.36f, 0.02f},
                       {0.26f, 0.22f},
                       {0.20f, 0.48f},
                       {0.10f, 0.58f},
                       {0, 0.62f}},
                      14);
    bell.append(lathe({{0, 0.1f}, {0.27f, 0.03f}}, 14));
    Mesh iron = ball(0.07f, 7, 5).moved({0, 0, 0});
    iron.append(tube({{0, 0.6f, 0}, {0, 0.72f, 0}}, {0.03f, 0.03f}, 5));
    putModel(out, "bell",
             {{"brass", "", kBrass, bell},
              {"iron", "", kIron, iron},
              {"rope", "", kRope, tube({{0, 0, 0}, {0, -0.7f, 0}}, {0.02f, 0.025f}, 5)}});
}

FORGE_RECIPE(thing_gate) {
    Mesh bars, wood;
    for (int i = 0; i < 9; ++i) {
        const float x = 0.1f + 0.3f * static_cast<float>(i);
        bars.append(tube({{x, 0.05f, 0}, {x, 2.3f, 0}}, {0.03f, 0.03f}, 5));
    }
    for (float y : {0.1f, 1.1f, 2.1f}) wood.append(boxOf(0, y, -0.05f, 2.6f, y + 0.14f, 0.05f));
    // None in the middle: shut, it stands between the camera and whoever is at the bell.
    for (float x : {0.0f, 2.46f}) wood.append(boxOf(x, 0, -0.06f, x + 0.14f, 2.35f, 0.06f));
    // Things turn about the middle of their box: a vertex without a face makes that the hinge.
    wood.addVertex({-2.6f, 0, 0}, 0, 0);
    putModel(out, "gate", {{"bars", "", kIron, bars}, {"wood", kBeams, {}, wood}});
}

FORGE_RECIPE(thing_lever) {
    Mesh stone = boxOf(-0.3f, 0, -0.22f, 0.3f, 0.45f, 0.22f);
    Mesh iron = boxOf(-0.16f, 0.45f, -0.08f, 0.16f, 0.52f, 0.08f);
    iron.append(tube({{0, 0.48f, 0}, {0, 1.05f, -0.42f}}, {0.035f, 0.03f}, 7));
    putModel(out, "lever",
             {{"stone", kStone, {}, stone},
              {"iron", "", kIron, iron},
              {"knob", "", kRed, ball(0.08f, 9, 6).moved({0, 1.08f, -0.44f})}});
}

FORGE_RECIPE(thing_trolley) {
    // Open in front and behind its rails of wood; one stands in it. Forwards is north.
    Mesh box = boxOf(-0.55f, 0.2f, -1.1f, 0.55f, 0.28f, 1.1f);
    for (float x : {-0.58f, 0.5f}) box.append(boxOf(x, 0.28f, -1.1f, x + 0.08f, 0.75f, 1.1f));
    box.append(boxOf(-0.5f, 0.28f, 1.02f, 0.5f, 0.75f, 1.1f));
    box.append(boxOf(-0.5f, 0.28f, -1.1f, 0.5f, 0.62f, -1.02f));
    Mesh iron, rims = boxOf(-0.62f, 0.7f, -1.15f, -0.46f, 0.78f, 1.15f);
    rims.append(boxOf(0.46f, 0.7f, -1.15f, 0.62f, 0.78f, 1.15f));
    for (float z : {-0.75f, 0.75f}) {
        iron.append(tube({{-0.72f, 0.2f, z}, {0.72f, 0.2f, z}}, {0.04f, 0.04f}, 6));
        for (float x : {-0.68f, 0.62f})
            iron.append(tube({{x, 0.2f, z}, {x + 0.06f, 0.2f, z}}, {0.2f, 0.2f}, 12));
    }
    putModel(out, "trolley",
             {{"box", kPlanks, {}, box}, {"rims", kBeams, {}, rims}, {"iron", "", kIron, iron}});
}

// The two that the game turns into models of its own at every start; tools, which start no game, find them
// made.
FORGE_RECIPE(thing_hand_arms) {
    // Pistol: grip at the origin, barrel to the north.
    const Mesh steel = [] {
        Mesh m = tube({{0, 0.11f, 0.05f}, {0, 0.11f, -0.34f}}, {0.032f, 0.026f}, 10);
        m.append(boxOf(-0.03f, 0.07f, -0.12f, 0.03f, 0.13f, 0.07f));
        m.append(boxOf(-0.012f, 0.13f, 0.02f, 0.012f, 0.18f, 0.06f));
        m.append(boxOf(-0.01f, 0.0f, -0.1f, 0.01f, 0.02f, -0.02f));
        return m;
    }();
    const Mesh grip = boxOf(-0.026f, -0.11f, -0.03f, 0.026f, 0.1f, 0.035f).tilted(18);
    const Parts pistol = {{"steel", "", kSteel, steel}, {"grip", "", kBark, grip}};
    out.put("3ds/pistoltest.3ds", threeDsFile(pistol));
    out.put("s_mdl/pistol.cpm", cpmFile(pistol));
    // Grenade: an egg with a cap, centred.
    Mesh egg = ball(0.11f, 12, 9).scaled({1, 1.2f, 1});
    Mesh cap = lathe({{0, 0.11f}, {0.045f, 0.11f}, {0.045f, 0.17f}, {0, 0.18f}}, 10);
    cap.append(boxOf(0.03f, 0.02f, -0.012f, 0.05f, 0.17f, 0.012f).rolled(-24).moved({0.035f, 0.02f, 0}));
    const Parts grenade = {{"shell", "", kGreen, egg}, {"cap", "", kSteel, cap}};
    out.put("3ds/grenade.3ds", threeDsFile(grenade));
    out.put("s_mdl/grenade.cpm", cpmFile(grenade));
}

// What flies: a bolt, a stone, a flask; all point along −z.
FORGE_RECIPE(thing_missiles) {
    Mesh shaft = tube({{0, 0, 0.5f}, {0, 0, -0.4f}}, {0.028f, 0.028f}, 6);
    Mesh head = tube({{0, 0, -0.38f}, {0, 0, -0.44f}, {0, 0, -0.6f}}, {0.03f, 0.06f, 0.004f}, 6);
    Mesh vanes;
    for (float turn : {0.0f, 120.0f, 240.0f})
        vanes.append(boxOf(-0.008f, 0.02f, 0.26f, 0.008f, 0.12f, 0.5f).rolled(turn));
    putModel(out, "bolt",
             {{"shaft", kBeams, {}, shaft}, {"head", "", kSteel, head}, {"vanes", "", kRed, vanes}});
    putModel(out, "rock", {{"stone", kStone, {}, faceted(parts::boulder(0.5f, 77))}});
    Mesh glass = lathe(
        {{0, 0}, {0.3f, 0.04f}, {0.36f, 0.3f}, {0.26f, 0.52f}, {0.1f, 0.62f}, {0.1f, 0.82f}, {0, 0.82f}}, 10);
    Mesh cork = lathe({{0, 0.8f}, {0.085f, 0.8f}, {0.075f, 0.95f}, {0, 0.95f}}, 8);
    putModel(out, "flask", {{"glass", "", kRed, glass}, {"cork", kBeams, {}, cork}});
}

// The beacon's iron bowl on three legs, and its fire.
FORGE_RECIPE(thing_beacon) {
    Mesh bowl = lathe({{0, 0.7f},
                       {0.5f, 0.8f},
                       {0.85f, 1.25f},
                       {0.92f, 1.25f},
                       {0.92f, 1.35f},
                       {0.78f, 1.3f},
                       {0.42f, 0.95f},
                       {0, 0.9f}},
                      14);
    for (float a : {30.0f, 150.0f, 270.0f})
        bowl.append(tube({{0.62f, 0, 0}, {0.4f, 0.8f, 0}}, {0.06f, 0.07f}, 6).turned(a));
    Mesh wood;
    for (int i = 0; i < 5; ++i)
        wood.append(tube({{-0.55f, 1.15f, 0}, {0.5f, 1.38f, 0}}, {0.09f, 0.08f}, 7)
                        .turned(72 * static_cast<float>(i)));
    putModel(out, "beacon", {{"iron", "", kIron, bowl}, {"wood", kBeams, {}, wood}});
    Mesh outer, inner;
    for (int i = 0; i < 8; ++i) {
        const float a = 0.785f * static_cast<float>(i), tall = 1.1f + 0.7f * latticeValue(i, 1, 781);
        const Mesh tongue =
            lathe({{0, 0}, {0.24f, 0.12f}, {0.2f, 0.35f * tall}, {0.08f, 0.75f * tall}, {0, tall}}, 6);
        (i % 2 == 0 ? outer : inner).append(tongue.moved({0.38f * std::sin(a), 0, 0.38f * std::cos(a)}));
    }
    inner.append(lathe({{0, 0}, {0.3f, 0.2f}, {0.22f, 0.9f}, {0.1f, 1.6f}, {0, 2.2f}}, 8));
    putModel(out, "flame", {{"outer", "", {240, 138, 36, 0}, outer}, {"inner", "", kGlow, inner}});
}

// A heap of stones to throw, a powder box, the toll gate.
FORGE_RECIPE(thing_supplies) {
    Mesh heap;
    uint32_t seed = 790;
    for (const auto& [x, y, z] : {std::tuple{-0.16f, 0.09f, 0.1f},
                                  {0.15f, 0.09f, 0.12f},
                                  {0.0f, 0.09f, -0.15f},
                                  {0.0f, 0.25f, 0.02f}})
        heap.append(parts::boulder(0.17f, ++seed).moved({x, y, z}));
    putModel(out, "stones", {{"stone", kStone, {}, faceted(heap)}});
    Mesh boards = boxOf(-0.32f, 0, -0.2f, 0.32f, 0.3f, 0.2f, 1.4f);
    Mesh frame;
    for (float x : {-0.34f, 0.28f}) frame.append(boxOf(x, -0.01f, -0.22f, x + 0.06f, 0.33f, 0.22f));
    Mesh mark = boxOf(-0.1f, 0.08f, 0.2f, 0.1f, 0.22f, 0.215f);
    putModel(out, "powder",
             {{"boards", kPlanks, {}, boards}, {"frame", kBeams, {}, frame}, {"mark", "", kRed, mark}});
    Mesh rails;
    for (float y : {0.25f, 0.75f, 1.25f}) rails.append(boxOf(-1.5f, y, -0.05f, 1.5f, y + 0.14f, 0.05f));
    for (int i = 0; i < 7; ++i) {
        const float x = -1.42f + 0.44f * static_cast<float>(i);
        rails.append(boxOf(x, 0.05f, -0.09f, x + 0.16f, 1.6f + 0.12f * static_cast<float>(i % 2), -0.04f));
    }
    putModel(out, "tollgate", {{"rails", kPlanks, {}, rails}});
}
