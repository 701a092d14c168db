#pragma once
#include "platform/files.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// Vocabulary for effects: one channel of samples, built from waves, noise, struck bodies and voices.
/// Seconds, hertz, gains with 1 as full scale.
namespace forge {
struct CurvePoint {
    float seconds, value;
};
/// A course over time: straight between its points, held before the first and after the last.
using Curve = std::vector<CurvePoint>;

/// One way in which a struck body rings.
struct Mode {
    float hertz, gain, decay; ///< decay: seconds until 1/e is left
};
/// Resonances of a throat.
struct Vowel {
    float seconds; ///< when the mouth has this shape; it glides from one to the next
    std::array<float, 3> hertz;
};
struct Voice {
    Curve hertz;    ///< melody of the speech
    Curve loudness; ///< syllables
    std::vector<Vowel> vowels;
    float breath = 0.05f; ///< share of noise in the source
    float rough = 0;      ///< irregular periods, 0..1
};

class Sound {
public:
    static constexpr int kRate = 44100;

    explicit Sound(float seconds);
    /// A wave with the given strengths of its harmonics; those above the band are left out.
    static Sound tone(float seconds, const Curve& hertz, const std::vector<float>& harmonics = {1});
    static Sound hiss(float seconds, uint32_t seed);
    static Sound struck(float seconds, const std::vector<Mode>& modes);
    /// Noise grains of `grainSeconds`, on average `perSecond` of them, of random strength: crackling, gravel.
    static Sound grains(float seconds, float perSecond, float grainSeconds, uint32_t seed);
    static Sound spoken(float seconds, const Voice& voice, uint32_t seed);

    Sound& shape(const Curve& gain);
    /// Rises within `attack` seconds and falls to 1/e in `decay`.
    Sound& strike(float attack, float decay);
    Sound& low(const Curve& hertz, float resonance = 0.7f);
    Sound& high(const Curve& hertz, float resonance = 0.7f);
    Sound& band(const Curve& hertz, float resonance);
    /// Soft saturation; the level stays about the same.
    Sound& drive(float amount);
    /// Adds another sound, which may reach beyond the end.
    Sound& add(float atSeconds, const Sound& other, float gain = 1);
    /// Scales the loudest sample to `value`.
    Sound& peak(float value);
    /// Adds a room that rings for `seconds`; the sound grows by as much.
    Sound& room(float seconds, float share);

    float seconds() const { return static_cast<float>(samples.size()) / kRate; }
    float loudest() const;

    std::vector<float> samples;

private:
    enum class Pass { kLow, kHigh, kBand };
    Sound& filter(Pass pass, const Curve& hertz, float resonance);
};

float at(const Curve& curve, float seconds);

/// WAV, 16-bit PCM, one channel: without offset, faded at both ends, the loudest sample at `peakDecibel`.
platform::Bytes wavFile(Sound sound, float peakDecibel = -3.5f);
} // namespace forge
