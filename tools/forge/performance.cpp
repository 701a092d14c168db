#include "forge/noise.h"
#include "forge/ogg.h"
#include "forge/score.h"

#include <algorithm>
#include <cmath>
#include <numbers>

// From what is written to what sounds: who plays when, how loud, and how it is mixed.
namespace forge {
namespace {
constexpr int kChordsFrom = 50; ///< lowest pitch of the chords' voices
constexpr int kFiguresFrom = 48, kBassFrom = 31;
constexpr float kLoose = 0.006f;         ///< seconds by which players miss the beat
constexpr float kCeiling = 0.75f;        ///< -2.5 dBFS: the encoder rounds peaks upwards
constexpr float kSilentSecond = 0.0032f; ///< -50 dBFS
constexpr float kTail = 3;               ///< seconds that the hall rings on

struct Stepped {
    float start, length; ///< beats
    int value;
};

/// Steps of one bar or several, repeated to the end of the section: "." rests, "-" holds, the rest has a
/// value.
std::vector<Stepped> steps(const std::string& text, int bars, int beatsPerBar) {
    const auto patterns = barsOf(text);
    std::vector<Stepped> all;
    for (int bar = 0; bar < bars && !patterns.empty(); ++bar) {
        const auto& pattern = patterns[static_cast<size_t>(bar) % patterns.size()];
        const float step =
            static_cast<float>(beatsPerBar) / static_cast<float>(std::max<size_t>(1, pattern.size()));
        for (size_t i = 0; i < pattern.size(); ++i) {
            const char c = pattern[i][0];
            const float start = static_cast<float>(bar * beatsPerBar) + step * static_cast<float>(i);
            if (c == '-' && !all.empty())
                all.back().length += step;
            else if (c != '.')
                all.push_back({start, step, c});
        }
    }
    return all;
}

class Performance {
public:
    Performance(const Piece& piece, const std::vector<Instrument>& orchestra, Output& out)
        : piece_(piece), orchestra_(orchestra), out_(out) {
        barStarts_.push_back(0);
    }

    Mix play() {
        for (const Row& row : piece_.form) {
            const auto at = piece_.sections.find(row.section);
            if (at == piece_.sections.end()) {
                problem(row, "there is no such section");
                continue;
            }
            section_ = &at->second;
            row_ = &row;
            firstBar_ = barStarts_.size() - 1;
            conduct();
            chords_ = readChords(section_->chords, section_->bars, piece_.beatsPerBar,
                                 piece_.file + ", section " + row.section, out_);
            if (chords_.empty()) continue;
            for (const ScorePart& part : row.parts) play(part);
        }
        mix_.setLength(lastBarEnd() + static_cast<size_t>(kTail * kMusicRate));
        return std::move(mix_);
    }

    /// In samples.
    size_t lastBarEnd() const { return static_cast<size_t>(barStarts_.back() * kMusicRate); }

private:
    void problem(const Row& row, const std::string& what) {
        out_.problem(piece_.file + ", section " + row.section + ": " + what);
    }

    /// Where the bars of this row begin; the last two may sink in tempo.
    void conduct() {
        for (int bar = 0; bar < section_->bars; ++bar) {
            const int left = section_->bars - 1 - bar;
            const float factor = left == 0 ? row_->slower : left == 1 ? (1 + row_->slower) / 2 : 1;
            barStarts_.push_back(barStarts_.back() + 60 * static_cast<float>(piece_.beatsPerBar) /
                                                         (piece_.beatsPerMinute * factor));
        }
    }

    /// Seconds of a beat of this row; beats beyond its end stay at its end.
    float secondsAt(float beat) const {
        const float bars = beat / static_cast<float>(piece_.beatsPerBar);
        const auto bar = std::min(static_cast<size_t>(bars), barStarts_.size() - 2 - firstBar_);
        const float a = barStarts_[firstBar_ + bar], b = barStarts_[firstBar_ + bar + 1];
        return a + (b - a) * std::min(1.0f, bars - static_cast<float>(bar));
    }

    /// The row's course, a swell over every four bars, and the weight of the first beat.
    float loudnessAt(float beat) const {
        const float beats = static_cast<float>(section_->bars * piece_.beatsPerBar);
        const float phrase = std::fmod(beat / static_cast<float>(4 * piece_.beatsPerBar), 1.0f);
        const float within = std::fmod(beat, static_cast<float>(piece_.beatsPerBar));
        const float swell = 0.94f + 0.1f * std::sin(std::numbers::pi_v<float> * phrase);
        return (row_->from + (row_->to - row_->from) * beat / beats) * swell * (within < 0.01f ? 1.06f : 1);
    }

    void note(const Instrument& instrument, const ScorePart& part, float start, float length, int pitch,
              float weight = 1) {
        const uint32_t seed = ++played_;
        const float loose = instrument.kind == Instrument::Kind::kDrum ? 0.3f * kLoose : kLoose;
        const float from = secondsAt(start),
                    jitter = loose * (2 * latticeValue(static_cast<int>(seed), 7, 1) - 1);
        const float strength = loudnessAt(start) * part.gain * weight *
                               (0.95f + 0.1f * latticeValue(static_cast<int>(seed), 8, 1));
        voices_.play(instrument,
                     {std::max(0.0f, from + jitter), secondsAt(start + length) - from,
                      static_cast<float>(pitch + 12 * part.octave), strength, seed},
                     mix_);
    }

    void play(const ScorePart& part) {
        const auto at = std::find_if(orchestra_.begin(), orchestra_.end(),
                                     [&](const Instrument& i) { return i.name == part.instrument; });
        if (at == orchestra_.end()) return problem(*row_, "nobody plays the " + part.instrument);
        const size_t blank = part.task.find(' ');
        const std::string task = part.task.substr(0, blank),
                          rest = blank == std::string::npos ? "" : part.task.substr(blank + 1);
        if (task == "line")
            line(*at, part, rest);
        else if (task == "chords")
            held(*at, part);
        else if (task == "figure")
            figure(*at, part, rest, kFiguresFrom, false);
        else if (task == "bass")
            figure(*at, part, rest, kBassFrom, true);
        else if (task == "beat")
            beat(*at, part, rest);
        else
            problem(*row_, part.task + " is no task");
    }

    void line(const Instrument& instrument, const ScorePart& part, const std::string& name) {
        const auto at = section_->lines.find(name);
        if (at == section_->lines.end()) return problem(*row_, "there is no line " + name);
        const std::string where = piece_.file + ", section " + row_->section + ", " + name;
        for (const Written& w : readLine(at->second, section_->bars, piece_.beatsPerBar, where, out_))
            note(instrument, part, w.start, w.length, w.pitch);
    }

    /// Voices that keep their pitch are held over.
    void held(const Instrument& instrument, const ScorePart& part) {
        const auto led = leadVoices(chords_, kChordsFrom);
        for (size_t voice = 0; voice < 4; ++voice)
            for (size_t i = 0; i < chords_.size();) {
                float length = chords_[i].length;
                size_t next = i + 1;
                while (next < chords_.size() && led[next][voice] == led[i][voice])
                    length += chords_[next++].length;
                note(instrument, part, chords_[i].start, length, led[i][voice]);
                i = next;
            }
    }

    const Chord& chordAt(float beat) const {
        size_t i = 0;
        while (i + 1 < chords_.size() && chords_[i + 1].start <= beat + 0.01f) ++i;
        return chords_[i];
    }

    /// Digits count the tones of the chord upwards, from its root or, in the bass, from its bass note.
    void figure(const Instrument& instrument, const ScorePart& part, const std::string& text, int low,
                bool fromBass) {
        for (const Stepped& s : steps(text, section_->bars, piece_.beatsPerBar)) {
            if (s.value < '0' || s.value > '9') return problem(*row_, "figures are made of digits, . and -");
            const Chord& chord = chordAt(s.start);
            const int start = fromBass ? chord.bass : chord.tones[0];
            const int lowest = low + (start - low % 12 + 12) % 12;
            std::vector<int> heights = {0};
            for (int tone : chord.tones)
                if (tone != start) heights.push_back((tone - start + 12) % 12);
            std::sort(heights.begin(), heights.end());
            const auto which = static_cast<size_t>(s.value - '0');
            const int octaves = static_cast<int>(which / heights.size());
            note(instrument, part, s.start, s.length,
                 lowest + heights[which % heights.size()] + 12 * octaves);
        }
    }

    void beat(const Instrument& instrument, const ScorePart& part, const std::string& text) {
        for (const Stepped& s : steps(text, section_->bars, piece_.beatsPerBar)) {
            if (s.value != 'X' && s.value != 'x' && s.value != 'o')
                return problem(*row_, "beats are made of X, x, o and .");
            note(instrument, part, s.start, s.length, 60, s.value == 'X' ? 1 : s.value == 'x' ? 0.7f : 0.4f);
        }
    }

    const Piece& piece_;
    const std::vector<Instrument>& orchestra_;
    Output& out_;
    Orchestra voices_;
    Mix mix_;
    std::vector<float> barStarts_; ///< seconds, and the end
    const Section* section_ = nullptr;
    const Row* row_ = nullptr;
    size_t firstBar_ = 0;
    std::vector<Chord> chords_;
    uint32_t played_ = 0;
};

/// What can be said of the sound before it is encoded.
void listen(const Piece& piece, const Stereo& sound, float heldBack, Output& out) {
    const float seconds = static_cast<float>(sound.left.size()) / kMusicRate;
    if (seconds < piece.atLeast)
        out.problem(piece.file + " lasts " + std::to_string(seconds) + " s, which is too short");
    if (heldBack > 9)
        out.problem(piece.file + ": its peaks are held back by " + std::to_string(heldBack) + " decibels");
    const size_t window = kMusicRate * 3 / 2;
    for (size_t from = 0; from + window + static_cast<size_t>(kTail * kMusicRate) < sound.left.size();
         from += window / 2) {
        double power = 0;
        for (size_t i = from; i < from + window; ++i)
            power += sound.left[i] * sound.left[i] + sound.right[i] * sound.right[i];
        if (std::sqrt(power / static_cast<double>(2 * window)) < kSilentSecond)
            return out.problem(piece.file + " is silent at " + std::to_string(from / kMusicRate) + " s");
    }
}
} // namespace

void makeMusic(const Piece& piece, const std::vector<Instrument>& orchestra, Output& out) {
    Performance performance(piece, orchestra, out);
    Stereo sound = withHall(performance.play(), piece.hallSeconds, piece.hallGain);
    const float heldBack = master(sound, piece.lufs, kCeiling);
    listen(piece, sound, heldBack, out);
    sound = inRounds(std::move(sound), piece.rounds, performance.lastBarEnd());
    platform::Bytes file = oggFile(sound, piece.title, piece.quality);
    if (file.empty()) out.problem(piece.file + ": the encoder refuses");
    out.put(piece.file, std::move(file));
}
} // namespace forge
