#include "forge/listening.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>

using namespace listening;

namespace {
const std::string kSounds = std::string(GAME_DATA) + "/sounds/";

float decibel(float value) {
    return 20 * std::log10(std::max(value, 1e-6f));
}

struct PieceRow {
    const char* name;
    float atLeast; ///< seconds
    const char* key;
    float tempo; ///< beats a minute, as written
};
constexpr PieceRow kPieces[] = {{"quorvane", 160, "D minor", 84},
                                {"landfall", 420, "G major", 108},
                                {"deepwood", 420, "A minor", 66},
                                {"summit", 410, "E minor", 112},
                                {"action", 230, "C minor", 144}};

class Music : public testing::TestWithParam<PieceRow> {};
} // namespace

TEST_P(Music, SoundsAsItIsWritten) {
    const PieceRow& row = GetParam();
    const Heard sound = decodeOgg(kSounds + row.name + ".ogg");
    ASSERT_EQ(sound.channels, 2);
    EXPECT_GE(sound.seconds(), row.atLeast);
    EXPECT_LT(sound.seconds(), row.atLeast + 40);
    EXPECT_EQ(keyOf(chroma(sound)), row.key);
    EXPECT_NEAR(tempoOf(sound, 0.75f * row.tempo, 1.3f * row.tempo), row.tempo, 0.01f * row.tempo);
}

TEST_P(Music, IsMixedWithoutClippingAndHoles) {
    const Heard sound = decodeOgg(kSounds + GetParam().name + ".ogg");
    ASSERT_FALSE(sound.left.empty());
    const float peak = std::max(truePeak(sound.left), truePeak(sound.right));
    EXPECT_LT(decibel(peak), -1);
    EXPECT_LT(std::max(std::abs(sound.left.back()), std::abs(sound.right.front())), 0.01f);
    auto windows = levels(sound, 1.5f);
    double power = 0, left = 0, right = 0, side = 0;
    for (float level : windows) power += std::pow(10, level / 10) / static_cast<double>(windows.size());
    const auto overall = static_cast<float>(10 * std::log10(power));
    windows.resize(windows.size() - 3); // the end rings out
    EXPECT_GT(*std::min_element(windows.begin(), windows.end()), overall - 20);
    EXPECT_LT(*std::max_element(windows.begin(), windows.end()), overall + 8);
    EXPECT_NEAR(overall, -18, 3.5f);
    EXPECT_GT(decibel(peak) - overall, 8) << "crest: no wall of sound";
    for (size_t i = 0; i < sound.left.size(); ++i) {
        left += sound.left[i] * sound.left[i];
        right += sound.right[i] * sound.right[i];
        side += std::pow(sound.left[i] - sound.right[i], 2) / 2;
    }
    EXPECT_NEAR(10 * std::log10(left / right), 0, 2.5) << "leans to one side";
    EXPECT_GT(side / (left + right), 0.02) << "has no width";
    EXPECT_LT(side / (left + right), 0.5) << "falls apart in one channel";
    const float middle = centroid(sound);
    EXPECT_TRUE(middle > 150 && middle < 1500) << middle;
}

INSTANTIATE_TEST_SUITE_P(Pieces, Music, testing::ValuesIn(kPieces),
                         [](const auto& row) { return std::string(row.param.name); });

namespace {
struct ThemeRow {
    const char *name, *level;
};
constexpr ThemeRow kThemes[] = {{"landfall", "testlevel"}, {"deepwood", "deepwood"}, {"summit", "summit"}};
constexpr float kRing = 3; ///< seconds after the last bar

class Theme : public testing::TestWithParam<ThemeRow> {
protected:
    Theme() : sound(decodeOgg(kSounds + GetParam().name + ".ogg")) {
        round = (sound.left.size() - static_cast<size_t>(kRing * sound.rate)) / 3;
        roundSeconds = static_cast<float>(round) / sound.rate;
    }
    /// The greatest step between two samples within 2 ms of `at`.
    float step(size_t at) const {
        float most = 0;
        const auto near = static_cast<size_t>(0.002f * sound.rate);
        for (size_t i = at - std::min(at, near) + 1; i < std::min(at + near, sound.left.size()); ++i)
            most = std::max({most, std::abs(sound.left[i] - sound.left[i - 1]),
                             std::abs(sound.right[i] - sound.right[i - 1])});
        return most;
    }

    Heard sound;
    size_t round; ///< samples
    float roundSeconds;
};

/// Seconds after which the level's lantern plays the theme again; 0 when it does not.
float playedAgainAfter(const ThemeRow& row) {
    std::ifstream in(std::string(GAME_DATA) + "/" + row.level + ".xml");
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    std::smatch found;
    const std::regex lantern(std::string("default_action=\"play\" file=\"sounds.") + row.name +
                             "\"[\\s\\S]*?name=\"play\" on_set=\"set_(timer|local)\\((left,)?([0-9]+)\\)");
    if (!std::regex_search(text, found, lantern)) return 0;
    const float number = std::stof(found[3]);
    // A second that is counted ends with the frame that completes it.
    return found[1] == "timer" ? number / 1000 : (number + 1) * 1.008f;
}
} // namespace

TEST_P(Theme, IsThreeRoundsOfTheSame) {
    ASSERT_EQ(sound.channels, 2);
    for (const size_t later : {round, 2 * round}) {
        double both = 0, first = 0, second = 0;
        for (size_t i = round / 4; i < round; ++i) {
            const double a = sound.left[i], b = sound.left[i + later];
            both += a * b;
            first += a * a;
            second += b * b;
        }
        EXPECT_GT(both / std::sqrt(first * second), 0.95) << "from sample " << later << " on";
    }
}

TEST_P(Theme, RoundsJoinWithoutAClick) {
    const float apart = step(0) + step(3 * round); // the beginning, and what rings on below it
    for (const size_t joint : {round, 2 * round}) EXPECT_LT(step(joint), apart + 0.005f);
}

TEST_P(Theme, IsPlayedAgainAfterTwoRoundsWithAThirdInReserve) {
    const float again = playedAgainAfter(GetParam());
    EXPECT_NEAR(again, 2 * roundSeconds, 1) << "heard as a joint";
    EXPECT_GT(sound.seconds() - again, 135) << "conversations and pauses take time of the music only";
}

INSTANTIATE_TEST_SUITE_P(Levels, Theme, testing::ValuesIn(kThemes),
                         [](const auto& row) { return std::string(row.param.name); });

// When a blow is loudest, and how bright it is: a body thuds, metal rings, a wave swells.
TEST(Effects, SoundLikeWhatTheyAre) {
    struct Row {
        const char* name;
        float loudestFrom, loudestTo; ///< seconds
        float dullest, brightest;     ///< Hz
        float longest;                ///< seconds until it has fallen by 40 dB
    };
    constexpr Row kRows[] = {
        {"hopp", 0, 0.1f, 150, 900, 0.4f},         {"landa", 0, 0.1f, 80, 700, 0.5f},
        {"pistol", 0.02f, 0.12f, 300, 3000, 1.3f}, {"explosion", 0, 0.25f, 100, 1500, 3},
        {"hitbody", 0, 0.06f, 100, 500, 0.3f},     {"hitwood", 0, 0.06f, 200, 700, 0.3f},
        {"hitmetal", 0, 0.06f, 1000, 3500, 0.9f},  {"hitstone", 0, 0.06f, 1500, 5000, 0.4f},
        {"bell", 0, 0.2f, 400, 1000, 3},           {"swing", 0.08f, 0.22f, 1000, 3500, 0.4f},
        {"pickup", 0, 0.2f, 1000, 2000, 0.9f},     {"surf", 0.9f, 1.6f, 800, 4000, 3},
        {"wind", 0.8f, 2, 400, 1500, 3},           {"thunder", 0, 1.5f, 80, 500, 3},
        {"greetlow", 0, 0.5f, 200, 1500, 0.7f},    {"hurt", 0, 0.2f, 300, 2500, 0.4f},
        {"gull", 0, 0.8f, 1000, 3000, 2.5f},       {"grunt", 0.05f, 0.6f, 150, 1500, 1},
    };
    for (const Row& row : kRows) {
        const Heard sound = readWav(kSounds + row.name + ".wav");
        ASSERT_EQ(sound.channels, 1) << row.name;
        const auto course = levels(sound, 0.02f);
        const auto top = std::max_element(course.begin(), course.end());
        const float when = 0.02f * static_cast<float>(top - course.begin());
        EXPECT_TRUE(when >= row.loudestFrom && when <= row.loudestTo)
            << row.name << " is loudest at " << when;
        const float middle = centroid(sound);
        EXPECT_TRUE(middle >= row.dullest && middle <= row.brightest) << row.name << " lies at " << middle;
        auto last = course.size();
        while (last > 0 && course[last - 1] < *top - 40) --last;
        EXPECT_LE(0.02f * static_cast<float>(last), row.longest) << row.name;
    }
}

TEST(Effects, AreReadyToBePlacedAndDoNotClip) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSounds)) {
        if (entry.path().extension() != ".wav") continue;
        ++count;
        const Heard sound = readWav(entry.path().string());
        EXPECT_EQ(sound.channels, 1) << entry.path();
        ASSERT_FALSE(sound.left.empty()) << entry.path();
        EXPECT_LT(decibel(truePeak(sound.left)), -0.5f) << entry.path();
    }
    EXPECT_GE(count, 40);
}
