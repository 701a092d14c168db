#include "forge/sound.h"

#include "data/binary_reader.h"
#include "forge/noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace forge {
namespace {
constexpr float kTwoPi = 2 * std::numbers::pi_v<float>;
constexpr float kTop = 0.45f * Sound::kRate; ///< nothing is made above this frequency
constexpr float kRadiated = 0.92f;           ///< lips pass on high tones more easily than low ones
constexpr float kThroat = 5500;              ///< little is heard above
constexpr float kBreath = 0.3f;              ///< full breath against a full voice
constexpr float kFadeIn = 0.001f, kFadeOut = 0.012f;

float white(size_t i, uint32_t seed) {
    return 2 * latticeValue(static_cast<int>(i), 0, seed) - 1;
}

float time(size_t sample) {
    return static_cast<float>(sample) / Sound::kRate;
}
} // namespace

float at(const Curve& curve, float seconds) {
    if (curve.empty()) return 0;
    if (seconds <= curve.front().seconds) return curve.front().value;
    for (size_t i = 1; i < curve.size(); ++i) {
        const CurvePoint &a = curve[i - 1], &b = curve[i];
        if (seconds < b.seconds)
            return a.value + (b.value - a.value) * (seconds - a.seconds) / (b.seconds - a.seconds);
    }
    return curve.back().value;
}

Sound::Sound(float seconds) : samples(static_cast<size_t>(seconds * kRate), 0.0f) {}

Sound Sound::tone(float seconds, const Curve& hertz, const std::vector<float>& harmonics) {
    Sound sound(seconds);
    double phase = 0;
    for (size_t i = 0; i < sound.samples.size(); ++i) {
        const float f = at(hertz, time(i));
        phase += f / static_cast<float>(kRate);
        phase -= std::floor(phase);
        for (size_t h = 0; h < harmonics.size(); ++h) {
            const auto n = static_cast<float>(h + 1);
            if (n * f < kTop)
                sound.samples[i] += harmonics[h] * std::sin(kTwoPi * n * static_cast<float>(phase));
        }
    }
    return sound;
}

Sound Sound::hiss(float seconds, uint32_t seed) {
    Sound sound(seconds);
    for (size_t i = 0; i < sound.samples.size(); ++i) sound.samples[i] = white(i, seed);
    return sound;
}

Sound Sound::struck(float seconds, const std::vector<Mode>& modes) {
    Sound sound(seconds);
    for (const Mode& m : modes) {
        if (m.hertz >= kTop) continue;
        // A decaying rotation: y(n) = 2 r cos(w) y(n-1) - r² y(n-2).
        const double turn = 2 * std::numbers::pi * m.hertz / kRate, loss = std::exp(-1 / (m.decay * kRate));
        const double turning = std::cos(turn);
        double last = 0, now = m.gain * std::sin(turn);
        for (float& s : sound.samples) {
            s += static_cast<float>(last);
            const double next = 2 * loss * turning * now - loss * loss * last;
            last = now;
            now = next;
        }
    }
    return sound;
}

Sound Sound::grains(float seconds, float perSecond, float grainSeconds, uint32_t seed) {
    Sound sound(seconds);
    const auto count = static_cast<size_t>(seconds * perSecond);
    for (size_t g = 0; g < count; ++g) {
        const int n = static_cast<int>(g);
        const float strength = latticeValue(n, 1, seed), start = latticeValue(n, 2, seed) * seconds;
        Sound grain =
            hiss(grainSeconds * (0.5f + latticeValue(n, 3, seed)), seed + 7u * static_cast<uint32_t>(g));
        grain.strike(0.0004f, grainSeconds / 4);
        sound.add(start, grain, strength * strength);
    }
    sound.samples.resize(static_cast<size_t>(seconds * kRate));
    return sound;
}

/// Pulses of the vocal cords through three resonances that glide with the mouth.
Sound Sound::spoken(float seconds, const Voice& voice, uint32_t seed) {
    Sound source(seconds);
    float phase = 0, before = 0;
    size_t period = 0;
    for (size_t i = 0; i < source.samples.size(); ++i) {
        const float wobble = 1 + voice.rough * (latticeValue(static_cast<int>(period), 5, seed) - 0.5f);
        phase += at(voice.hertz, time(i)) * wobble / kRate;
        if (phase >= 1) {
            phase -= 1;
            ++period;
        }
        // Opens slowly, shuts fast: a soft saw whose upper harmonics fall.
        const float open = phase < 0.6f ? std::sin(kTwoPi * phase / 1.2f) : 0;
        const float pulse = open * open - 0.3f;
        source.samples[i] = pulse - kRadiated * before + kBreath * voice.breath * white(i, seed);
        before = pulse;
    }
    static constexpr std::array<float, 3> kGain = {1, 1.4f, 1.1f}, kResonance = {6, 9, 11};
    Sound sound(seconds);
    for (size_t f = 0; f < 3; ++f) {
        Curve course;
        for (const Vowel& v : voice.vowels) course.push_back({v.seconds, v.hertz[f]});
        Sound part = source;
        sound.add(0, part.band(course, kResonance[f]), kGain[f]);
    }
    return sound.low({{0, kThroat}}).shape(voice.loudness);
}

Sound& Sound::shape(const Curve& gain) {
    for (size_t i = 0; i < samples.size(); ++i) samples[i] *= at(gain, time(i));
    return *this;
}

Sound& Sound::strike(float attack, float decay) {
    for (size_t i = 0; i < samples.size(); ++i) {
        const float t = time(i);
        samples[i] *= t < attack ? t / attack : std::exp(-(t - attack) / decay);
    }
    return *this;
}

/// State variable filter in its trapezoidal form, which stays stable while its frequency moves.
Sound& Sound::filter(Pass pass, const Curve& hertz, float resonance) {
    float s1 = 0, s2 = 0, g = 0;
    const float k = 1 / resonance;
    for (size_t i = 0; i < samples.size(); ++i) {
        if (i % 16 == 0) g = std::tan(kTwoPi / 2 * std::clamp(at(hertz, time(i)), 5.0f, kTop) / kRate);
        const float high = (samples[i] - (k + g) * s1 - s2) / (1 + g * (g + k));
        const float band = g * high + s1, low = g * band + s2;
        s1 = g * high + band;
        s2 = g * band + low;
        samples[i] = pass == Pass::kLow ? low : pass == Pass::kHigh ? high : band * k;
    }
    return *this;
}

Sound& Sound::low(const Curve& hertz, float resonance) {
    return filter(Pass::kLow, hertz, resonance);
}
Sound& Sound::high(const Curve& hertz, float resonance) {
    return filter(Pass::kHigh, hertz, resonance);
}
Sound& Sound::band(const Curve& hertz, float resonance) {
    return filter(Pass::kBand, hertz, resonance);
}

Sound& Sound::drive(float amount) {
    const float back = 1 / std::tanh(amount);
    for (float& s : samples) s = std::tanh(s * amount) * back;
    return *this;
}

Sound& Sound::add(float atSeconds, const Sound& other, float gain) {
    const auto from = static_cast<size_t>(std::max(0.0f, atSeconds) * kRate);
    if (samples.size() < from + other.samples.size()) samples.resize(from + other.samples.size(), 0.0f);
    for (size_t i = 0; i < other.samples.size(); ++i) samples[from + i] += gain * other.samples[i];
    return *this;
}

float Sound::loudest() const {
    float most = 0;
    for (float s : samples) most = std::max(most, std::abs(s));
    return most;
}

Sound& Sound::peak(float value) {
    const float most = loudest();
    if (most > 0)
        for (float& s : samples) s *= value / most;
    return *this;
}

/// Four loops of different length through two diffusers, dull above 5 kHz.
Sound& Sound::room(float seconds, float share) {
    samples.resize(samples.size() + static_cast<size_t>(seconds * kRate), 0.0f);
    std::vector<float> wet(samples.size(), 0.0f);
    for (size_t delay : {1557u, 1617u, 1491u, 1422u}) {
        std::vector<float> line(delay, 0.0f);
        const float back = std::pow(10.0f, -3 * static_cast<float>(delay) / kRate / seconds);
        float dull = 0;
        for (size_t i = 0; i < wet.size(); ++i) {
            float& slot = line[i % delay];
            wet[i] += 0.25f * slot;
            dull += 0.5f * (slot - dull);
            slot = samples[i] + back * dull;
        }
    }
    for (size_t delay : {225u, 556u}) {
        std::vector<float> line(delay, 0.0f);
        for (size_t i = 0; i < wet.size(); ++i) {
            float& slot = line[i % delay];
            const float out = slot - 0.5f * wet[i];
            slot = wet[i] + 0.5f * out;
            wet[i] = out;
        }
    }
    for (size_t i = 0; i < samples.size(); ++i) samples[i] += share * wet[i];
    return *this;
}

platform::Bytes wavFile(Sound sound, float peakDecibel) {
    sound.high({{0, 25}});
    auto& s = sound.samples;
    double sum = 0;
    for (float v : s) sum += v;
    const auto offset = static_cast<float>(sum / static_cast<double>(std::max<size_t>(1, s.size())));
    for (size_t i = 0; i < s.size(); ++i) {
        const float in = time(i) / kFadeIn, out = time(s.size() - 1 - i) / kFadeOut;
        s[i] = (s[i] - offset) * smoothStep(0, 1, in) * smoothStep(0, 1, out);
    }
    sound.peak(std::pow(10.0f, peakDecibel / 20));

    cBinaryWriter out;
    const auto bytes = static_cast<uint32_t>(s.size() * 2);
    out.raw("RIFF", 4);
    out.u32(36 + bytes);
    out.raw("WAVEfmt ", 8);
    out.u32(16);
    out.u16(1); // PCM
    out.u16(1); // one channel
    out.u32(Sound::kRate);
    out.u32(Sound::kRate * 2);
    out.u16(2);
    out.u16(16);
    out.raw("data", 4);
    out.u32(bytes);
    for (float v : s) out.u16(static_cast<uint16_t>(static_cast<int16_t>(std::lround(v * 32767))));
    return out.bytes();
}
} // namespace forge
