// The skies of the levels.

#include "levels/sky.h"

// Afternoon over the sea.
FORGE_RECIPE(environment_island) {
    constexpr sky::Palette kAfternoon{0xa9d6e4, 0x1f6a8c, 0xe9f3ea, 0x9fd3ee, 0x4a9ade, 0x2f78c4,
                                      0xf4fafc, 0xb9cfe4, 0xe3edf5, 0xfffdf6, 211};
    // Death at the neck.
    sky::put(out, "island", kAfternoon,
             {{220, 300, 300}, -0.4f, {150, 190, 208, 0}, {112, 160, 178, 0}, 9, 34});
}

// Late light between the trees.
FORGE_RECIPE(environment_deepwood) {
    constexpr sky::Palette kGolden{0xd8c79a, 0x4d6a68, 0xf6e3b4, 0xd9d6b0, 0x8fb8bd, 0x4f8fa8,
                                   0xfff1d2, 0xc7b79c, 0xf0dfba, 0xfff6dc, 611};
    sky::put(out, "deepwood", kGolden,
             {{-240, 300, 260}, -0.4f, {148, 160, 140, 0}, {110, 132, 112, 0}, 9, 60});
}

// The sun is about to go down.
FORGE_RECIPE(environment_summit) {
    constexpr sky::Palette kDusk{0xe2a98c, 0x35506e, 0xffd7a0, 0xf0a888, 0x8a83b4, 0x3d4f8c,
                                 0xffd9c0, 0x8f7f9e, 0xe0a795, 0xffdfb8, 911};
    sky::put(out, "summit", kDusk, {{-300, 240, 160}, -0.4f, {150, 120, 140, 0}, {112, 92, 122, 0}, 9, 46});
}
