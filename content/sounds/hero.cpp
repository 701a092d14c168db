#include "forge/recipes.h"
#include "forge/sound.h"

using namespace forge;

// What the hero does himself.

// A push off the ground and a breath of cloth.
FORGE_RECIPE(sound_hopp) {
    Sound s(0.3f);
    s.add(0, Sound::tone(0.09f, {{0, 130}, {0.09f, 70}}).strike(0.004f, 0.03f), 0.35f);
    s.add(0, Sound::hiss(0.05f, 11).low({{0, 1600}}).strike(0.002f, 0.012f), 0.6f);
    s.add(0.03f, Sound::hiss(0.24f, 12).band({{0, 500}, {0.24f, 1500}}, 1.4f).strike(0.06f, 0.06f), 0.8f);
    out.put("sounds/hopp.wav", wavFile(s, -6));
}

// Two boots, one after the other, and sand that settles.
FORGE_RECIPE(sound_landa) {
    Sound s(0.4f);
    for (const float start : {0.0f, 0.035f}) {
        s.add(start, Sound::tone(0.15f, {{0, 95}, {0.15f, 45}}).strike(0.003f, 0.045f), 0.6f);
        s.add(start, Sound::hiss(0.08f, start > 0 ? 21u : 22u).low({{0, 900}}).strike(0.001f, 0.018f), 0.8f);
    }
    s.add(0.04f, Sound::grains(0.25f, 220, 0.008f, 23).high({{0, 1500}}).strike(0.01f, 0.08f), 0.25f);
    out.put("sounds/landa.wav", wavFile(s, -4));
}

// Falls into the sea: a slap, a rising plume, drops.
FORGE_RECIPE(sound_splash) {
    Sound s(1.3f);
    s.add(0, Sound::hiss(0.12f, 31).low({{0, 2500}, {0.12f, 500}}).strike(0.002f, 0.04f), 1.0f);
    s.add(0.03f,
          Sound::hiss(0.9f, 32).band({{0, 700}, {0.25f, 2600}, {0.9f, 1300}}, 0.8f).strike(0.08f, 0.2f),
          1.1f);
    const float drops[][2] = {{0.35f, 900}, {0.46f, 1300}, {0.58f, 760}, {0.72f, 1500}, {0.9f, 1050}};
    for (const auto& [start, hertz] : drops)
        s.add(start, Sound::tone(0.08f, {{0, hertz}, {0.08f, hertz * 1.9f}}).strike(0.004f, 0.02f), 0.16f);
    out.put("sounds/splash.wav", wavFile(s));
}

// Two crisp bites.
FORGE_RECIPE(sound_bite) {
    Sound s(0.6f);
    for (const float start : {0.0f, 0.27f}) {
        s.add(start, Sound::grains(0.14f, 420, 0.006f, 41).band({{0, 2400}, {0.14f, 1300}}, 0.8f), 1.0f);
        s.add(start, Sound::hiss(0.04f, 42).low({{0, 1200}}).strike(0.001f, 0.01f), 0.7f);
    }
    out.put("sounds/bite.wav", wavFile(s, -6));
}

// Strength comes back: three warm notes that rise into one another.
FORGE_RECIPE(sound_heal) {
    Sound s(0.9f);
    const float notes[][2] = {{0, 392}, {0.11f, 523.3f}, {0.22f, 659.3f}};
    for (const auto& [start, hertz] : notes)
        s.add(start, Sound::tone(0.65f, {{0, hertz}}, {1, 0.3f, 0.08f}).strike(0.03f, 0.2f), 0.5f);
    out.put("sounds/heal.wav", wavFile(s.room(0.6f, 0.4f), -6));
}

// Something small goes into the bag: a fourth on little bars.
FORGE_RECIPE(sound_pickup) {
    Sound s(0.5f);
    s.add(0, Sound::struck(0.4f, {{1046.5f, 0.6f, 0.11f}, {2889, 0.16f, 0.05f}, {5650, 0.06f, 0.02f}}));
    s.add(0.075f, Sound::struck(0.42f, {{1396.9f, 0.7f, 0.13f}, {3855, 0.16f, 0.05f}, {7540, 0.05f, 0.02f}}));
    out.put("sounds/pickup.wav", wavFile(s.room(0.4f, 0.25f), -6));
}

// A small ring of brass that is shaken and caught.
FORGE_RECIPE(sound_keys) {
    Sound s(0.55f);
    const float clinks[][3] = {
        {0, 3100, 0.8f}, {0.05f, 4300, 0.5f}, {0.11f, 3600, 0.7f}, {0.16f, 5200, 0.4f}, {0.24f, 3300, 0.9f}};
    for (const auto& [start, hertz, gain] : clinks)
        s.add(start,
              Sound::struck(
                  0.3f, {{hertz, 0.5f, 0.06f}, {hertz * 1.51f, 0.4f, 0.04f}, {hertz * 2.3f, 0.25f, 0.02f}}),
              gain);
    out.put("sounds/keys.wav", wavFile(s, -8));
}

// A stiff sheet is unfolded.
FORGE_RECIPE(sound_paper) {
    Sound s = Sound::grains(0.45f, 350, 0.005f, 51);
    s.add(0,
          Sound::hiss(0.45f, 52).shape({{0, 0.1f}, {0.08f, 0.3f}, {0.2f, 0.1f}, {0.3f, 0.35f}, {0.45f, 0}}));
    s.band({{0, 2500}, {0.2f, 4200}, {0.45f, 3000}}, 0.7f)
        .shape({{0, 0}, {0.05f, 1}, {0.2f, 0.4f}, {0.3f, 1}, {0.45f, 0}});
    out.put("sounds/paper.wav", wavFile(s, -10));
}

// A task is done: the first notes of the islands' tune on little bells.
FORGE_RECIPE(sound_success) {
    Sound s(1.6f);
    const float notes[][2] = {{0, 392}, {0.16f, 587.3f}, {0.48f, 523.3f}, {0.6f, 493.9f}, {0.76f, 587.3f}};
    for (const auto& [start, hertz] : notes)
        s.add(start, Sound::struck(0.9f, {{hertz, 0.6f, 0.25f},
                                          {hertz * 2, 0.25f, 0.2f},
                                          {hertz * 2.76f, 0.12f, 0.06f},
                                          {hertz * 5.4f, 0.05f, 0.03f}}));
    out.put("sounds/success.wav", wavFile(s.room(0.8f, 0.35f), -6));
}
