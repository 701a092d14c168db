#include "forge/score.h"
#include "forge/sound.h"
#include "forge/sound_checks.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace forge;

TEST(Score, ReadsPitchLengthTieAndRest) {
    Output out;
    const auto notes = readLine("a4:1.5 bb3:.5 r:1 c#5 | -:2 f#4:1 b4", 2, 4, "test", out);
    ASSERT_TRUE(out.problems().empty()) << out.problems()[0];
    ASSERT_EQ(notes.size(), 5u);
    const float expected[][3] = {{0, 1.5f, 69}, {1.5f, 0.5f, 58}, {3, 3, 73}, {6, 1, 66}, {7, 1, 71}};
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_FLOAT_EQ(notes[i].start, expected[i][0]);
        EXPECT_FLOAT_EQ(notes[i].length, expected[i][1]);
        EXPECT_EQ(notes[i].pitch, static_cast<int>(expected[i][2]));
    }
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
    const auto complaints = [](platform::Bytes bytes) {
        Output out;
        for (const char* needed : {"sounds/hopp.wav", "sounds/landa.wav"})
            out.put(needed, wavFile(Sound::hiss(0.2f, 1)));
        for (const char* needed : {"sounds/quorvane.ogg", "sounds/action.ogg"}) out.put(needed, {1});
        out.put("sounds/test.wav", std::move(bytes));
        checkSounds(out);
        return out.problems().size();
    };
    const platform::Bytes good = wavFile(Sound::hiss(0.5f, 2));
    EXPECT_EQ(complaints(good), 0u);
    EXPECT_EQ(complaints(wavFile(Sound::hiss(0.5f, 2), 0)), 1u) << "full scale";
    EXPECT_EQ(complaints(wavFile(Sound(0.5f))), 1u) << "silence";
    EXPECT_EQ(complaints(wavFile(Sound::hiss(0.05f, 2))), 1u) << "a click";
    platform::Bytes stereo = good, cut = good, edge = good;
    stereo[22] = 2;
    cut.resize(cut.size() / 2);
    edge[45] = 0x20;
    EXPECT_EQ(complaints(stereo), 1u);
    EXPECT_EQ(complaints(cut), 1u);
    EXPECT_EQ(complaints(edge), 1u) << "starts with an edge";
}

TEST(SoundChecks, NamesThatTheGameCannotTellApartAreRefused) {
    Output out;
    for (const char* name : {"sounds/hopp.wav", "sounds/landa.wav", "sounds/abb.wav"})
        out.put(name, wavFile(Sound::hiss(0.2f, 1)));
    for (const char* needed : {"sounds/quorvane.ogg", "sounds/action.ogg"}) out.put(needed, {1});
    checkSounds(out);
    EXPECT_TRUE(out.problems().empty());
    // Places 7 and 8: eight letters up in the one are undone by seven down in the other.
    out.put("sounds/al.wav", wavFile(Sound::hiss(0.2f, 1)));
    out.put("sounds/ie.wav", wavFile(Sound::hiss(0.2f, 1)));
    checkSounds(out);
    EXPECT_EQ(out.problems().size(), 1u);
}
