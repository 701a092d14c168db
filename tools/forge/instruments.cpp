#include "forge/instruments.h"

#include "forge/noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace forge {
namespace {
constexpr float kTwoPi = 2 * std::numbers::pi_v<float>;
constexpr size_t kPeriod = 2048;      ///< samples of a stored wave
constexpr float kTopHarmonic = 11000; ///< Hz
constexpr float kSilence = 0.0007f;   ///< where a decaying note ends

float hertzOf(float pitch) {
    return 440 * std::exp2((pitch - 69) / 12);
}

float white(size_t i, uint32_t seed) {
    return 2 * latticeValue(static_cast<int>(i), 3, seed) - 1;
}

float chance(uint32_t seed, int which) {
    return 2 * latticeValue(which, 9, seed) - 1;
}

/// Where a note's samples go: equal power between the channels, a share to the hall.
class Seat {
public:
    Seat(Mix& mix, float start, size_t count, float pan, float gain, float hall)
        : at_(static_cast<size_t>(std::max(0.0f, start) * kMusicRate)) {
        mix.reserve(at_ + count + 1);
        const float angle = (std::clamp(pan, -1.0f, 1.0f) + 1) * kTwoPi / 8;
        left_ = &mix.dry.left[at_];
        right_ = &mix.dry.right[at_];
        hall_ = &mix.hall[at_];
        toLeft_ = gain * std::cos(angle);
        toRight_ = gain * std::sin(angle);
        toHall_ = gain * hall;
    }
    void put(size_t i, float sample) {
        left_[i] += toLeft_ * sample;
        right_[i] += toRight_ * sample;
        hall_[i] += toHall_ * sample;
    }

private:
    size_t at_;
    float *left_, *right_, *hall_, toLeft_, toRight_, toHall_;
};

/// A plucked string: a burst of noise runs round a loop as long as the period and loses its upper harmonics.
void plucked(const Instrument& in, const Note& note, Mix& mix) {
    const float hertz = hertzOf(note.pitch), period = kMusicRate / hertz;
    const float dull = 0.5f - 0.35f * in.brightness; // delay of the loss filter, in samples
    const auto whole = static_cast<size_t>(std::max(2.0f, period - dull - 0.3f));
    const float rest = period - dull - static_cast<float>(whole), tune = (1 - rest) / (1 + rest);
    const float keep = std::pow(0.001f, 1 / (hertz * in.ring));
    std::vector<float> line(whole);
    const float open = 0.15f + 0.6f * in.brightness * (0.4f + 0.6f * note.strength);
    float smooth = 0, mean = 0;
    for (size_t i = 0; i < whole; ++i) {
        smooth += open * (white(i, note.seed) - smooth);
        line[i] = smooth;
        mean += smooth / static_cast<float>(whole);
    }
    float power = 0;
    for (float& s : line) {
        s -= mean;
        power += s * s / static_cast<float>(whole);
    }
    const float level = 0.35f / std::sqrt(std::max(power, 1e-6f));
    const float damp = std::max(note.length, 0.1f), loss = std::exp(-1 / (0.12f * kMusicRate));
    const auto held = static_cast<size_t>(std::min(damp, in.ring) * kMusicRate);
    const size_t count = held + kMusicRate / 2;
    Seat seat(mix, note.start, count, in.pan, in.gain * note.strength * level, in.hall);
    float last = 0, passIn = 0, passOut = 0, fade = 1;
    for (size_t i = 0, p = 0; i < count; ++i) {
        const float out = line[p];
        seat.put(i, out * fade * (i < 32 ? static_cast<float>(i) / 32 : 1));
        if (i > held) fade *= loss;
        const float lost = keep * ((1 - dull) * out + dull * last);
        last = out;
        passOut = tune * (lost - passOut) + passIn;
        passIn = lost;
        line[p] = passOut;
        if (++p == whole) p = 0;
    }
}

/// Partials that ring out, each as a decaying rotation.
void bar(const Instrument& in, const Note& note, Mix& mix) {
    for (const auto& partial : in.partials) {
        const double hertz = hertzOf(note.pitch) * partial.factor;
        if (hertz > kTopHarmonic) continue;
        const double turn = 2 * std::numbers::pi * hertz / kMusicRate,
                     loss = std::exp(-1 / (partial.decay * kMusicRate));
        const double turning = 2 * loss * std::cos(turn), losing = loss * loss;
        const auto count = static_cast<size_t>(-std::log(kSilence) * partial.decay * kMusicRate);
        Seat seat(mix, note.start, count, in.pan, in.gain * note.strength * partial.gain, in.hall);
        double last = 0, now = std::sin(turn);
        for (size_t i = 0; i < count; ++i) {
            seat.put(i, static_cast<float>(last));
            const double next = turning * now - losing * last;
            last = now;
            now = next;
        }
    }
}

void drum(const Instrument& in, const Note& note, Mix& mix) {
    const float longest = std::max(in.skin > 0 ? in.skinDecay : 0, in.noise > 0 ? in.noiseDecay : 0);
    const auto count = static_cast<size_t>(-std::log(kSilence) * longest * kMusicRate);
    Seat seat(mix, note.start, count, in.pan, in.gain * note.strength, in.hall);
    const float tuned = in.hertz * (1 + 0.02f * chance(note.seed, 1));
    const float skinLoss = std::exp(-1 / (in.skinDecay * kMusicRate)),
                noiseLoss = std::exp(-1 / (in.noiseDecay * kMusicRate));
    const float dropLoss = std::exp(-1 / (0.02f * kMusicRate));
    const float up = 1 - std::exp(-kTwoPi * in.noiseHigh / kMusicRate),
                down = 1 - std::exp(-kTwoPi * in.noiseLow / kMusicRate);
    float phase = 0, skin = in.skin, hiss = in.noise * (0.6f + 0.4f * note.strength), drop = in.drop,
          high = 0, low = 0;
    for (size_t i = 0; i < count; ++i) {
        phase += tuned * (1 + drop) / kMusicRate;
        phase -= std::floor(phase);
        high += up * (white(i, note.seed) - high);
        low += down * (high - low);
        const float edge = i < 64 ? static_cast<float>(i) / 64 : 1;
        seat.put(i, edge * (skin * std::sin(kTwoPi * phase) + hiss * (high - low)));
        skin *= skinLoss;
        hiss *= noiseLoss;
        drop *= dropLoss;
    }
}
} // namespace

/// The full wave has the harmonics as written, the soft one a steeper fall.
const Orchestra::Waves& Orchestra::waves(const Instrument& in, int pitch) {
    for (const Waves& w : kept_)
        if (w.instrument == &in && w.pitch == pitch) return w;
    Waves made{&in, pitch, std::vector<float>(kPeriod + 1), std::vector<float>(kPeriod + 1)};
    const float hertz = hertzOf(static_cast<float>(pitch));
    float soften = 1;
    for (size_t h = 0; h < in.harmonics.size(); ++h, soften *= 0.62f) {
        const auto n = static_cast<float>(h + 1);
        if (n * hertz > kTopHarmonic) break;
        for (size_t i = 0; i <= kPeriod; ++i) {
            const float s =
                in.harmonics[h] * std::sin(kTwoPi * n * static_cast<float>(i % kPeriod) / kPeriod);
            made.full[i] += s;
            made.soft[i] += s * soften;
        }
    }
    kept_.push_back(std::move(made));
    return kept_.back();
}

void Orchestra::blown(const Instrument& in, const Note& note, Mix& mix) {
    const Waves& wave = waves(in, static_cast<int>(std::lround(note.pitch)));
    const auto held = static_cast<size_t>(note.length * kMusicRate);
    const size_t count = held + static_cast<size_t>(4 * in.release * kMusicRate);
    const float rise = 1 - std::exp(-3 / (in.attack * kMusicRate)),
                fall = 1 - std::exp(-2.4f / (in.release * kMusicRate));
    for (int player = 0; player < in.players; ++player) {
        const uint32_t seed = note.seed * 31u + static_cast<uint32_t>(player);
        const float side =
            in.players > 1 ? 2 * static_cast<float>(player) / static_cast<float>(in.players - 1) - 1 : 0;
        const float share = 1 / std::sqrt(static_cast<float>(in.players));
        Seat seat(mix, note.start, count, in.pan + side * in.spread, in.gain * note.strength * share,
                  in.hall);
        const float base =
            kPeriod * hertzOf(note.pitch + (in.detuneCents * (0.7f * side + 0.3f * chance(seed, 1))) / 100) /
            kMusicRate;
        const float pace = kTwoPi * in.vibratoHertz * (1 + 0.08f * chance(seed, 2)) / kMusicRate;
        float place = kPeriod * (0.5f + 0.5f * chance(seed, 3)) * (player > 0 ? 1.0f : 0.0f);
        float level = 0, follow = 0, step = base, noiseLow = 0, noiseBand = 0;
        for (size_t i = 0; i < count; ++i) {
            if (i % 32 == 0) {
                const float t = static_cast<float>(i),
                            depth = in.vibratoCents * smoothStep(0.15f, 0.6f, t / kMusicRate);
                step = base * (1 + depth * 0.000578f * std::sin(pace * t + 3 * chance(seed, 4)));
            }
            // Two smoothings in a row: the note neither starts nor ends with an edge.
            const bool on = i < held;
            follow += (on ? rise : fall) * ((on ? 1.0f : 0.0f) - follow);
            level += (on ? rise : fall) * (follow - level);
            place += step;
            if (place >= kPeriod) place -= kPeriod;
            const auto cell = static_cast<size_t>(place);
            const float part = place - static_cast<float>(cell), bright = level * note.strength;
            const float soft = wave.soft[cell] + part * (wave.soft[cell + 1] - wave.soft[cell]);
            const float full = wave.full[cell] + part * (wave.full[cell + 1] - wave.full[cell]);
            float sample = soft + bright * (full - soft);
            if (in.breath > 0) {
                noiseLow += 0.35f * (white(i, seed) - noiseLow);
                noiseBand += 0.12f * (noiseLow - noiseBand);
                sample += in.breath * (noiseLow - noiseBand);
            }
            seat.put(i, level * sample);
        }
    }
}

void Orchestra::play(const Instrument& instrument, const Note& note, Mix& mix) {
    switch (instrument.kind) {
    case Instrument::Kind::kBlown:
        return blown(instrument, note, mix);
    case Instrument::Kind::kPlucked:
        return plucked(instrument, note, mix);
    case Instrument::Kind::kBar:
        return bar(instrument, note, mix);
    case Instrument::Kind::kDrum:
        return drum(instrument, note, mix);
    }
}
} // namespace forge
