#include "forge/recipes.h"
#include "forge/sound.h"

using namespace forge;

// Weapons and what they hit.

// A flintlock: the cock snaps, the pan flashes, the charge goes off and rolls away over the water.
FORGE_RECIPE(sound_pistol) {
    Sound s(0.9f);
    s.add(0, Sound::struck(0.05f, {{2300, 0.3f, 0.006f}, {3900, 0.2f, 0.004f}}));
    s.add(0.02f, Sound::hiss(0.06f, 101).high({{0, 3000}}).strike(0.005f, 0.02f), 0.25f);
    Sound bang = Sound::hiss(0.5f, 102)
                     .low({{0, 9000}, {0.03f, 4000}, {0.2f, 700}, {0.5f, 250}})
                     .strike(0.0006f, 0.06f);
    bang.add(0, Sound::tone(0.3f, {{0, 180}, {0.06f, 75}, {0.3f, 48}}).strike(0.001f, 0.08f), 0.5f);
    s.add(0.045f, bang.peak(1).drive(2.2f));
    s.add(0.25f, Sound::hiss(0.6f, 103).low({{0, 600}, {0.6f, 200}}).strike(0.08f, 0.18f), 0.35f);
    out.put("sounds/pistol.wav", wavFile(s.room(0.9f, 0.35f), -3));
}

// A long barrel: a harder crack, a deeper roll that comes back from the mountain.
FORGE_RECIPE(sound_rifle) {
    Sound s(1.5f);
    s.add(0, Sound::struck(0.05f, {{1900, 0.3f, 0.006f}, {3100, 0.2f, 0.004f}}));
    Sound bang = Sound::hiss(0.6f, 104)
                     .low({{0, 12000}, {0.02f, 5200}, {0.2f, 600}, {0.6f, 200}})
                     .strike(0.0004f, 0.05f);
    bang.add(0, Sound::tone(0.4f, {{0, 150}, {0.05f, 62}, {0.4f, 40}}).strike(0.001f, 0.12f), 0.6f);
    s.add(0.03f, bang.peak(1).drive(2.6f));
    s.add(0.42f, Sound::hiss(0.9f, 105).low({{0, 480}, {0.9f, 160}}).strike(0.14f, 0.28f), 0.4f);
    out.put("sounds/rifle.wav", wavFile(s.room(1.2f, 0.4f), -3));
}

// Ball, ramrod, cock.
FORGE_RECIPE(sound_reload) {
    Sound s(1.0f);
    s.add(0, Sound::struck(0.1f, {{1900, 0.4f, 0.02f}, {3300, 0.2f, 0.01f}}));
    for (const float start : {0.2f, 0.42f})
        s.add(start,
              Sound::hiss(0.16f, 111)
                  .band({{0, 1200}, {0.16f, 2300}}, 3)
                  .shape({{0, 0}, {0.03f, 0.7f}, {0.14f, 0.5f}, {0.16f, 0}}),
              2.2f);
    const float clicks[][2] = {{0.72f, 0.7f}, {0.8f, 1}};
    for (const auto& [start, gain] : clicks) {
        s.add(start, Sound::struck(0.12f, {{1500, 0.5f, 0.01f}, {2720, 0.4f, 0.02f}, {4650, 0.2f, 0.01f}}),
              gain);
        s.add(start, Sound::hiss(0.012f, 112).strike(0.0005f, 0.003f), 0.5f * gain);
    }
    out.put("sounds/reload.wav", wavFile(s, -8));
}

// The bow arm springs, the cord hums, the bolt hisses off.
FORGE_RECIPE(sound_crossbow) {
    Sound s(0.5f);
    s.add(0, Sound::struck(0.2f, {{210, 0.8f, 0.03f}, {540, 0.5f, 0.02f}, {1240, 0.3f, 0.01f}}));
    s.add(0.004f,
          Sound::tone(0.4f, {{0, 128}, {0.4f, 118}}, {1, 0.6f, 0.5f, 0.3f, 0.2f, 0.1f}).strike(0.002f, 0.09f),
          0.45f);
    s.add(0.01f, Sound::hiss(0.3f, 121).band({{0, 3800}, {0.3f, 1600}}, 1.2f).strike(0.01f, 0.06f), 0.7f);
    out.put("sounds/crossbow.wav", wavFile(s, -4));
}

// Air around a stick or a blade.
FORGE_RECIPE(sound_swing) {
    Sound s = Sound::hiss(0.34f, 131).band({{0, 420}, {0.14f, 1900}, {0.34f, 500}}, 2.2f);
    s.shape({{0, 0}, {0.05f, 0.2f}, {0.14f, 1}, {0.22f, 0.4f}, {0.34f, 0}});
    out.put("sounds/swing.wav", wavFile(s, -8));
}

// A sleeve, and something heavy that leaves the hand.
FORGE_RECIPE(sound_throw) {
    Sound s = Sound::hiss(0.42f, 141).band({{0, 250}, {0.16f, 900}, {0.42f, 350}}, 1.5f);
    s.shape({{0, 0}, {0.08f, 0.4f}, {0.17f, 1}, {0.28f, 0.3f}, {0.42f, 0}});
    s.add(0.02f, Sound::grains(0.12f, 160, 0.008f, 142).low({{0, 2500}}), 0.15f);
    out.put("sounds/throw.wav", wavFile(s, -8));
}

// Crack, thump, fireball, falling stones.
FORGE_RECIPE(sound_explosion) {
    Sound s(2.2f);
    s.add(0, Sound::hiss(0.05f, 151).strike(0.0006f, 0.012f), 0.9f);
    s.add(0, Sound::tone(0.9f, {{0, 110}, {0.1f, 52}, {0.9f, 30}}).strike(0.004f, 0.35f), 1.0f);
    s.add(0,
          Sound::hiss(1.8f, 152)
              .low({{0, 5000}, {0.1f, 1800}, {0.6f, 700}, {1.8f, 260}}, 0.9f)
              .strike(0.006f, 0.9f),
          1.6f);
    s.peak(1).drive(2.4f);
    s.add(0.5f, Sound::grains(1.5f, 45, 0.03f, 153).low({{0, 1800}}).shape({{0, 0}, {0.2f, 1}, {1.5f, 0}}),
          0.3f);
    out.put("sounds/explosion.wav", wavFile(s.room(0.8f, 0.3f), -3));
}

// A blow that somebody takes: flesh, cloth, no ring.
FORGE_RECIPE(sound_hitbody) {
    Sound s(0.28f);
    s.add(0, Sound::tone(0.16f, {{0, 150}, {0.16f, 62}}).strike(0.002f, 0.04f), 0.55f);
    s.add(0, Sound::hiss(0.09f, 161).low({{0, 1900}, {0.09f, 500}}).strike(0.001f, 0.02f), 1.0f);
    s.add(0.012f, Sound::hiss(0.1f, 162).band({{0, 750}}, 2).strike(0.004f, 0.03f), 0.5f);
    out.put("sounds/hitbody.wav", wavFile(s, -4));
}

FORGE_RECIPE(sound_hitwood) {
    Sound s = Sound::struck(0.35f, {{185, 0.7f, 0.05f},
                                    {412, 0.6f, 0.035f},
                                    {730, 0.4f, 0.025f},
                                    {1290, 0.25f, 0.015f},
                                    {2150, 0.12f, 0.008f}});
    s.add(0, Sound::hiss(0.03f, 171).low({{0, 3500}}).strike(0.0006f, 0.006f), 0.8f);
    out.put("sounds/hitwood.wav", wavFile(s, -5));
}

// A sharp knock, splinters.
FORGE_RECIPE(sound_hitstone) {
    Sound s = Sound::struck(
        0.4f, {{640, 0.4f, 0.012f}, {1730, 0.5f, 0.01f}, {3120, 0.4f, 0.008f}, {4870, 0.2f, 0.006f}});
    s.add(0, Sound::hiss(0.06f, 181).band({{0, 2600}}, 0.7f).strike(0.0005f, 0.012f), 1.2f);
    s.add(0.04f, Sound::grains(0.3f, 90, 0.006f, 182).high({{0, 1400}}).strike(0.01f, 0.09f), 0.35f);
    out.put("sounds/hitstone.wav", wavFile(s, -5));
}

FORGE_RECIPE(sound_hitmetal) {
    Sound s = Sound::struck(0.9f, {{523, 0.4f, 0.14f},
                                   {1180, 0.5f, 0.2f},
                                   {1844, 0.4f, 0.16f},
                                   {2930, 0.35f, 0.1f},
                                   {4310, 0.2f, 0.07f},
                                   {6220, 0.12f, 0.04f}});
    s.add(0, Sound::hiss(0.015f, 191).strike(0.0005f, 0.004f), 0.8f);
    out.put("sounds/hitmetal.wav", wavFile(s, -6));
}
