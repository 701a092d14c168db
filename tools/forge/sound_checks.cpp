#include "forge/sound_checks.h"

#include "audio/audio_mgr.h"
#include "core/name_hash.h"
#include "data/binary_reader.h"

#include <cmath>
#include <cstdlib>
#include <regex>

namespace forge {
namespace {
/// Names that the program itself asks for.
constexpr const char* kAlwaysNeeded[] = {"sounds/hopp.wav", "sounds/landa.wav", "sounds/quorvane.ogg",
                                         "sounds/action.ogg"};
constexpr size_t kHeadBytes = 44;
constexpr float kShortest = 0.1f, kLongest = 4.5f; ///< seconds
constexpr int kLoudest = 23300;                    ///< -3 dBFS and a little
constexpr int kEdge = 200, kOffset = 60;           ///< first and last sample; mean
constexpr double kSilent = 300;                    ///< root mean square

struct Wave {
    uint32_t rate = 0;
    std::vector<int16_t> samples;
};

/// Empty when the file is not 16-bit PCM with one channel.
Wave waveOf(const platform::Bytes& bytes) {
    cBinaryReader in(bytes);
    Wave wave;
    const auto word = [&](const char* text) {
        const std::string_view wanted(text);
        std::string found;
        for (size_t i = 0; i < wanted.size(); ++i) found += static_cast<char>(in.u8());
        return found == wanted;
    };
    if (!word("RIFF") || in.u32() != bytes.size() - 8 || !word("WAVEfmt ") || in.u32() != 16) return {};
    if (in.u16() != 1 || in.u16() != 1) return {};
    wave.rate = in.u32();
    in.skip(6);
    if (in.u16() != 16 || !word("data") || in.u32() != bytes.size() - kHeadBytes || wave.rate == 0) return {};
    for (size_t i = kHeadBytes; i + 1 < bytes.size(); i += 2) wave.samples.push_back(in.i16());
    return in.good() ? wave : Wave{};
}

void effect(Output& out, const std::string& name, const platform::Bytes& bytes) {
    const Wave wave = waveOf(bytes);
    if (wave.samples.empty()) return out.problem(name + " is not 16-bit PCM with one channel");
    const float seconds = static_cast<float>(wave.samples.size()) / static_cast<float>(wave.rate);
    if (seconds < kShortest || seconds > kLongest) out.problem(name + " is too short or too long");
    int most = 0;
    double sum = 0, squares = 0;
    for (int16_t s : wave.samples) {
        most = std::max(most, std::abs(static_cast<int>(s)));
        sum += s;
        squares += static_cast<double>(s) * s;
    }
    const auto count = static_cast<double>(wave.samples.size());
    if (most > kLoudest) out.problem(name + " is louder than 3 decibels below full scale");
    if (std::sqrt(squares / count) < kSilent) out.problem(name + " is all but silent");
    if (std::abs(sum / count) > kOffset) out.problem(name + " does not swing about zero");
    if (std::abs(wave.samples.front()) > kEdge || std::abs(wave.samples.back()) > kEdge)
        out.problem(name + " clicks: it does not start and end at zero");
}

/// What the documents name as sounds of calls, items and weapons; music is looked at with the documents.
void named(Output& out, const std::string& document, const platform::Bytes& bytes) {
    const std::string text(bytes.begin(), bytes.end());
    static const std::regex calls("play_sound\\(([^,;)]+)");
    for (auto i = std::sregex_iterator(text.begin(), text.end(), calls); i != std::sregex_iterator(); ++i) {
        const std::string file = dataName((*i)[1].str() + ".wav");
        if (!out.has(file)) out.problem(document + " plays " + file + ", which nobody makes");
    }
}
} // namespace

void checkSounds(Output& out) {
    for (const char* name : kAlwaysNeeded)
        if (!out.has(name)) out.problem(std::string("the program names ") + name + ", which nobody makes");
    std::map<int32_t, std::string> seen;
    const auto files = out.files(); // problems are added while we look
    for (const auto& [name, bytes] : files) {
        if (name.ends_with(".xml")) named(out, name, bytes);
        if (!name.ends_with(".wav")) continue;
        effect(out, name, bytes);
        const std::string base = name.substr(0, name.size() - 4);
        const auto [at, fresh] = seen.emplace(nameHash(base), base);
        if (!fresh) out.problem("the sounds " + at->second + " and " + base + " are the same to the game");
    }
    if (seen.size() > cAudioMgr::kMostEffects)
        out.problem("there are more effects than a sound device can hold");
}
} // namespace forge
