// A wooden figure as an MD3 set: the example for drop_md3. Legs and arms swing about hips and shoulders.

#include "forge/md3.h"
#include "forge/recipes.h"

#include <cmath>

using namespace forge;

namespace {
constexpr int kBothFrames = 6, kLoopFrames = 8;
/// Both halves share the first six frames; after them come seven moves of the torso, in the legs' own count
/// the legs'.
const std::vector<AnimationRow> kTable = {
    {"BOTH_FALL1", 0, 1, 10},   {"BOTH_DOWN1", 1, 1, 10}, {"BOTH_FALL2", 2, 1, 10}, {"BOTH_DOWN2", 3, 1, 10},
    {"BOTH_FALL3", 4, 1, 10},   {"BOTH_DOWN3", 5, 1, 10}, {"TORSO_WAVE", 6, 8, 12}, {"TORSO_POINT", 6, 8, 12},
    {"TORSO_PUSH", 6, 8, 12},   {"TORSO_DROP", 6, 8, 12}, {"TORSO_LIFT", 6, 8, 12}, {"TORSO_STAND", 6, 1, 12},
    {"TORSO_STAND2", 6, 1, 12}, {"LEGS_WALK", 14, 8, 12}, {"LEGS_RUN", 14, 8, 18},  {"LEGS_IDLE", 14, 1, 12},
};

/// A box from its hinge downwards, swung to the front by an angle in degrees.
Mesh limb(float x, float top, float length, float width, float degrees) {
    return box({-width, -length, -width}, {width, 0, width}, 1).tilted(degrees).moved({x, top, 0});
}

float swing(int frame, float most) {
    return frame < kBothFrames
               ? 0
               : most * std::sin(static_cast<float>(frame - kBothFrames) * 6.2831853f / kLoopFrames);
}

Mesh legs(int frame) {
    Mesh m = box({-0.25f, -0.2f, -0.14f}, {0.25f, 0.02f, 0.14f}, 1);
    m.append(limb(-0.15f, -0.15f, 1.05f, 0.09f, swing(frame, 32)));
    m.append(limb(0.15f, -0.15f, 1.05f, 0.09f, swing(frame, -32)));
    return m;
}

Mesh torso(int frame) {
    Mesh m = box({-0.28f, 0, -0.15f}, {0.28f, 0.55f, 0.15f}, 1);
    m.append(limb(-0.37f, 0.52f, 0.6f, 0.07f, swing(frame, -40)));
    m.append(limb(0.37f, 0.52f, 0.6f, 0.07f, swing(frame, 40)));
    return m;
}

Mesh head(int) {
    return box({-0.17f, 0, -0.17f}, {0.17f, 0.36f, 0.17f}, 1);
}

CharacterPart part(const char* name, Mesh (*shape)(int), int frames, const std::vector<Tag>& tags) {
    CharacterPart p;
    p.meshName = name;
    for (int f = 0; f < frames; ++f) {
        const Mesh m = shape(f);
        p.texCoords = m.texCoords;
        p.faces = m.faces;
        p.frames.push_back(m.positions);
        p.tags.push_back(tags);
    }
    return p;
}
} // namespace

FORGE_RECIPE(model_mannequin) {
    const std::string dir = "src_mdl/mannequin/";
    constexpr int kFrames = kBothFrames + kLoopFrames;
    out.put(dir + "mannequin_lower.md3", md3File(part("legs", legs, kFrames, {{"tag_torso"}})));
    out.put(dir + "mannequin_upper.md3",
            md3File(part("torso", torso, kFrames, {{"tag_head", {0, 0.57f, 0}}, {"tag_torso"}})));
    out.put(dir + "mannequin_head.md3", md3File(part("face", head, 1, {{"tag_head"}})));
    out.putText(dir + "lower_default.skin", "legs,textures/wood.tga\ntag_torso,\n");
    out.putText(dir + "upper_default.skin", "torso,textures/wood.tga\ntag_head,\n");
    out.putText(dir + "head_default.skin", "face,textures/wood.tga\n");
    out.putText(dir + "animation.cfg", md3AnimationFile(kTable));
}
