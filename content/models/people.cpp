#include "forge/recipes.h"
#include "models/humanoid.h"

using humanoid::Build;
using humanoid::Dress;

// The hero is read as stored, everyone else through the conversion of imported models.
FORGE_RECIPE(model_hero) {
    Build build;
    Dress dress{0xf2c29b, 0x7a3b1e, 0x2f6f8f, 0xe6b84c, 0xf4ead2, 0x5b4a3a, 0x6b3f22, 0x5a3318, 0x3f7f5a};
    humanoid::make(out, "maincharfinal", "mainchar_noweapon", build, dress, false);
}

FORGE_RECIPE(model_villager) {
    Build build;
    build.girth = 0.96f;
    build.limbs = 0.92f;
    build.shoulders = 0.225f;
    build.skirt = 0.42f;
    build.ponytail = true;
    Dress dress{0xe7ae86, 0x3a2417, 0xa8474f, 0xf0d9a0, 0xf7efe0, 0x6f5b4b, 0x7b5330, 0x70431f, 0x5a3a22};
    humanoid::make(out, "chars/villager", "villager", build, dress, true);
}

FORGE_RECIPE(model_guard) {
    Build build;
    build.girth = 1.12f;
    build.limbs = 1.12f;
    build.shoulders = 0.275f;
    build.skirt = 0.18f;
    build.hat = true;
    build.beard = true;
    Dress dress{0xd99c73, 0x8d8577, 0x4b6a3f, 0xc9862f, 0xd9d2c0, 0x4a4a52, 0x3c322b, 0x33261c, 0x3c5a7a};
    humanoid::make(out, "chars/guard", "guard", build, dress, true);
}
