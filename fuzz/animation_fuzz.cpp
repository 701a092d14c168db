// animation.cfg, and its animations played on a character of two frames.
#include "models/character_pose.h"
#include "support.h"

namespace {
std::shared_ptr<cCharacterModel> character() {
    auto model = std::make_shared<cCharacterModel>();
    for (const CharacterPart part : {kLowerPart, kUpperPart}) {
        cAnimMesh mesh;
        mesh.verticesPerFrame = 3;
        mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
        mesh.faces = mesh.faceTexCoords = {{0, 1, 2}};
        model->parts[part].meshes = {mesh};
        model->parts[part].frameCount = 2;
    }
    return model;
}

void play(const std::shared_ptr<cCharacterModel>& model, CharacterPart part, fuzz::cDigest& digest) {
    for (int32_t i = 0; i < static_cast<int32_t>(model->parts[part].animations.size()); ++i) {
        for (const bool looping : {false, true}) {
            cCharacterPose pose(model);
            fuzz::require(pose.setAnimationByIndex(part, i), "every animation can be set");
            pose.setPlaying(part, true);
            pose.setLooping(part, looping);
            for (const uint32_t now : {0u, 16u, 2000u, 0x80000000u, 0xFFFFFFFFu}) pose.advance(now);
            digest.addValue(pose.getState(part).frameA).addValue(pose.getState(part).frameB);
            pose.draw(cMatrix4::identity());
        }
    }
}
} // namespace

FUZZ_TARGET(animation) {
    fuzz::putFile("in.cfg", fuzz::text(data, size));
    const auto model = character();
    fuzz::require(model->readAnimations("in.cfg"), "a table that exists can be read");
    fuzz::cDigest digest;
    for (const CharacterPart part : {kLowerPart, kUpperPart}) {
        for (const cAnimation& a : model->parts[part].animations)
            digest.add(a.name).addValue(a.firstFrame).addValue(a.endFrame).addValue(a.fps);
        play(model, part, digest);
    }
    return digest.value();
}
