// Weapons at work, without a window: projectiles in the air, explosions among objects, a fight of scripted
// objects, what the hero carries; and the music's decoder.
#include "audio/audio_mgr.h"
#include "audio/music_stream.h"
#include "bare_game.h"
#include "core/config_mgr.h"
#include "data/binary_reader.h"
#include "game/hud.h"
#include "game/inventory.h"
#include "game/projectile.h"
#include "game/weapons.h"
#include "inputs.h"
#include "support/temp_game.h"
#include "world/object_mgr.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>

namespace {
constexpr int kSamplesASecond = 44100, kFrameBytes = 4; ///< of the made music: two channels of 16 bits
constexpr const char* kItems =
    "<items><item name=\"gun\"><image /><weapon type=\"ballistic\" range=\"40\" damage=\"20\" /></item>"
    "<item name=\"bomb\"><image /><weapon type=\"projectile\"><physics radius=\"0.15\" "
    "duration=\"1000000000\" "
    "max_speed=\"0.3\" /><damage radius=\"1.5\" falloff=\"3\" amount=\"40\" /></weapon></item>"
    "<item name=\"apple\" allow_grouping=\"1\"><image /></item><item name=\"key\"><image /></item></items>";
enum { kGun, kBomb, kApple, kKey };
constexpr const char* kArmed = "<item name=\"g\" src=\"gun\" skill=\"50\" />";

struct Game : BareGame {
    Game()
        : BareGame({{"objects.xml", kItems}, {"inventory.cfg", "WIDTH 320\nSHOW_INFO 10\nSHOW_TIME 10\n"}}) {
        cItemDefs::instance().loadItemDefs();
    }
};

/// On a circle, each facing the one across, `spacing` units from one to the next.
std::string ring(int64_t count, float spacing, const std::string& inside) {
    std::string text;
    const float radius = static_cast<float>(count) * spacing / 6.2831853f;
    for (int64_t i = 0; i < count; ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(count);
        const cVector3 outwards(std::cos(angle), 0, std::sin(angle));
        text += BareGame::object(i, outwards * radius + cVector3(0, 20, 0), outwards * -1, inside + kArmed);
    }
    return text;
}

/// One over each of the first objects of the level, so many units above it.
void launchOver(int64_t count, float height) {
    const cItemDef& bomb = *cItemDefs::instance().at(kBomb);
    for (int64_t i = 0; i < count; ++i) {
        const cObject* object = cObjectMgr::instance().get(static_cast<size_t>(i));
        launchProjectile(bomb, object->getPosition() + cVector3(0, height, 0), {0, 0.0001f, 0});
    }
}

/// All of them in the air among as many objects, none near another.
void projectilesInFlight(benchmark::State& state) {
    Game game;
    game.load(ring(state.range(0), 2, "<action name=\"a\" />"));
    launchOver(state.range(0), 2);
    game.frame();
    for (auto _ : state) game.frame();
    if (cProjectile::inFlight() != state.range(0)) state.SkipWithError("projectiles were lost");
    state.SetComplexityN(state.range(0));
}

/// So many explosions in one frame, among as many objects that react to each near them.
void explosions(benchmark::State& state) {
    Game game;
    for (auto _ : state) {
        state.PauseTiming();
        game.load(ring(
            state.range(0), 1.2f,
            "<action name=\"a\"><reaction type=\"projectile_hit\" do=\"inc_local(n,param)\" /></action>"));
        launchOver(state.range(0), 0);
        cObjectMgr::instance().update(kFrameMs, &game.state); // they join
        state.ResumeTiming();
        game.frame();
        game.frame(); // they are deleted at the end of the next update
        if (cProjectile::inFlight() != 0) state.SkipWithError("not all went off");
    }
    state.SetComplexityN(state.range(0));
}

/// Each shoots straight on in every frame; who is hit counts.
void fight(benchmark::State& state) {
    Game game;
    game.load(ring(
        state.range(0), 4,
        "<action name=\"a\" on_set=\"set_timer(1)\"><reaction type=\"timer\" "
        "do=\"set_timer(1);use_item(g,inverted);use_item(g,inverted)\" /><reaction type=\"ballistic_hit\" "
        "do=\"inc_local(n,param)\" /></action>"));
    if (cObjectMgr::instance().count() != static_cast<size_t>(state.range(0)))
        state.SkipWithError("the level does not hold its objects");
    for (auto _ : state) game.frame();
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
    state.SetComplexityN(state.range(0));
}

/// A saved record of so many entries, the cursor, and the end of one kind of two.
void inventoryRecord(benchmark::State& state) {
    Game game;
    const platform::Bytes record = inputs::inventoryRecord(state.range(0), 2, kApple);
    cHud hud;
    cInventory inventory(hud);
    for (auto _ : state) {
        cBinaryReader in(record);
        if (!inventory.load(in)) state.SkipWithError("the record is not taken");
        for (int i = 0; i < 10; ++i) inventory.moveCursor(0, -1);
        inventory.removeAll(kKey);
        benchmark::DoNotOptimize(inventory.getSelected());
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(projectilesInFlight)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(explosions)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(fight)->Arg(100)->Arg(400)->Arg(1600)->Unit(benchmark::kMicrosecond);
BENCHMARK(inventoryRecord)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)->Complexity();

#ifdef GAME_DATA
/// A device that nobody hears.
struct Music {
    TempGame files{GAME_DATA};

    Music() {
        setenv("ALSOFT_DRIVERS", "null", 1);
        cAudioMgr::instance().initialise();
    }
    ~Music() {
        cAudioMgr::instance().shutdown();
        cConfigMgr::destroy();
    }
};

/// A whole piece of music; "times real time" is what matters.
void musicDecode(benchmark::State& state) {
    const Music device;
    double seconds = 0;
    for (auto _ : state) {
        cMusicStream stream;
        if (!stream.open("sounds\\landfall.ogg")) {
            state.SkipWithError("the music cannot be opened");
            break;
        }
        std::vector<char> block;
        while (stream.decode(block) && !block.empty())
            seconds += static_cast<double>(block.size()) / kFrameBytes / kSamplesASecond;
    }
    state.counters["times_real_time"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
}
/// Reading the file, its demands and its headers: what the frame in which it begins pays.
void musicOpen(benchmark::State& state) {
    const Music device;
    for (auto _ : state) {
        cMusicStream stream;
        if (!stream.open("sounds\\landfall.ogg")) state.SkipWithError("the music cannot be opened");
    }
}
BENCHMARK(musicDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(musicOpen)->Unit(benchmark::kMillisecond);
#endif
} // namespace
