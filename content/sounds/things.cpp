#include "forge/recipes.h"
#include "forge/sound.h"

using namespace forge;

// Doors, devices and what hangs or rolls.

namespace {
/// Wood that sticks and slips: short pulses whose pace makes the pitch of a creak.
Sound creaking(float seconds, const Curve& pulses, const std::vector<Mode>& wood) {
    Sound s(seconds);
    const Sound slip = Sound::struck(0.12f, wood);
    int n = 0;
    for (float t = 0; t < seconds - 0.15f; ++n) {
        const float hasty = 0.7f + 0.6f * static_cast<float>((n * 7919) % 13) / 13;
        s.add(t, slip, 0.6f + 0.4f * static_cast<float>((n * 104729) % 11) / 11);
        t += hasty / at(pulses, t);
    }
    return s;
}
} // namespace

// A light door on dry hinges, then the latch.
FORGE_RECIPE(sound_creak) {
    Sound s = creaking(1.0f, {{0, 24}, {0.4f, 62}, {0.75f, 44}, {1, 20}},
                       {{460, 0.5f, 0.012f}, {920, 0.5f, 0.01f}, {1490, 0.4f, 0.008f}, {2700, 0.2f, 0.004f}});
    s.shape({{0, 0}, {0.1f, 0.5f}, {0.5f, 0.8f}, {0.9f, 0.3f}, {1, 0}}).peak(0.6f);
    s.add(0.96f, Sound::struck(0.3f, {{170, 0.8f, 0.05f}, {390, 0.5f, 0.03f}, {2100, 0.3f, 0.015f}}), 0.6f);
    out.put("sounds/creak.wav", wavFile(s.room(0.3f, 0.15f), -5));
}

// The heavy gate: iron runs over stone, chain links fall, it stops with its whole weight.
FORGE_RECIPE(sound_gate) {
    Sound s(2.4f);
    s.add(0,
          Sound::hiss(1.8f, 201)
              .low({{0, 260}, {0.8f, 420}, {1.8f, 240}}, 1.5f)
              .shape({{0, 0}, {0.15f, 1}, {1.6f, 0.9f}, {1.8f, 0}}),
          1.3f);
    s.add(0,
          creaking(1.8f, {{0, 14}, {0.9f, 22}, {1.8f, 10}},
                   {{210, 0.6f, 0.03f}, {520, 0.4f, 0.02f}, {1130, 0.25f, 0.012f}}),
          0.5f);
    for (int link = 0; link < 11; ++link) {
        const auto n = static_cast<float>(link);
        const float hertz = 1500 + 210 * static_cast<float>((link * 5) % 7);
        s.add(0.1f + 0.155f * n, Sound::struck(0.15f, {{hertz, 0.3f, 0.02f}, {hertz * 1.63f, 0.3f, 0.015f}}),
              0.35f);
    }
    s.add(1.78f, Sound::tone(0.5f, {{0, 82}, {0.5f, 40}}).strike(0.003f, 0.12f), 1.6f);
    s.add(1.78f, Sound::struck(0.5f, {{150, 0.8f, 0.08f}, {331, 0.5f, 0.06f}, {870, 0.3f, 0.05f}}), 0.9f);
    out.put("sounds/gate.wav", wavFile(s.room(0.6f, 0.25f), -3.5f));
}

FORGE_RECIPE(sound_lever) {
    Sound s(0.7f);
    s.add(0, creaking(0.3f, {{0, 30}, {0.3f, 50}}, {{700, 0.4f, 0.01f}, {1650, 0.3f, 0.008f}}), 0.4f);
    s.add(0.24f,
          Sound::struck(0.45f,
                        {{240, 0.8f, 0.05f}, {611, 0.6f, 0.07f}, {1377, 0.5f, 0.05f}, {2490, 0.3f, 0.03f}}));
    s.add(0.24f, Sound::hiss(0.02f, 211).strike(0.0006f, 0.005f), 0.6f);
    s.add(0.31f, Sound::struck(0.3f, {{260, 0.5f, 0.04f}, {655, 0.4f, 0.05f}, {1480, 0.3f, 0.03f}}), 0.5f);
    out.put("sounds/lever.wav", wavFile(s, -5));
}

// The harbour bell, in C: hum, prime, tierce, quint, nominal and what lies above; pairs beat against each
// other.
FORGE_RECIPE(sound_bell) {
    Sound s = Sound::struck(3.0f, {{262, 0.45f, 1.5f},
                                   {523, 0.5f, 1.0f},
                                   {524.6f, 0.25f, 1.0f},
                                   {624, 0.4f, 0.7f},
                                   {786, 0.25f, 0.5f},
                                   {1046, 0.5f, 0.7f},
                                   {1049, 0.2f, 0.7f},
                                   {1570, 0.25f, 0.35f},
                                   {2093, 0.2f, 0.25f},
                                   {2790, 0.12f, 0.15f},
                                   {3560, 0.08f, 0.09f}});
    s.add(0, Sound::hiss(0.02f, 221).band({{0, 2600}}, 0.8f).strike(0.0006f, 0.005f), 0.8f);
    s.shape({{0, 1}, {2.4f, 1}, {3, 0}});
    out.put("sounds/bell.wav", wavFile(s, -4));
}

// A cart of planks on iron wheels over sleepers.
FORGE_RECIPE(sound_trolley) {
    Sound s = Sound::hiss(2.4f, 231).low({{0, 180}, {1.2f, 320}, {2.4f, 180}}, 1.2f).peak(0.7f);
    s.add(0, Sound::grains(2.4f, 60, 0.015f, 232).band({{0, 900}}, 1.2f), 0.2f);
    for (int joint = 0; joint < 5; ++joint)
        for (const float second : {0.0f, 0.13f})
            s.add(0.12f + 0.45f * static_cast<float>(joint) + second,
                  Sound::struck(0.2f, {{128, 0.9f, 0.04f}, {333, 0.4f, 0.03f}, {1210, 0.2f, 0.012f}}), 0.7f);
    s.samples.resize(static_cast<size_t>(2.4f * Sound::kRate));
    out.put("sounds/trolley.wav", wavFile(s.shape({{0, 0}, {0.2f, 1}, {2.1f, 1}, {2.4f, 0}}), -6));
}
