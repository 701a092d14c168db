#include "models/anim_model.h"
#include "support.h"

FUZZ_TARGET(skin) {
    fuzz::putFile("in.skin", fuzz::text(data, size));
    cAnimModel part;
    part.meshes.resize(2);
    part.meshTextures = {{"first", ""}, {"torso", ""}};
    part.currentMesh = "torso";
    const bool ok = loadSkin(part, ".", "in.skin");
    fuzz::require(ok, "a skin that exists can be read");
    fuzz::require(part.meshes[0].texture == part.meshes[1].texture, "all meshes get the same texture");
    fuzz::cDigest digest;
    for (const auto& record : part.meshTextures) digest.add(record.meshName).add(record.texturePath);
    return digest.addValue(part.meshes[0].texture).value();
}
