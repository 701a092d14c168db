#include "forge/score.h"
#include "forge/sound.h"
#include "forge/sound_checks.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace forge;

namespace {
const platform::Bytes kGood = wavFile(Sound::hiss(0.5f, 2));

/// How many there are of a game that has sounds of these names beside those that it needs.
size_t complaints(const std::vector<std::string>& names, const platform::Bytes& bytes) {
    Output out;
    for (const char* needed : {"sounds/hopp.wav", "sounds/landa.wav"}) out.put(needed, kGood);
    for (const char* needed : {"sounds/quorvane.ogg", "sounds/action.ogg"}) out.put(needed, {1});
    for (const std::string& name : names) out.put("sounds/" + name + ".wav", bytes);
    checkSounds(out);
    return out.problems().size();
}
} // namespace

TEST(Score, ReadsPitchLengthTieAndRest) {
    Output out;
    std::vector<std::tuple<float, float, int>> notes;
    for (const auto& note : readLine("a4:1.5 bb3:.5 r:1 c#5 | -:2 f#4:1 b4", 2, 4, "test", out))
        notes.emplace_back(note.start, note.length, note.pitch);
    EXPECT_EQ(notes, (std::vector<std::tuple<float, float, int>>{
                         {0, 1.5f, 69}, {1.5f, 0.5f, 58}, {3, 3, 73}, {6, 1, 66}, {7, 1, 71}}));
    EXPECT_TRUE(out.problems().empty());
}

TEST(Score, NamesTheBarThatIsWrong) {
    for (const char* text :
         {"a4:4 | a4:3", "a4:4", "a4:4 | h4:4", "a4:4 | a:4", "a4:4 | a#:4", "a4:4 | a4:4 | a4:4"}) {
        Output out;
        readLine(text, 2, 4, "test", out);
        EXPECT_EQ(out.problems().size(), 1u) << text;
    }
    for (const char* text : {"Am | Hm", "Am | Ax", "Am | Am/", "Am | Am/Cx", "Am"}) {
        Output out;
        readChords(text, 2, 4, "test", out);
        EXPECT_EQ(out.problems().size(), 1u) << text;
    }
}

TEST(Score, VoicesHoldTheChordAndMoveInSmallSteps) {
    Output out;
    const auto chords = readChords("Dm | Gm C7 | F/A | Bb | Edim A7 | Dm", 6, 4, "test", out);
    ASSERT_TRUE(out.problems().empty());
    EXPECT_EQ(chords[3].bass, 9);
    const auto led = leadVoices(chords, 50);
    ASSERT_EQ(led.size(), chords.size());
    for (size_t i = 0; i < led.size(); ++i) {
        for (int tone : chords[i].tones)
            EXPECT_TRUE(std::any_of(led[i].begin(), led[i].end(), [&](int v) { return v % 12 == tone; }));
        for (size_t voice = 0; i > 0 && voice < 4; ++voice)
            EXPECT_LE(std::abs(led[i][voice] - led[i - 1][voice]), 5) << "chord " << i << ", voice " << voice;
    }
}

TEST(SoundChecks, RefuseWhatTheEarWould) {
    EXPECT_EQ(complaints({"test"}, kGood), 0u);
    platform::Bytes stereo = kGood, cut = kGood, edge = kGood;
    stereo[22] = 2;
    cut.resize(cut.size() / 2);
    edge[45] = 0x20;
    for (const auto& [what, bytes] : {std::pair("full scale", wavFile(Sound::hiss(0.5f, 2), 0)),
                                      {"silence", wavFile(Sound(0.5f))},
                                      {"a click", wavFile(Sound::hiss(0.05f, 2))},
                                      {"stereo", stereo},
                                      {"cut", cut},
                                      {"starts with an edge", edge}})
        EXPECT_EQ(complaints({"test"}, bytes), 1u) << what;
}

TEST(SoundChecks, NamesThatTheGameCannotTellApartAreRefused) {
    EXPECT_EQ(complaints({"abb", "abc"}, kGood), 0u);
    // Places 7 and 8: eight letters up in the one are undone by seven down in the other.
    EXPECT_EQ(complaints({"al", "ie"}, kGood), 1u);
}
