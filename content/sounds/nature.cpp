#include "forge/recipes.h"
#include "forge/sound.h"

using namespace forge;

// What surrounds one. Each swells and fades, so that a script may play it again and again at its own pace.

// One wave: it gathers, breaks, runs up the sand and draws back.
FORGE_RECIPE(sound_surf) {
    Sound s = Sound::hiss(3.0f, 501).low({{0, 350}, {0.9f, 1100}, {1.1f, 3600}, {1.6f, 2600}, {3, 900}});
    s.shape({{0, 0}, {0.8f, 0.5f}, {1.1f, 1}, {1.5f, 0.7f}, {2.2f, 0.3f}, {3, 0}});
    Sound foam = Sound::grains(1.6f, 700, 0.004f, 502).high({{0, 2200}});
    s.add(1.2f, foam.shape({{0, 0}, {0.3f, 1}, {1.6f, 0}}), 0.25f);
    s.add(0.9f, Sound::hiss(0.7f, 503).low({{0, 160}}).strike(0.15f, 0.2f), 1.8f);
    out.put("sounds/surf.wav", wavFile(s, -7));
}

// A gust that whistles a little at an edge.
FORGE_RECIPE(sound_wind) {
    const Curve gust = {{0, 0}, {0.8f, 0.7f}, {1.3f, 1}, {1.9f, 0.6f}, {3, 0}};
    Sound s = Sound::hiss(3.0f, 511).band({{0, 220}, {1.3f, 520}, {2, 380}, {3, 240}}, 1.3f);
    s.add(0, Sound::hiss(3.0f, 512).band({{0, 600}, {1.3f, 1050}, {2.1f, 820}, {3, 640}}, 14), 0.8f);
    out.put("sounds/wind.wav", wavFile(s.shape(gust), -9));
}

FORGE_RECIPE(sound_fire) {
    Sound s = Sound::hiss(2.5f, 521).low({{0, 420}}).peak(0.35f);
    s.add(0, Sound::grains(2.5f, 26, 0.008f, 522).band({{0, 1900}}, 0.8f).peak(0.9f));
    s.add(0, Sound::grains(2.5f, 5, 0.02f, 523).low({{0, 900}}).peak(0.7f));
    s.samples.resize(static_cast<size_t>(2.5f * Sound::kRate));
    out.put("sounds/fire.wav", wavFile(s.shape({{0, 0}, {0.3f, 1}, {2.2f, 1}, {2.5f, 0}}), -8));
}

// Small waves under a pier: hollow gulps between ripples.
FORGE_RECIPE(sound_water) {
    Sound s =
        Sound::hiss(2.5f, 531).band({{0, 700}, {0.6f, 1100}, {1.2f, 650}, {1.8f, 1200}, {2.5f, 700}}, 1);
    s.shape({{0, 0.1f}, {0.5f, 0.4f}, {1, 0.12f}, {1.7f, 0.45f}, {2.5f, 0.1f}}).peak(0.3f);
    const float gulps[][3] = {{0.3f, 240, 0.7f}, {0.55f, 330, 0.9f}, {0.68f, 420, 0.5f}, {1.25f, 210, 0.6f},
                              {1.62f, 300, 1},   {1.8f, 390, 0.6f},  {2.05f, 500, 0.4f}};
    for (const auto& [start, hertz, gain] : gulps)
        s.add(start,
              Sound::tone(0.13f, {{0, hertz}, {0.13f, hertz * 1.7f}}, {1, 0.15f}).strike(0.012f, 0.035f),
              0.5f * gain);
    out.put("sounds/water.wav", wavFile(s.shape({{0, 0}, {0.2f, 1}, {2.2f, 1}, {2.5f, 0}}), -9));
}

// A drop in a cave.
FORGE_RECIPE(sound_drip) {
    Sound s(0.2f);
    s.add(0, Sound::tone(0.09f, {{0, 980}, {0.09f, 1750}}).strike(0.003f, 0.018f));
    s.add(0.07f, Sound::tone(0.06f, {{0, 1500}, {0.06f, 2300}}).strike(0.002f, 0.01f), 0.3f);
    out.put("sounds/drip.wav", wavFile(s.room(1.4f, 0.6f), -9));
}

// Far away: a crack, then it rolls.
FORGE_RECIPE(sound_thunder) {
    Sound s = Sound::hiss(3.0f, 541).low({{0, 700}, {0.3f, 260}, {3, 110}}, 1);
    s.shape({{0, 0}, {0.06f, 0.7f}, {0.3f, 0.4f}, {0.6f, 1}, {1, 0.4f}, {1.3f, 0.75f}, {1.9f, 0.3f}, {3, 0}});
    s.add(0, Sound::hiss(0.25f, 542).low({{0, 2600}, {0.25f, 500}}).strike(0.01f, 0.05f),
          0.35f * s.loudest());
    out.put("sounds/thunder.wav", wavFile(s, -4));
}
