#pragma once
#include <cstddef>
#include <vector>

/// The hall and the desk: two channels of samples, what is sent to the hall, and the finished sound.
namespace forge {
constexpr int kMusicRate = 32000;

struct Stereo {
    std::vector<float> left, right;
};

/// Notes are added here; it grows as needed.
struct Mix {
    Stereo dry;
    std::vector<float> hall; ///< what the hall hears

    void reserve(std::size_t samples);
    /// What rings on beyond is dropped; master fades the end.
    void setLength(std::size_t samples);
};

/// Adds the hall: eight crossed delay lines that ring for `seconds`.
Stereo withHall(Mix&& mix, float seconds, float gain);
/// Programme loudness in LUFS: weighted as the ear does, quiet passages left out. -100 for silence.
float loudness(const Stereo& sound);
/// Brings the sound to `lufs` and keeps every sample below `ceiling` with a gain that looks ahead; both ends
/// are faded. Returns by how many decibels the loudest moment was held back.
float master(Stereo& sound, float lufs, float ceiling);
/// The sound so often, each time begun `every` samples after the time before, below what rings on.
Stereo inRounds(Stereo&& once, int rounds, std::size_t every);
} // namespace forge
