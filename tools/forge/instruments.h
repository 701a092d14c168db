#pragma once
#include "forge/mix.h"

#include <cstdint>
#include <string>
#include <vector>

/// Instruments as numbers, and the notes that they add to a mix.
namespace forge {
struct Instrument {
    enum class Kind { kBlown, kPlucked, kBar, kDrum };

    std::string name;
    Kind kind = Kind::kBlown;
    float gain = 1;
    float pan = 0;     ///< -1 left … 1 right
    float hall = 0.3f; ///< share that is sent to the hall

    // Blown and bowed: a wave whose upper harmonics come with strength.
    std::vector<float> harmonics = {1};
    float attack = 0.06f, release = 0.12f; ///< seconds
    float vibratoCents = 0, vibratoHertz = 5.1f;
    float breath = 0; ///< noise around the note
    int players = 1;  ///< slightly out of tune with each other, side by side
    float spread = 0; ///< how far apart they sit, 0..1
    float detuneCents = 0;

    // Plucked: how long a string rings and how bright it is, 0..1.
    float ring = 2, brightness = 0.5f;

    // Bars and bells: partials as factors, with their strengths and decays in seconds.
    struct Partial {
        float factor, gain, decay;
    };
    std::vector<Partial> partials;

    // Drums: a skin that sinks from `hertz` · (1 + drop), and a noise between two frequencies.
    float hertz = 80, drop = 1, skin = 1, skinDecay = 0.2f;
    float noise = 0, noiseDecay = 0.05f, noiseLow = 200, noiseHigh = 4000;
};

struct Note {
    float start, length; ///< seconds
    float pitch;         ///< half tones, 69 is 440 Hz; drums ignore it
    float strength;      ///< 0..1
    uint32_t seed;       ///< what makes two equal notes differ a little
};

/// Adds one note. The instrument must outlive the mix: waves are kept by its address.
class Orchestra {
public:
    void play(const Instrument& instrument, const Note& note, Mix& mix);

private:
    struct Waves {
        const Instrument* instrument;
        int pitch;
        std::vector<float> soft, full; ///< one period, with its first sample once more at the end
    };
    const Waves& waves(const Instrument& instrument, int pitch);

    void blown(const Instrument& instrument, const Note& note, Mix& mix);

    std::vector<Waves> kept_;
};
} // namespace forge
