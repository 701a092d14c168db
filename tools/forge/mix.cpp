#include "forge/mix.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace forge {
namespace {
/// Second-order section in transposed form.
struct Biquad {
    double b0, b1, b2, a1, a2, s1 = 0, s2 = 0;

    double run(double x) {
        const double y = b0 * x + s1;
        s1 = b1 * x - a1 * y + s2;
        s2 = b2 * x - a2 * y;
        return y;
    }
};

Biquad highPass(double hertz, double q) {
    const double w = 2 * std::numbers::pi * hertz / kMusicRate, c = std::cos(w), a = std::sin(w) / (2 * q);
    return {(1 + c) / 2 / (1 + a), -(1 + c) / (1 + a), (1 + c) / 2 / (1 + a), -2 * c / (1 + a),
            (1 - a) / (1 + a)};
}

Biquad highShelf(double hertz, double q, double decibel) {
    const double w = 2 * std::numbers::pi * hertz / kMusicRate, c = std::cos(w), a = std::sin(w) / (2 * q);
    const double g = std::pow(10, decibel / 40), r = 2 * std::sqrt(g) * a;
    const double a0 = (g + 1) - (g - 1) * c + r;
    return {g * ((g + 1) + (g - 1) * c + r) / a0, -2 * g * ((g - 1) + (g + 1) * c) / a0,
            g * ((g + 1) + (g - 1) * c - r) / a0, 2 * ((g - 1) - (g + 1) * c) / a0,
            ((g + 1) - (g - 1) * c - r) / a0};
}

double lufsOf(double power) {
    return power > 1e-10 ? -0.691 + 10 * std::log10(power) : -100;
}

double meanAbove(const std::vector<double>& powers, double gate) {
    double sum = 0;
    size_t count = 0;
    for (double p : powers)
        if (lufsOf(p) > gate) {
            sum += p;
            ++count;
        }
    return count ? sum / static_cast<double>(count) : 0;
}

void fadeEnds(std::vector<float>& s) {
    const auto in = static_cast<size_t>(0.005f * kMusicRate), out = static_cast<size_t>(1.5f * kMusicRate);
    for (size_t i = 0; i < std::min(in, s.size()); ++i)
        s[i] *= static_cast<float>(i) / static_cast<float>(in);
    for (size_t i = 0; i < std::min(out, s.size()); ++i)
        s[s.size() - 1 - i] *= static_cast<float>(i) / static_cast<float>(out);
}
} // namespace

void Mix::reserve(size_t samples) {
    if (hall.size() < samples) setLength(samples);
}

void Mix::setLength(size_t samples) {
    for (auto* channel : {&dry.left, &dry.right, &hall}) channel->resize(samples, 0.0f);
}

Stereo withHall(Mix&& mix, float seconds, float gain) {
    static constexpr std::array<size_t, 8> kDelays = {1031, 1153, 1277, 1399, 1511, 1627, 1747, 1861};
    static constexpr size_t kBefore = 640; // 20 ms until the first wall answers
    std::array<std::vector<float>, 8> lines;
    std::array<float, 8> back{}, dull{};
    std::array<size_t, 8> place{};
    for (size_t k = 0; k < 8; ++k) {
        lines[k].assign(kDelays[k], 0.0f);
        back[k] = std::pow(10.0f, -3 * static_cast<float>(kDelays[k]) / kMusicRate / seconds);
    }
    Stereo out = std::move(mix.dry);
    for (size_t i = kBefore; i < out.left.size(); ++i) {
        const float in = mix.hall[i - kBefore] * gain;
        std::array<float, 8> v;
        float sum = 0;
        for (size_t k = 0; k < 8; ++k) {
            dull[k] += 0.55f * (lines[k][place[k]] - dull[k]);
            v[k] = dull[k] * back[k];
            sum += v[k];
        }
        sum *= 0.25f; // reflection at the mean: no energy is won or lost
        for (size_t k = 0; k < 8; ++k) {
            lines[k][place[k]] = in + v[k] - sum;
            if (++place[k] == kDelays[k]) place[k] = 0;
        }
        out.left[i] += v[0] - v[2] + v[4] - v[6];
        out.right[i] += v[1] - v[3] + v[5] - v[7];
    }
    return out;
}

float loudness(const Stereo& sound) {
    const size_t block = kMusicRate / 10; // four of them are one measured window
    std::vector<double> tenths(sound.left.size() / block, 0.0);
    for (const auto* channel : {&sound.left, &sound.right}) {
        Biquad shelf = highShelf(1681.97, 0.7072, 4.0), high = highPass(38.135, 0.5003);
        for (size_t i = 0; i < tenths.size() * block; ++i) {
            const double y = high.run(shelf.run((*channel)[i]));
            tenths[i / block] += y * y / static_cast<double>(block);
        }
    }
    std::vector<double> powers;
    for (size_t i = 0; i + 4 <= tenths.size(); ++i)
        powers.push_back((tenths[i] + tenths[i + 1] + tenths[i + 2] + tenths[i + 3]) / 4);
    const double rough = lufsOf(meanAbove(powers, -70));
    return static_cast<float>(lufsOf(meanAbove(powers, rough - 10)));
}

float master(Stereo& sound, float lufs, float ceiling) {
    for (auto* channel : {&sound.left, &sound.right}) {
        Biquad high = highPass(28, 0.707);
        for (float& s : *channel) s = static_cast<float>(high.run(s));
    }
    const float gain = std::pow(10.0f, (lufs - loudness(sound)) / 20);
    const size_t count = sound.left.size(), ahead = kMusicRate / 160;
    // What each sample asks for; every ask is heard `ahead` before and after, then the course is smoothed.
    std::vector<float> ask(count, 1.0f);
    for (size_t i = 0; i < count; ++i) {
        const float most = gain * std::max(std::abs(sound.left[i]), std::abs(sound.right[i]));
        if (most > ceiling) ask[i] = ceiling / most;
    }
    std::vector<float> held(count, 1.0f);
    for (size_t i = 0; i < count; ++i) {
        if (ask[i] >= 1) continue;
        const size_t from = i > ahead ? i - ahead : 0, to = std::min(count - 1, i + ahead);
        for (size_t k = from; k <= to; ++k) held[k] = std::min(held[k], ask[i]);
    }
    double sum = 0;
    float least = 1;
    const size_t width = ahead; // a mean over the last `width` of what is held stays below every ask
    for (size_t i = 0; i < count + width / 2; ++i) {
        sum += i < count ? held[i] : 1;
        if (i >= width) sum -= held[i - width];
        if (i < width / 2) continue;
        const auto have = static_cast<double>(std::min(i + 1, width));
        const auto hold = static_cast<float>(sum / have);
        least = std::min(least, hold);
        sound.left[i - width / 2] *= gain * hold;
        sound.right[i - width / 2] *= gain * hold;
    }
    fadeEnds(sound.left);
    fadeEnds(sound.right);
    return -20 * std::log10(least);
}

Stereo inRounds(Stereo&& once, int rounds, std::size_t every) {
    Stereo all = std::move(once);
    for (auto* channel : {&all.left, &all.right}) {
        const size_t length = channel->size();
        const std::vector<float> one = *channel;
        channel->resize(length + static_cast<size_t>(rounds - 1) * every);
        for (size_t begin = every; begin + length <= channel->size(); begin += every)
            for (size_t i = 0; i < length; ++i) (*channel)[begin + i] += one[i];
    }
    return all;
}
} // namespace forge
