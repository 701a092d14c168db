#include "forge/recipes.h"
#include "forge/sound.h"

using namespace forge;

// Beasts and birds.

namespace {
/// One syllable of a hen, around `hertz`.
Sound hen(float seconds, float hertz, uint32_t seed) {
    Voice v;
    v.hertz = {{0, hertz * 0.85f}, {seconds * 0.3f, hertz}, {seconds, hertz * 0.7f}};
    v.loudness = {{0, 0}, {0.012f, 1}, {seconds * 0.5f, 0.6f}, {seconds, 0}};
    v.vowels = {{0, {900, 1900, 3400}}, {seconds, {700, 1500, 3000}}};
    v.breath = 0.15f;
    v.rough = 0.2f;
    return Sound::spoken(seconds, v, seed);
}
} // namespace

FORGE_RECIPE(sound_cluck) {
    Sound s(0.7f);
    const float calls[][2] = {{0, 410}, {0.2f, 380}, {0.47f, 430}};
    for (const auto& [start, hertz] : calls) s.add(start, hen(0.11f, hertz, 301));
    out.put("sounds/cluck.wav", wavFile(s, -8));
}

// Quick short calls and one long that breaks upwards.
FORGE_RECIPE(sound_alarm) {
    Sound s(1.2f);
    for (int n = 0; n < 4; ++n)
        s.add(0.13f * static_cast<float>(n), hen(0.09f, 470 + 25 * static_cast<float>(n), 311));
    Voice v;
    v.hertz = {{0, 480}, {0.1f, 760}, {0.35f, 700}, {0.5f, 430}};
    v.loudness = {{0, 0}, {0.03f, 1}, {0.35f, 0.9f}, {0.5f, 0}};
    v.vowels = {{0, {900, 1900, 3300}}, {0.15f, {1300, 2300, 3700}}, {0.5f, {800, 1700, 3100}}};
    v.breath = 0.2f;
    v.rough = 0.25f;
    s.add(0.56f, Sound::spoken(0.5f, v, 312), 1.2f);
    out.put("sounds/alarm.wav", wavFile(s, -5));
}

// An old tortoise breathes out and grumbles.
FORGE_RECIPE(sound_grunt) {
    Voice v;
    v.hertz = {{0, 74}, {0.3f, 88}, {0.8f, 58}};
    v.loudness = {{0, 0}, {0.1f, 0.8f}, {0.35f, 1}, {0.8f, 0}};
    v.vowels = {{0, {300, 750, 2100}}, {0.35f, {420, 900, 2000}}, {0.8f, {280, 650, 1900}}};
    v.breath = 0.25f;
    v.rough = 0.35f;
    Sound s = Sound::spoken(0.8f, v, 321);
    s.add(0.1f, Sound::hiss(0.7f, 322).band({{0, 500}, {0.7f, 300}}, 1).strike(0.2f, 0.15f),
          0.2f * s.loudest());
    out.put("sounds/grunt.wav", wavFile(s, -6));
}

// A wild boar: two snorts and a squeal.
FORGE_RECIPE(sound_boar) {
    Voice growl;
    growl.hertz = {{0, 95}, {0.2f, 120}, {0.45f, 80}};
    growl.loudness = {{0, 0}, {0.03f, 1}, {0.14f, 0.2f}, {0.2f, 0.9f}, {0.45f, 0}};
    growl.vowels = {{0, {420, 1000, 2300}}, {0.45f, {330, 800, 2000}}};
    growl.breath = 0.45f;
    growl.rough = 0.6f;
    Sound s = Sound::spoken(0.45f, growl, 331);
    Voice squeal;
    squeal.hertz = {{0, 420}, {0.12f, 760}, {0.4f, 520}};
    squeal.loudness = {{0, 0}, {0.05f, 1}, {0.25f, 0.7f}, {0.4f, 0}};
    squeal.vowels = {{0, {700, 1700, 2900}}, {0.4f, {600, 1500, 2700}}};
    squeal.breath = 0.3f;
    squeal.rough = 0.5f;
    s.add(0.36f, Sound::spoken(0.4f, squeal, 332), 0.7f);
    out.put("sounds/boar.wav", wavFile(s, -5));
}

// Three cries that fall; the first is the longest.
FORGE_RECIPE(sound_gull) {
    Sound s(1.9f);
    const float cries[][3] = {{0, 0.62f, 1}, {0.72f, 0.4f, 0.8f}, {1.2f, 0.36f, 0.65f}};
    for (const auto& [start, length, gain] : cries) {
        Voice v;
        v.hertz = {{0, 780}, {length * 0.2f, 1240}, {length * 0.6f, 1120}, {length, 720}};
        v.loudness = {{0, 0}, {0.05f, 1}, {length * 0.6f, 0.8f}, {length, 0}};
        v.vowels = {
            {0, {1300, 2500, 3900}}, {length * 0.3f, {1700, 2900, 4300}}, {length, {1200, 2400, 3800}}};
        v.breath = 0.12f;
        v.rough = 0.08f;
        s.add(start, Sound::spoken(length, v, 331), gain);
    }
    out.put("sounds/gull.wav", wavFile(s.room(0.8f, 0.25f), -8));
}

// The deep wood: an owl's two notes.
FORGE_RECIPE(sound_owl) {
    Sound s(1.7f);
    const float calls[][3] = {{0, 0.3f, 0.7f}, {0.62f, 0.16f, 0.6f}, {0.82f, 0.7f, 1}};
    for (const auto& [start, length, gain] : calls) {
        Sound call = Sound::tone(length, {{0, 330}, {length * 0.3f, 362}, {length, 335}}, {1, 0.12f, 0.05f});
        call.add(0, Sound::hiss(length, 341).band({{0, 362}}, 4), 0.2f);
        s.add(start, call.shape({{0, 0}, {0.07f, 1}, {length * 0.6f, 0.8f}, {length, 0}}), gain);
    }
    out.put("sounds/owl.wav", wavFile(s.room(1.2f, 0.5f), -8));
}
