// Sound through OpenAL's wave driver: what was written is measured. Each test is a process of its own, as the
// driver is chosen once.

#include "audio/audio_mgr.h"

#include "audio/music_stream.h"
#include "audio/tones.h"
#include "audio/vorbis_headers.h"
#include "core/config_mgr.h"
#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "platform/clock.h"
#include "support/temp_game.h"

#include <AL/alut.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <ogg/ogg.h>
#include <thread>

namespace {
class Audio : public ::testing::Test {
protected:
    Audio() {
        path = game.dir() + "/out.wav";
        const std::string conf = game.dir() + "/alsoft.conf";
        std::ofstream(conf) << "drivers = wave\n[wave]\nfile = " << path << "\n";
        setenv("ALSOFT_CONF", conf.c_str(), 1);
        setenv("ALSOFT_DRIVERS", "wave", 1);
        game.write("sound.cfg", "MASTER_DISTANCE_MOD 1.0\n");
        platform::writeFile("tone.wav", wav(0.4, 440));
        platform::writeFile("other.wav", wav(0.2, 880));
    }
    ~Audio() override {
        audio.shutdown();
        cConfigMgr::destroy();
    }
    void start() {
        audio.initialise();
        ASSERT_TRUE(audio.isAudible());
        const cAudioMgr::Listener hero{{0, 0, 0}, {0, 0, -1}, {0, 1, 0}};
        audio.setListener(&hero);
    }
    void frames(int count) {
        for (int i = 0; i < count; ++i) {
            audio.update();
            std::this_thread::sleep_for(std::chrono::milliseconds(16));
        }
    }
    void playAt(const cVector3& place) {
        start();
        audio.getSound("tone", true, false);
        audio.playSoundIdAt(nameHash("tone"), place);
        frames(20);
    }
    /// What the driver wrote, left and right; the file is whole after shutdown.
    std::array<std::vector<float>, 2> written() {
        audio.shutdown();
        std::ifstream in(path, std::ios::binary);
        const std::string file((std::istreambuf_iterator<char>(in)), {});
        const size_t data = file.find("data");
        EXPECT_NE(data, std::string::npos);
        std::array<std::vector<float>, 2> sides;
        for (size_t at = data + 8; at + 8 <= file.size(); at += 8)
            for (size_t side = 0; side < 2; ++side) {
                float v = 0;
                std::memcpy(&v, file.data() + at + 4 * side, 4);
                sides[side].push_back(v);
            }
        EXPECT_FALSE(sides[0].empty());
        return sides;
    }
    /// Loudness: root mean square.
    static double loudness(const std::vector<float>& side) {
        double sum = 0;
        for (float v : side) sum += static_cast<double>(v) * static_cast<double>(v);
        return std::sqrt(sum / static_cast<double>(side.size()));
    }
    std::pair<double, double> loudness() {
        const auto sides = written();
        return {loudness(sides[0]), loudness(sides[1])};
    }
    /// Seconds of each silence between the first sound and the last.
    static std::vector<double> silences(const std::vector<float>& side) {
        std::vector<double> found;
        size_t last = side.size();
        for (size_t i = 0; i < side.size(); ++i) {
            if (std::abs(side[i]) < kFaint) continue;
            if (i > last + kRate / 50) found.push_back(static_cast<double>(i - last) / kRate);
            last = i;
        }
        return found;
    }
    static constexpr float kFaint = 0.001f;

    TempGame game;
    std::string path;
    cAudioMgr& audio = cAudioMgr::instance();
};
} // namespace

TEST_F(Audio, LeftIsLeft) {
    playAt({-4, 0, 0});
    const auto [left, right] = loudness();
    EXPECT_GT(left, 0.01);
    EXPECT_GT(left, 4 * right);
}

TEST_F(Audio, FarIsQuiet) {
    playAt({0, 0, -60});
    const auto [left, right] = loudness();
    EXPECT_LT(left, 0.01);
    EXPECT_GT(left, 0.00001);
    EXPECT_NEAR(left, right, 0.3 * left);
}

TEST_F(Audio, OneWaitingSoundStartsAFrame) {
    start();
    for (int i = 0; i < 10; ++i) audio.playSound(i % 2 ? "tone" : "other");
    EXPECT_EQ(audio.pendingCount(), 10u);
    for (size_t left = 10; left-- > 0;) {
        audio.update();
        EXPECT_EQ(audio.pendingCount(), left);
    }
    audio.update();
    audio.getSound("tone", true, false);
    audio.playSoundIdAt(nameHash("tone"), {});
    EXPECT_EQ(audio.pendingCount(), 0u) << "first loaded flat, it has no place";
    audio.playSound("missing");
    EXPECT_EQ(TempGame::errorCount("Failed to load : missing.wav  OpenAL error: " +
                                   std::to_string(ALUT_ERROR_IO_ERROR)),
              1);
    audio.playSound("missing");
    frames(3);
    EXPECT_EQ(TempGame::errors().size(), 1u) << "said once, then silent";
    platform::writeFile("short.wav", {'R', 'I', 'F', 'F'});
    audio.playSound("short");
    EXPECT_EQ(TempGame::errors().size(), 2u);
    audio.getSound("otne", true, false);
    EXPECT_EQ(TempGame::errorCount("The sound otne takes the place of one with its hash"), 1)
        << "scripts know it by that alone";
    for (size_t i = 0; i < 2 * cAudioMgr::kMostPending; ++i) audio.playSound("tone");
    EXPECT_EQ(audio.pendingCount(), cAudioMgr::kMostPending) << "nobody would hear them for minutes";
}

TEST_F(Audio, DamagedEffectsAreSilent) {
    const platform::Bytes good = wav(0.01, 440);
    start();
    int files = 0;
    const auto load = [&](const platform::Bytes& bytes) {
        const std::string name = "w" + std::to_string(files++);
        platform::writeFile(name + ".wav", bytes);
        audio.playSound(name);
    };
    for (long cut = 0; cut < 60; ++cut) load({good.begin(), good.begin() + cut});
    for (size_t at = 0; at < 44; ++at) {
        platform::Bytes flipped = good;
        flipped[at] ^= 0xff;
        load(flipped);
    }
    EXPECT_GE(TempGame::errors().size(), 70u) << "the cut ones, and those whose head says what cannot be";
    audio.playSound("tone");
    while (audio.pendingCount() > 0) audio.update();
    frames(10);
    EXPECT_GT(loudness().first, 0.0001) << "a whole one still sounds";
}

TEST_F(Audio, TheStreamFlowsAndEndsOnce) {
    platform::writeFile("music.ogg", ogg(3));
    start();
    audio.setMusicVolume(0.8f);
    audio.playMusic("music");
    int playing = 0;
    for (; playing < 400 && audio.isStreaming(); ++playing) frames(1);
    EXPECT_GT(playing, 100) << "at least two of its three seconds";
    EXPECT_LT(playing, 300);
    frames(5);
    audio.playMusic("nowhere");
    EXPECT_EQ(TempGame::errors(), (std::vector<std::string>{"Something stopped the audio playback!",
                                                            "Audio System: Error loading nowhere.ogg"}));
    audio.playMusic("music");
    EXPECT_TRUE(audio.isStreaming());
    for (int i = 0; i < 2; ++i) audio.stopMusic();
    const auto sides = written();
    const double left = loudness(sides[0]);
    EXPECT_GT(left, 0.05);
    EXPECT_NEAR(left, loudness(sides[1]), 0.02 * left);
    EXPECT_TRUE(silences(sides[0]).empty()) << "one block follows the other";
}

TEST_F(Audio, AStreamThatIsPlayedAgainWhenItIsOverLeavesNoRow) {
    platform::writeFile("music.ogg", ogg(1.2));
    start();
    audio.playMusic("music");
    // Both buffers hold it: a frame that begins before the first has been played, or ends after the second.
    for (const int busyMs : {0, 900, 1500, 900}) {
        audio.repeatMusic();
        std::this_thread::sleep_for(std::chrono::milliseconds(busyMs));
        frames(1);
        audio.setPaused(true); // as while another window has the focus
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        audio.setPaused(false);
    }
    EXPECT_TRUE(audio.isStreaming());
    EXPECT_TRUE(TempGame::errors().empty()) << TempGame::errors().front();
}

TEST_F(Audio, TheStreamGoesOnAfterAPause) {
    platform::writeFile("music.ogg", ogg(9));
    start();
    audio.playMusic("music");
    frames(30);
    std::this_thread::sleep_for(std::chrono::seconds(3)); // twice as long as both buffers
    frames(120);
    EXPECT_TRUE(audio.isStreaming());
    EXPECT_TRUE(TempGame::errors().empty());
    const std::vector<double> found = silences(written()[0]);
    ASSERT_EQ(found.size(), 1u) << "sound before and after it";
    EXPECT_NEAR(found[0], 1.6, 1);
}

TEST_F(Audio, DamagedMusicIsRefusedOrEnds) {
    const platform::Bytes good = ogg(2);
    start();
    for (size_t cut = 0; cut < good.size(); cut += good.size() / 40) {
        platform::writeFile("cut.ogg", {good.begin(), good.begin() + static_cast<long>(cut)});
        cMusicStream stream;
        if (!stream.open("cut.ogg")) continue;
        std::vector<char> block(1);
        for (int i = 0; i < 50 && !block.empty() && stream.decode(block); ++i)
            EXPECT_LE(block.size(), cMusicStream::kBlockBytes);
    }
    platform::Bytes flipped = good;
    for (size_t i = 100; i < flipped.size(); i += 97) flipped[i] ^= 0x55;
    platform::writeFile("flipped.ogg", flipped);
    audio.playMusic("flipped");
    frames(3);
    platform::writeFile("whole.ogg", good);
    audio.playMusic("whole");
    EXPECT_TRUE(audio.isStreaming()) << "what came before does no harm";
}

TEST_F(Audio, MusicThatAsksForTooMuchIsRefused) {
    const platform::Bytes good = ogg(1);
    const VorbisDemands demands = readVorbisDemands(good);
    EXPECT_EQ(demands.channels, 2);
    EXPECT_GT(demands.tableCells, 10000u) << "all books were read";
    EXPECT_LT(demands.tableCells, 200000u);

    // The first book begins at a whole byte: its dimensions, then its entries.
    platform::Bytes greedy = good;
    const std::string mark = "BCV", pageMark = "OggS";
    const auto book = std::search(greedy.begin(), greedy.end(), mark.begin(), mark.end());
    ASSERT_NE(book, greedy.end());
    const auto page = std::find_end(greedy.begin(), book, pageMark.begin(), pageMark.end());
    book[3] = book[4] = 0xff;
    book[6] = 1;
    const long head = 27 + page[26];
    long body = 0;
    for (long i = 27; i < head; ++i) body += page[i];
    ogg_page mended{&page[0], head, &page[head], body};
    ogg_page_checksum_set(&mended);
    EXPECT_GT(readVorbisDemands(greedy).tableCells, 10000000u);
    start();
    platform::writeFile("greedy.ogg", greedy);
    audio.playMusic("greedy");
    EXPECT_FALSE(audio.isStreaming());
    EXPECT_EQ(TempGame::errorCount("Error loading sound file: greedy.ogg asks for too large tables"), 1);
}

TEST(AudioWithoutDevice, IsSilentAndSaysSoOnce) {
    setenv("ALSOFT_DRIVERS", "nosuchdriver", 1);
    TempGame game;
    game.write("sound.cfg", "MASTER_DISTANCE_MOD 1.0\n");
    static std::vector<cLogMgr::Level> rows;
    cLogMgr::setListener([](cLogMgr::Level level, const std::string&) { rows.push_back(level); });
    cAudioMgr& audio = cAudioMgr::instance();
    audio.initialise();
    EXPECT_FALSE(audio.isAudible());
    for (int i = 0; i < 20; ++i) {
        audio.playSound("sounds/hopp");
        audio.playMusic("sounds\\quorvane");
        audio.update();
    }
    EXPECT_EQ(rows, std::vector{cLogMgr::Level::info});
    EXPECT_EQ(audio.pendingCount(), 0u);
    audio.shutdown();
}
