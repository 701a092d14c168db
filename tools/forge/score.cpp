#include "forge/score.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace forge {
namespace {
constexpr float kFull = 0.01f; ///< beats by which a bar may miss its length

/// Half tones above C, or -1; moves `at` behind the letter and its sign.
int pitchClass(const std::string& word, size_t& at) {
    static const std::string kLetters = "c d ef g a b";
    if (at >= word.size()) return -1;
    const size_t found = kLetters.find(static_cast<char>(word[at] | 0x20));
    if (word[at] == ' ' || found == std::string::npos) return -1;
    auto pitch = static_cast<int>(found);
    ++at;
    if (at < word.size() && word[at] == '#') {
        ++pitch;
        ++at;
    } else if (at < word.size() && word[at] == 'b') {
        --pitch;
        ++at;
    }
    return (pitch + 12) % 12;
}

struct Quality {
    const char* name;
    std::vector<int> tones;
};
const std::vector<Quality>& qualities() {
    static const std::vector<Quality> kAll = {
        {"", {0, 4, 7}},      {"m", {0, 3, 7}},      {"dim", {0, 3, 6}},
        {"7", {0, 4, 7, 10}}, {"m7", {0, 3, 7, 10}}, {"maj7", {0, 4, 7, 11}},
        {"sus4", {0, 5, 7}},  {"sus2", {0, 2, 7}},   {"6", {0, 4, 7, 9}},
    };
    return kAll;
}

bool readChord(const std::string& word, Chord& chord) {
    size_t at = 0;
    const int root = pitchClass(word, at);
    const size_t slash = word.find('/');
    const std::string name = word.substr(at, slash == std::string::npos ? slash : slash - at);
    const auto quality = std::find_if(qualities().begin(), qualities().end(),
                                      [&](const Quality& q) { return name == q.name; });
    if (root < 0 || quality == qualities().end()) return false;
    for (int tone : quality->tones) chord.tones.push_back((root + tone) % 12);
    chord.bass = root;
    if (slash == std::string::npos) return true;
    size_t below = slash + 1;
    chord.bass = pitchClass(word, below);
    return chord.bass >= 0 && below == word.size();
}

/// How far the voices move, and what a teacher would mark red.
int price(const std::vector<int>& from, const std::vector<int>& to) {
    int sum = 0;
    for (size_t i = 0; i < to.size(); ++i) {
        sum += std::abs(to[i] - from[i]);
        for (size_t k = i + 1; k < to.size(); ++k) {
            const int before = (from[k] - from[i]) % 12, now = (to[k] - to[i]) % 12;
            if (before == now && (now == 0 || now == 7) && to[i] != from[i]) sum += 12;
        }
    }
    return sum;
}

bool holdsAll(const std::vector<int>& voices, const Chord& chord) {
    return std::all_of(chord.tones.begin(), chord.tones.end(), [&](int tone) {
        return std::any_of(voices.begin(), voices.end(), [&](int v) { return v % 12 == tone; });
    });
}

/// All close positions of four voices within two octaves from `low`.
std::vector<std::vector<int>> positions(const Chord& chord, int low) {
    std::vector<int> pitches;
    for (int p = low; p <= low + 21; ++p)
        if (std::find(chord.tones.begin(), chord.tones.end(), p % 12) != chord.tones.end())
            pitches.push_back(p);
    std::vector<std::vector<int>> all;
    const size_t n = pitches.size();
    for (size_t a = 0; a < n; ++a)
        for (size_t b = a + 1; b < n; ++b)
            for (size_t c = b + 1; c < n; ++c)
                for (size_t d = c + 1; d < n; ++d) {
                    std::vector<int> voices = {pitches[a], pitches[b], pitches[c], pitches[d]};
                    if (holdsAll(voices, chord) && pitches[d] - pitches[a] <= 16)
                        all.push_back(std::move(voices));
                }
    return all;
}
} // namespace

std::vector<std::vector<std::string>> barsOf(const std::string& text) {
    std::vector<std::vector<std::string>> bars;
    std::istringstream lines(text);
    for (std::string bar; std::getline(lines, bar, '|');) {
        std::istringstream words(bar);
        bars.emplace_back();
        for (std::string word; words >> word;) bars.back().push_back(word);
    }
    return bars;
}

std::vector<Written> readLine(const std::string& text, int bars, int beatsPerBar, const std::string& where,
                              Output& out) {
    std::vector<Written> notes;
    const auto written = barsOf(text);
    if (written.size() != static_cast<size_t>(bars)) {
        out.problem(where + " has " + std::to_string(written.size()) + " bars instead of " +
                    std::to_string(bars));
        return notes;
    }
    float now = 0, length = 1;
    for (size_t bar = 0; bar < written.size(); ++bar) {
        for (const std::string& word : written[bar]) {
            const size_t colon = word.find(':');
            if (colon != std::string::npos) length = std::strtof(word.c_str() + colon + 1, nullptr);
            const std::string name = word.substr(0, colon);
            if (name == "-" && !notes.empty()) {
                notes.back().length += length;
            } else if (name != "r") {
                size_t at = 0;
                const int pitch = pitchClass(name, at);
                if (pitch < 0 || at + 1 != name.size() || name[at] < '0' || name[at] > '8') {
                    out.problem(where + ", bar " + std::to_string(bar + 1) + ": " + word + " is no note");
                    return notes;
                }
                notes.push_back({now, length, pitch + 12 * (name[at] - '0' + 1)});
            }
            now += length;
        }
        if (std::abs(now - static_cast<float>(bar + 1) * static_cast<float>(beatsPerBar)) > kFull) {
            out.problem(where + ", bar " + std::to_string(bar + 1) + " is not full");
            return notes;
        }
    }
    return notes;
}

std::vector<Chord> readChords(const std::string& text, int bars, int beatsPerBar, const std::string& where,
                              Output& out) {
    std::vector<Chord> chords;
    const auto written = barsOf(text);
    if (written.size() != static_cast<size_t>(bars))
        out.problem(where + " has chords for " + std::to_string(written.size()) + " bars instead of " +
                    std::to_string(bars));
    for (size_t bar = 0; bar < written.size(); ++bar) {
        const float share =
            static_cast<float>(beatsPerBar) / static_cast<float>(std::max<size_t>(1, written[bar].size()));
        for (size_t i = 0; i < written[bar].size(); ++i) {
            const float start =
                static_cast<float>(bar) * static_cast<float>(beatsPerBar) + share * static_cast<float>(i);
            Chord chord{start, share, {}, 0};
            if (!readChord(written[bar][i], chord)) {
                out.problem(where + ", bar " + std::to_string(bar + 1) + ": " + written[bar][i] +
                            " is no chord");
                return chords;
            }
            chords.push_back(std::move(chord));
        }
    }
    if (chords.empty()) out.problem(where + " has no chords");
    return chords;
}

std::vector<std::vector<int>> leadVoices(const std::vector<Chord>& chords, int low) {
    std::vector<std::vector<int>> led;
    for (const Chord& chord : chords) {
        const auto all = positions(chord, low);
        if (all.empty()) {
            led.push_back(led.empty() ? std::vector<int>(4, low) : led.back());
            continue;
        }
        const std::vector<int> middle = {low + 4, low + 8, low + 12, low + 16};
        const std::vector<int>& from = led.empty() ? middle : led.back();
        // A light pull to the middle keeps the voices from wandering off.
        const auto cost = [&](const std::vector<int>& v) { return 4 * price(from, v) + price(middle, v); };
        led.push_back(*std::min_element(all.begin(), all.end(),
                                        [&](const auto& a, const auto& b) { return cost(a) < cost(b); }));
    }
    return led;
}
} // namespace forge
