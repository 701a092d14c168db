#include "forge/recipes.h"
#include "forge/sound.h"

using namespace forge;

// Short murmurs that stand for speech: a melody, syllables and the vowels they glide through.

namespace {
constexpr std::array<float, 3> kAh = {730, 1150, 2500}, kEh = {540, 1800, 2550}, kOh = {480, 880, 2400},
                               kOo = {320, 800, 2250}, kUh = {600, 1200, 2400}, kMm = {270, 1000, 2200};

/// The same shapes in a smaller or larger throat.
std::vector<Vowel> sized(std::vector<Vowel> vowels, float factor) {
    for (Vowel& v : vowels)
        for (float& hertz : v.hertz) hertz *= factor;
    return vowels;
}

Voice speaker(float pitch, const Curve& melody, const Curve& syllables, const std::vector<Vowel>& vowels,
              float throat) {
    Voice v;
    for (const CurvePoint& p : melody) v.hertz.push_back({p.seconds, p.value * pitch});
    v.loudness = syllables;
    v.vowels = sized(vowels, throat);
    v.rough = 0.03f;
    return v;
}

// "Oh-ah?", a friendly fall and rise.
const Curve kGreetMelody = {{0, 1}, {0.12f, 1.12f}, {0.26f, 0.92f}, {0.4f, 0.95f}, {0.58f, 1.25f}};
const Curve kGreetSyllables = {{0, 0},        {0.04f, 1},    {0.18f, 0.8f}, {0.25f, 0.15f},
                               {0.31f, 1.5f}, {0.48f, 1.1f}, {0.6f, 0}};
const std::vector<Vowel> kGreetVowels = {{0, kMm},     {0.06f, kOh}, {0.2f, kOh},
                                         {0.26f, kMm}, {0.33f, kAh}, {0.6f, kEh}};
} // namespace

FORGE_RECIPE(sound_greetlow) {
    out.put(
        "sounds/greetlow.wav",
        wavFile(Sound::spoken(0.6f, speaker(118, kGreetMelody, kGreetSyllables, kGreetVowels, 1), 401), -7));
}

FORGE_RECIPE(sound_greethigh) {
    out.put(
        "sounds/greethigh.wav",
        wavFile(Sound::spoken(0.6f, speaker(214, kGreetMelody, kGreetSyllables, kGreetVowels, 1.16f), 402),
                -7));
}

// "Hm. Mh-hm." Not quite a no.
FORGE_RECIPE(sound_murmur) {
    const Curve melody = {{0, 1}, {0.2f, 0.93f}, {0.4f, 1.05f}, {0.7f, 0.85f}};
    const Curve syllables = {{0, 0},     {0.05f, 0.9f}, {0.2f, 0.3f}, {0.27f, 0.05f},
                             {0.34f, 1}, {0.44f, 0.4f}, {0.5f, 0.9f}, {0.72f, 0}};
    out.put(
        "sounds/murmur.wav",
        wavFile(Sound::spoken(0.72f,
                              speaker(104, melody, syllables,
                                      {{0, kMm}, {0.1f, kUh}, {0.27f, kMm}, {0.5f, kUh}, {0.7f, kMm}}, 0.97f),
                              403),
                -8));
}

// The guard: one short rough syllable.
FORGE_RECIPE(sound_guard) {
    Voice v =
        speaker(92, {{0, 1.1f}, {0.1f, 1.25f}, {0.36f, 0.8f}}, {{0, 0}, {0.02f, 1}, {0.2f, 0.8f}, {0.36f, 0}},
                {{0, kUh}, {0.12f, kAh}, {0.36f, kOh}}, 0.93f);
    v.rough = 0.15f;
    v.breath = 0.12f;
    out.put("sounds/guard.wav", wavFile(Sound::spoken(0.36f, v, 404), -6));
}

// A child: five hops downstairs.
FORGE_RECIPE(sound_laugh) {
    Sound s(1.1f);
    for (int n = 0; n < 5; ++n) {
        const float k = static_cast<float>(n), pitch = 372 - 18 * k;
        Voice v = speaker(pitch, {{0, 0.95f}, {0.05f, 1.12f}, {0.14f, 0.85f}},
                          {{0, 0}, {0.02f, 1}, {0.07f, 0.7f}, {0.14f, 0}},
                          {{0, kEh}, {0.05f, kAh}, {0.14f, kUh}}, 1.3f);
        v.breath = 0.18f;
        s.add(0.165f * k, Sound::spoken(0.14f, v, 405 + static_cast<uint32_t>(n)), 1 - 0.12f * k);
    }
    out.put("sounds/laugh.wav", wavFile(s, -7));
}

FORGE_RECIPE(sound_hurt) {
    Voice v = speaker(165, {{0, 1.3f}, {0.05f, 1.5f}, {0.3f, 0.8f}},
                      {{0, 0}, {0.012f, 1}, {0.12f, 0.8f}, {0.3f, 0}}, {{0, kUh}, {0.06f, kAh}, {0.3f, kOh}},
                      1.05f);
    v.rough = 0.1f;
    v.breath = 0.12f;
    out.put("sounds/hurt.wav", wavFile(Sound::spoken(0.3f, v, 411), -5));
}

// A long breath that sinks.
FORGE_RECIPE(sound_death) {
    Voice v = speaker(150, {{0, 1.25f}, {0.12f, 1.4f}, {0.5f, 0.9f}, {1.1f, 0.55f}},
                      {{0, 0}, {0.02f, 1}, {0.35f, 0.8f}, {0.8f, 0.35f}, {1.1f, 0}},
                      {{0, kAh}, {0.3f, kAh}, {0.7f, kUh}, {1.1f, kOo}}, 1.03f);
    v.rough = 0.12f;
    v.breath = 0.15f;
    out.put("sounds/death.wav", wavFile(Sound::spoken(1.1f, v, 412), -5));
}
