#include "music/orchestra.h"

#include <cmath>

using forge::Instrument;

namespace {
using Kind = Instrument::Kind;

Instrument blown(const char* name, float gain, float pan, const std::vector<float>& harmonics) {
    Instrument i;
    i.name = name;
    i.gain = gain;
    i.pan = pan;
    i.harmonics = harmonics;
    return i;
}

Instrument flute() {
    Instrument i = blown("flute", 0.21f, 0.18f, {1, 0.42f, 0.16f, 0.06f, 0.03f});
    i.attack = 0.06f;
    i.release = 0.1f;
    i.vibratoCents = 14;
    i.breath = 0.12f;
    i.hall = 0.45f;
    return i;
}

// Low and woody: odd harmonics.
Instrument reed() {
    Instrument i =
        blown("reed", 0.24f, 0.05f, {1, 0.05f, 0.5f, 0.06f, 0.28f, 0.05f, 0.16f, 0.04f, 0.09f, 0.02f, 0.05f});
    i.attack = 0.07f;
    i.release = 0.12f;
    i.vibratoCents = 6;
    i.breath = 0.05f;
    i.hall = 0.5f;
    return i;
}

Instrument oboe() {
    Instrument i =
        blown("oboe", 0.16f, -0.15f, {0.6f, 0.9f, 1, 0.8f, 0.5f, 0.3f, 0.22f, 0.14f, 0.08f, 0.05f});
    i.attack = 0.05f;
    i.release = 0.1f;
    i.vibratoCents = 12;
    i.breath = 0.02f;
    i.hall = 0.45f;
    return i;
}

Instrument horn() {
    Instrument i =
        blown("horn", 0.12f, 0.3f, {1, 0.85f, 0.6f, 0.42f, 0.28f, 0.18f, 0.12f, 0.07f, 0.04f, 0.02f});
    i.attack = 0.08f;
    i.release = 0.14f;
    i.vibratoCents = 5;
    i.players = 2;
    i.spread = 0.08f;
    i.detuneCents = 5;
    i.hall = 0.6f;
    return i;
}

std::vector<float> bowedWave(int count, float fall) {
    std::vector<float> harmonics;
    for (int h = 1; h <= count; ++h) {
        const auto n = static_cast<float>(h);
        // A body that helps the third to fifth and swallows the seventh.
        const float body = h >= 3 && h <= 5 ? 1.2f : h == 7 ? 0.6f : 1;
        harmonics.push_back(body * std::pow(n, -fall));
    }
    return harmonics;
}

Instrument strings() {
    Instrument i = blown("strings", 0.13f, 0, bowedWave(16, 1.35f));
    i.attack = 0.28f;
    i.release = 0.35f;
    i.vibratoCents = 6;
    i.players = 2;
    i.spread = 0.75f;
    i.detuneCents = 7;
    i.hall = 0.55f;
    return i;
}

// The same people, short and to the point.
Instrument bows() {
    Instrument i = strings();
    i.name = "bows";
    i.gain = 0.17f;
    i.attack = 0.035f;
    i.release = 0.08f;
    i.vibratoCents = 0;
    i.players = 2;
    i.spread = 0.5f;
    i.hall = 0.35f;
    return i;
}

Instrument violins() {
    Instrument i = strings();
    i.name = "violins";
    i.gain = 0.19f;
    i.pan = -0.3f;
    i.players = 3;
    i.attack = 0.12f;
    i.release = 0.16f;
    i.vibratoCents = 13;
    i.spread = 0.3f;
    i.detuneCents = 6;
    return i;
}

Instrument cello() {
    Instrument i = blown("cello", 0.18f, -0.3f, bowedWave(14, 1.25f));
    i.attack = 0.1f;
    i.release = 0.16f;
    i.vibratoCents = 10;
    i.hall = 0.4f;
    return i;
}

Instrument basses() {
    Instrument i = blown("basses", 0.15f, 0.1f, {1, 0.6f, 0.32f, 0.2f, 0.12f, 0.07f, 0.04f});
    i.attack = 0.07f;
    i.release = 0.14f;
    i.hall = 0.15f;
    return i;
}

// Voices on "oo" behind the trees.
Instrument choir() {
    Instrument i = blown("choir", 0.11f, 0, {1, 0.55f, 0.22f, 0.1f, 0.06f, 0.02f});
    i.attack = 0.45f;
    i.release = 0.5f;
    i.vibratoCents = 12;
    i.vibratoHertz = 4.6f;
    i.breath = 0.04f;
    i.players = 3;
    i.spread = 0.8f;
    i.detuneCents = 11;
    i.hall = 0.8f;
    return i;
}

Instrument plucked(const char* name, float gain, float pan, float ring, float brightness, float hall) {
    Instrument i;
    i.name = name;
    i.kind = Kind::kPlucked;
    i.gain = gain;
    i.pan = pan;
    i.ring = ring;
    i.brightness = brightness;
    i.hall = hall;
    return i;
}

Instrument bars(const char* name, float gain, float pan, const std::vector<Instrument::Partial>& partials) {
    Instrument i;
    i.name = name;
    i.kind = Kind::kBar;
    i.gain = gain;
    i.pan = pan;
    i.partials = partials;
    i.hall = 0.55f;
    return i;
}

Instrument drum(const char* name, float gain, float pan, float hertz, float skinDecay) {
    Instrument i;
    i.name = name;
    i.kind = Kind::kDrum;
    i.gain = gain;
    i.pan = pan;
    i.hertz = hertz;
    i.skinDecay = skinDecay;
    i.hall = 0.3f;
    return i;
}

Instrument lowDrum() {
    Instrument i = drum("drum", 0.6f, 0, 62, 0.22f);
    i.drop = 0.8f;
    i.noise = 0.25f;
    i.noiseDecay = 0.03f;
    i.noiseHigh = 1500;
    return i;
}

// A hoop and a goatskin, struck with the hand.
Instrument frame() {
    Instrument i = drum("frame", 0.55f, 0.25f, 118, 0.12f);
    i.drop = 0.4f;
    i.noise = 0.5f;
    i.noiseDecay = 0.035f;
    i.noiseHigh = 3000;
    return i;
}

Instrument snare() {
    Instrument i = drum("snare", 0.65f, -0.15f, 185, 0.06f);
    i.drop = 0.3f;
    i.skin = 0.7f;
    i.noise = 1.2f;
    i.noiseDecay = 0.06f;
    i.noiseLow = 900;
    i.noiseHigh = 8000;
    return i;
}

Instrument shaker() {
    Instrument i = drum("shaker", 1.4f, -0.4f, 100, 0.01f);
    i.skin = 0;
    i.noise = 1;
    i.noiseDecay = 0.028f;
    i.noiseLow = 3500;
    i.noiseHigh = 9500;
    i.hall = 0.15f;
    return i;
}
} // namespace

const std::vector<Instrument>& orchestra() {
    static const std::vector<Instrument> kAll = {
        flute(),
        reed(),
        oboe(),
        horn(),
        strings(),
        bows(),
        violins(),
        cello(),
        basses(),
        choir(),
        plucked("harp", 0.95f, 0.4f, 2.6f, 0.5f, 0.4f),
        plucked("lute", 0.85f, -0.35f, 1.3f, 0.8f, 0.3f),
        plucked("pizzicato", 1.3f, 0.1f, 0.7f, 0.35f, 0.3f),
        bars("bells", 0.4f, 0.35f, {{1, 1, 0.7f}, {2.76f, 0.3f, 0.25f}, {5.4f, 0.12f, 0.1f}}),
        bars("tower", 0.45f, -0.2f,
             {{0.5f, 0.5f, 2.4f},
              {1, 1, 1.6f},
              {1.19f, 0.45f, 1.1f},
              {2, 0.5f, 0.9f},
              {3, 0.18f, 0.4f},
              {4.1f, 0.1f, 0.2f}}),
        lowDrum(),
        frame(),
        snare(),
        shaker(),
    };
    return kAll;
}
