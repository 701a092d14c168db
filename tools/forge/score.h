#pragma once
#include "forge/instruments.h"
#include "forge/output.h"

#include <map>
#include <string>
#include <vector>

/// Music as data. content/music/README.md shows how a score is written.
namespace forge {
/// One instrument's task in one row of the form.
struct ScorePart {
    std::string instrument;
    /// "line NAME", "chords", "figure STEPS", "bass STEPS" or "beat STEPS"
    std::string task;
    float gain = 1;
    int octave = 0; ///< octaves up or down
};

/// What a section is made of: chords by bar, and lines with pitches and lengths.
struct Section {
    int bars;
    std::string chords;
    std::map<std::string, std::string> lines;
};

/// A section as it is heard: how loud it begins and ends, who plays what.
struct Row {
    std::string section;
    float from, to; ///< loudness, 0..1
    std::vector<ScorePart> parts;
    float slower = 1; ///< tempo factor that its last two bars sink to
};

struct Piece {
    std::string file, title;
    float beatsPerMinute;
    int beatsPerBar;
    std::map<std::string, Section> sections;
    std::vector<Row> form;
    float hallSeconds = 2, hallGain = 0.3f;
    float lufs = -16;
    float quality = 0.15f; ///< of the encoder
    float atLeast = 0;     ///< seconds that one round must last
    int rounds = 1;        ///< each begins where the last bar of the one before ends
};

/// A note of a line, in beats.
struct Written {
    float start, length;
    int pitch; ///< half tones, 69 is 440 Hz
};
struct Chord {
    float start, length;    ///< beats
    std::vector<int> tones; ///< pitch classes from the root up
    int bass;               ///< pitch class
};

/// The words of a text between its bar lines.
std::vector<std::vector<std::string>> barsOf(const std::string& text);
/// Reads a line such as "d4:1 a4:2 -:1 r:.5 | …": pitch, octave, beats; a length stays until another is
/// written, "-" prolongs, "r" rests. Every bar must be full. A mistake is a problem and ends the reading.
std::vector<Written> readLine(const std::string& text, int bars, int beatsPerBar, const std::string& where,
                              Output& out);
/// Reads "Dm | Bb C/E | …": the chords of a bar share it evenly.
std::vector<Chord> readChords(const std::string& text, int bars, int beatsPerBar, const std::string& where,
                              Output& out);
/// Four voices for each chord, lowest first: all tones of the chord, small steps, no parallel fifths and
/// octaves where that can be had.
std::vector<std::vector<int>> leadVoices(const std::vector<Chord>& chords, int low);

/// Plays, mixes, checks and encodes a piece.
void makeMusic(const Piece& piece, const std::vector<Instrument>& orchestra, Output& out);
} // namespace forge
