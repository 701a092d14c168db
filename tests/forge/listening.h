#pragma once
#include <string>
#include <vector>

/// What can be measured of a sound in place of hearing it.
namespace listening {
struct Heard {
    float rate = 0;
    int channels = 0;
    std::vector<float> left, right; ///< the same for one channel
    float seconds() const { return static_cast<float>(left.size()) / rate; }
};
/// Both are empty when the file cannot be read.
Heard decodeOgg(const std::string& path);
Heard readWav(const std::string& path);

/// Highest magnitude between the samples too, from four times as many of them.
float truePeak(const std::vector<float>& samples);
/// Root mean square of each window, in decibels below full scale.
std::vector<float> levels(const Heard& sound, float windowSeconds);
/// Mean frequency, weighted with power.
float centroid(const Heard& sound);
/// Share of each pitch class from C on, of what sounds between 100 and 1000 Hz.
std::vector<double> chroma(const Heard& sound);
/// "D minor", "G major": the key whose profile fits best.
std::string keyOf(const std::vector<double>& chroma);
/// Beats a minute within `low` … `high` at which onsets repeat best.
float tempoOf(const Heard& sound, float low, float high);
} // namespace listening
