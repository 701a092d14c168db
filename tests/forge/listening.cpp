#include "forge/listening.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numbers>
#include <vorbis/vorbisfile.h>

namespace listening {
namespace {
using Complex = std::complex<float>;
constexpr float kPi = std::numbers::pi_v<float>;

void transform(std::vector<Complex>& a) {
    const size_t n = a.size();
    for (size_t i = 1, j = 0; i < n; ++i) {
        size_t bit = n >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(a[i], a[j]);
    }
    for (size_t length = 2; length <= n; length *= 2) {
        std::vector<Complex> turns(length / 2);
        for (size_t k = 0; k < turns.size(); ++k)
            turns[k] = std::polar(1.0f, -2 * kPi * static_cast<float>(k) / static_cast<float>(length));
        for (size_t i = 0; i < n; i += length)
            for (size_t k = 0; k < length / 2; ++k) {
                const Complex u = a[i + k], v = a[i + k + length / 2] * turns[k];
                a[i + k] = u + v;
                a[i + k + length / 2] = u - v;
            }
    }
}

/// Power of the first half of the spectrum of a window from `from` on.
std::vector<float> spectrum(const std::vector<float>& samples, size_t from, size_t size) {
    std::vector<Complex> a(size);
    for (size_t i = 0; i < size && from + i < samples.size(); ++i)
        a[i] = samples[from + i] *
               (0.5f - 0.5f * std::cos(2 * kPi * static_cast<float>(i) / static_cast<float>(size)));
    transform(a);
    std::vector<float> power(size / 2);
    for (size_t k = 0; k < size / 2; ++k) power[k] = std::norm(a[k]);
    return power;
}

/// One channel at a quarter of the rate.
std::vector<float> quarter(const Heard& sound) {
    std::vector<float> out(sound.left.size() / 4);
    for (size_t i = 0; i < out.size(); ++i)
        for (size_t k = 0; k < 4; ++k) out[i] += (sound.left[4 * i + k] + sound.right[4 * i + k]) / 8;
    return out;
}
} // namespace

Heard decodeOgg(const std::string& path) {
    Heard sound;
    OggVorbis_File file;
    if (ov_fopen(path.c_str(), &file) != 0) return sound;
    const vorbis_info* info = ov_info(&file, -1);
    sound.rate = static_cast<float>(info->rate);
    sound.channels = info->channels;
    float** pcm = nullptr;
    int section = 0;
    for (long count; (count = ov_read_float(&file, &pcm, 4096, &section)) > 0;) {
        sound.left.insert(sound.left.end(), pcm[0], pcm[0] + count);
        sound.right.insert(sound.right.end(), pcm[info->channels - 1], pcm[info->channels - 1] + count);
    }
    ov_clear(&file);
    return sound;
}

Heard readWav(const std::string& path) {
    Heard sound;
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (bytes.size() < 44) return sound;
    int32_t rate;
    int16_t channels;
    std::memcpy(&rate, &bytes[24], 4);
    std::memcpy(&channels, &bytes[22], 2);
    sound.rate = static_cast<float>(rate);
    sound.channels = channels;
    for (size_t i = 44; i + 1 < bytes.size(); i += 2) {
        int16_t s;
        std::memcpy(&s, &bytes[i], 2);
        sound.left.push_back(static_cast<float>(s) / 32768);
    }
    sound.right = sound.left;
    return sound;
}

float truePeak(const std::vector<float>& samples) {
    constexpr int kReach = 12;
    float most = 0;
    for (float s : samples) most = std::max(most, std::abs(s));
    const float worth = 0.75f * most; // lower neighbours cannot hide a higher peak
    for (size_t i = kReach; i + kReach < samples.size(); ++i) {
        if (std::abs(samples[i]) < worth) continue;
        for (const float part : {0.25f, 0.5f, 0.75f}) {
            float sum = 0;
            for (int k = 1 - kReach; k <= kReach; ++k) {
                const float x = static_cast<float>(k) - part;
                sum += samples[i + static_cast<size_t>(k + kReach) - kReach] * std::sin(kPi * x) / (kPi * x) *
                       (0.5f + 0.5f * std::cos(kPi * x / kReach));
            }
            most = std::max(most, std::abs(sum));
        }
    }
    return most;
}

std::vector<float> levels(const Heard& sound, float windowSeconds) {
    const auto window = static_cast<size_t>(windowSeconds * sound.rate);
    std::vector<float> all;
    for (size_t from = 0; from + window <= sound.left.size(); from += window) {
        double power = 1e-12;
        for (size_t i = from; i < from + window; ++i)
            power += (sound.left[i] * sound.left[i] + sound.right[i] * sound.right[i]) / 2 /
                     static_cast<double>(window);
        all.push_back(static_cast<float>(10 * std::log10(power)));
    }
    return all;
}

float centroid(const Heard& sound) {
    constexpr size_t kSize = 2048;
    double power = 0, sum = 0;
    for (size_t from = 0; from < sound.left.size();
         from += std::max<size_t>(kSize, sound.left.size() / 400)) {
        const auto bins = spectrum(sound.left, from, kSize);
        for (size_t k = 1; k < bins.size(); ++k) {
            power += bins[k];
            sum += bins[k] * static_cast<double>(k) * sound.rate / kSize;
        }
    }
    return static_cast<float>(sum / std::max(power, 1e-12));
}

std::vector<double> chroma(const Heard& sound) {
    constexpr size_t kSize = 4096;
    const auto low = quarter(sound);
    std::vector<double> classes(12);
    double total = 1e-12;
    for (size_t from = 0; from + kSize <= low.size(); from += kSize) {
        const auto bins = spectrum(low, from, kSize);
        for (size_t k = 1; k < bins.size(); ++k) {
            const float hertz = static_cast<float>(k) * sound.rate / 4 / kSize;
            if (hertz < 100 || hertz > 1000) continue;
            const int pitch = static_cast<int>(std::lround(12 * std::log2(hertz / 440) + 69));
            const double weight = std::sqrt(bins[k]);
            classes[static_cast<size_t>(pitch % 12)] += weight;
            total += weight;
        }
    }
    for (double& c : classes) c /= total;
    return classes;
}

std::string keyOf(const std::vector<double>& chroma) {
    // How well listeners found each tone to fit into a key (Krumhansl and Kessler).
    static constexpr std::array<double, 12> kMajor = {6.35, 2.23, 3.48, 2.33, 4.38, 4.09,
                                                      2.52, 5.19, 2.39, 3.66, 2.29, 2.88};
    static constexpr std::array<double, 12> kMinor = {6.33, 2.68, 3.52, 5.38, 2.60, 3.53,
                                                      2.54, 4.75, 3.98, 2.69, 3.34, 3.17};
    static constexpr std::array<const char*, 12> kNames = {"C",  "C#", "D",  "Eb", "E",  "F",
                                                           "F#", "G",  "Ab", "A",  "Bb", "B"};
    std::string best;
    double most = -1e9;
    for (size_t tonic = 0; tonic < 12; ++tonic)
        for (const auto* profile : {&kMajor, &kMinor}) {
            double mean = 0, fit = 0, own = 0;
            for (double p : *profile) mean += p / 12;
            for (size_t k = 0; k < 12; ++k) {
                const double p = (*profile)[k] - mean;
                fit += p * (chroma[(tonic + k) % 12] - 1.0 / 12);
                own += p * p;
            }
            if (fit / std::sqrt(own) > most) {
                most = fit / std::sqrt(own);
                best = std::string(kNames[tonic]) + (profile == &kMajor ? " major" : " minor");
            }
        }
    return best;
}

float tempoOf(const Heard& sound, float low, float high) {
    constexpr size_t kSize = 256, kHop = 80; // 10 ms at 8 kHz
    const auto slow = quarter(sound);
    const float perSecond = sound.rate / 4 / kHop;
    std::vector<float> onsets, before(kSize / 2);
    for (size_t from = 0; from + kSize <= slow.size(); from += kHop) {
        auto bins = spectrum(slow, from, kSize);
        float rise = 0;
        for (size_t k = 0; k < bins.size(); ++k) {
            bins[k] = std::log1p(100 * std::sqrt(bins[k]));
            rise += std::max(0.0f, bins[k] - before[k]);
        }
        before = std::move(bins);
        onsets.push_back(rise);
    }
    float mean = 0;
    for (float o : onsets) mean += o / static_cast<float>(onsets.size());
    for (float& o : onsets) o -= mean;
    const auto repeats = [&](float lag) {
        const auto whole = static_cast<size_t>(lag);
        const float part = lag - static_cast<float>(whole);
        double sum = 0;
        for (size_t i = 0; i + whole + 1 < onsets.size(); ++i)
            sum += onsets[i] * ((1 - part) * onsets[i + whole] + part * onsets[i + whole + 1]);
        return sum;
    };
    float best = 0;
    double most = -1e30;
    for (float tempo = low; tempo <= high; tempo += 0.25f) {
        double sum = 0;
        for (int beats : {1, 2, 3, 4, 6, 8, 12})
            sum += repeats(static_cast<float>(beats) * 60 / tempo * perSecond);
        if (sum > most) {
            most = sum;
            best = tempo;
        }
    }
    return best;
}
} // namespace listening
