#include "models/anim_model.h"
#include "support.h"

FUZZ_TARGET(shader) {
    fuzz::putFile("in.shader", fuzz::text(data, size));
    cAnimModel part;
    part.meshes.resize(1);
    fuzz::require(loadShader(part, ".", "in.shader"), "a shader file that exists can be read");
    fuzz::require(part.meshes[0].texture == kNoTexture && part.meshTextures.empty(),
                  "its lines change nothing");
    return 1;
}
