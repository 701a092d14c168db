#include "forge/recipes.h"
#include "models/humanoid.h"

using humanoid::Build;
using humanoid::Dress;
using humanoid::Hair;
using humanoid::Hat;

// The hero is read as stored, everyone else through the conversion of imported models.
FORGE_RECIPE(model_hero) {
    Build build;
    build.waist = 0.95f;
    build.jaw = 0.97f;
    Dress dress{0xf2c29b, 0x7a3b1e, 0x2f6f8f, 0xe6b84c, 0xf4ead2, 0x5b4a3a, 0x6b3f22, 0x5a3318, 0x3f7f5a};
    humanoid::make(out, "maincharfinal", "mainchar_noweapon", build, dress, false);
}

// Rosa keeps the garden.
FORGE_RECIPE(model_villager) {
    Build build;
    build.girth = 0.93f;
    build.waist = 0.88f;
    build.limbs = 0.86f;
    build.shoulders = 0.215f;
    build.jaw = 0.9f;
    build.nose = 0.85f;
    build.skirt = 0.52f;
    build.hair = Hair::kLong;
    Dress dress{0xe7ae86, 0x4a2a1a, 0xa8474f, 0xf0d9a0, 0xf7efe0, 0x6f5b4b, 0x7b5330, 0x70431f, 0x5a7a3a};
    dress.apron = 0xf3ead6;
    dress.lashes = 1.25f;
    humanoid::make(out, "chars/villager", "villager", build, dress, true);
}

// Harald guards the path to the hut.
FORGE_RECIPE(model_guard) {
    Build build;
    build.girth = 1.14f;
    build.waist = 1.06f;
    build.limbs = 1.12f;
    build.shoulders = 0.275f;
    build.jaw = 1.08f;
    build.nose = 1.3f;
    build.skirt = 0.18f;
    build.hat = Hat::kFelt;
    build.beard = true;
    Dress dress{0xd99c73, 0x6e6455, 0x4b6a3f, 0xc9862f, 0xd9d2c0, 0x4a4a52, 0x3c322b, 0x33261c, 0x3c5a7a};
    humanoid::make(out, "chars/guard", "guard", build, dress, true);
}

// Bram fishes off the pier.
FORGE_RECIPE(model_fisher) {
    Build build;
    build.girth = 1.2f;
    build.waist = 1.05f;
    build.limbs = 1.06f;
    build.shoulders = 0.26f;
    build.jaw = 1.1f;
    build.nose = 1.6f;
    build.skirt = 0.34f;
    build.hat = Hat::kSouwester;
    build.beard = true;
    Dress dress{0xc98a64, 0xe9e6de, 0xe0b13a, 0x2c4a66, 0xe8e4da, 0x3d4450, 0x2e3a3c, 0x6b4a2c, 0x4a86a8};
    humanoid::make(out, "chars/fisher", "fisher", build, dress, true);
}

// Pim is eight.
FORGE_RECIPE(model_child) {
    Build build;
    build.scale = 0.70f;
    build.girth = 0.95f;
    build.limbs = 0.92f;
    build.shoulders = 0.21f;
    build.head = 1.22f;
    build.jaw = 1.04f;
    build.nose = 0.75f;
    build.skirt = 0.10f;
    build.hair = Hair::kTousled;
    Dress dress{0xf4c9a4, 0xd9a648, 0xf2ede0, 0xc4473d, 0xf2ede0, 0x3f6a8a, 0x7b5330, 0x5a3318, 0x3a7a9a};
    dress.bareShins = true;
    dress.striped = true;
    dress.freckled = true;
    humanoid::make(out, "chars/child", "child", build, dress, true);
}

// Edda gathers herbs in the deep wood.
FORGE_RECIPE(model_herbwoman) {
    Build build;
    build.scale = 0.96f;
    build.girth = 1.04f;
    build.waist = 1.02f;
    build.limbs = 0.92f;
    build.shoulders = 0.22f;
    build.jaw = 0.94f;
    build.nose = 1.25f;
    build.skirt = 0.60f;
    build.hair = Hair::kLong;
    build.hat = Hat::kScarf;
    Dress dress{0xdba27c, 0xb9b3a8, 0x5d7a4a, 0xd98a3d, 0xe9e0c8, 0x5a5044, 0x5d4630, 0x4d351f, 0x4f6f8a};
    dress.apron = 0xcfc09a;
    humanoid::make(out, "chars/herbwoman", "herbwoman", build, dress, true);
}

// Outlanders of the camp: lean, hooded in red, never in the light.
FORGE_RECIPE(model_raider) {
    Build build;
    build.girth = 1.0f;
    build.waist = 0.94f;
    build.limbs = 1.04f;
    build.shoulders = 0.265f;
    build.jaw = 1.04f;
    build.nose = 1.1f;
    build.skirt = 0.26f;
    build.hat = Hat::kScarf;
    build.beard = true;
    Dress dress{0xc58e68, 0x3a2a20, 0x4a4038, 0x9c2f2c, 0x7b6a55, 0x3a3630, 0x2b241e, 0x6b3f22, 0x5a4a3a};
    humanoid::make(out, "chars/raider", "raider", build, dress, true);
}

// Corvin takes toll at a bridge that is not his.
FORGE_RECIPE(model_smuggler) {
    Build build;
    build.girth = 1.24f;
    build.waist = 1.16f;
    build.limbs = 1.1f;
    build.shoulders = 0.27f;
    build.jaw = 1.12f;
    build.nose = 1.5f;
    build.skirt = 0.40f;
    build.hat = Hat::kFelt;
    Dress dress{0xd7a078, 0x8a4a24, 0x6a4a6e, 0xd0b050, 0xefe2c4, 0x40384a, 0x2e2622, 0x7b5a2a, 0x4a7a5a};
    dress.striped = true;
    humanoid::make(out, "chars/smuggler", "smuggler", build, dress, true);
}

// Marn leads the outlanders and keeps the beacon dark.
FORGE_RECIPE(model_captain) {
    Build build;
    build.scale = 1.08f;
    build.girth = 1.12f;
    build.waist = 0.96f;
    build.limbs = 1.14f;
    build.shoulders = 0.29f;
    build.jaw = 1.06f;
    build.nose = 1.15f;
    build.skirt = 0.52f;
    build.hair = Hair::kPonytail;
    build.beard = true;
    Dress dress{0xcf9a72, 0x1f1a1a, 0x7a1f26, 0xd9b54a, 0xf0e6d2, 0x2c2a30, 0x1f1a18, 0xa8803a, 0x6a8a9a};
    humanoid::make(out, "chars/captain", "captain", build, dress, true);
}
