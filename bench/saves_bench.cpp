// settings.cfl and players.cfl with many entries: finding one, and replacing the whole file by one that
// differs in one entry. Writing waits for the disk.
#include "game/hud.h"
#include "game/inventory.h"
#include "support/temp_game.h"
#include "ui/input_mgr.h"
#include "world/players_file.h"

#include <benchmark/benchmark.h>

namespace {
std::string heroName(int64_t i) {
    return "hero" + std::to_string(i);
}

platform::Bytes record(int64_t i) {
    cHud hud;
    return cCheckpoint{heroName(i), "hut", "testlevel.xml", "calm"}.write(cInventory(hud));
}

void fillPlayers(int64_t count) {
    cBinaryWriter out;
    out.i32(static_cast<int32_t>(count));
    for (int64_t i = 0; i < count; ++i) out.zeroText(heroName(i));
    for (int64_t i = 0; i < count; ++i) {
        const platform::Bytes bytes = record(i);
        out.raw(bytes.data(), bytes.size());
    }
    out.save("players.cfl");
}

std::string settingsName(int64_t i) {
    return "set" + std::to_string(i);
}

/// The input manager beside a file of so many entries.
cInputMgr& inputWithSettings(int64_t count) {
    cBinaryWriter out;
    out.i32(static_cast<int32_t>(count));
    for (int64_t i = 0; i < count; ++i) out.fixedText(settingsName(i), 10);
    for (int64_t i = 0; i < count; ++i) cInputSettings().write(out);
    out.save("settings.cfl");
    cInputMgr::instance().saveOnExit = false;
    return cInputMgr::instance();
}

void heroFind(benchmark::State& state) {
    const TempGame files;
    fillPlayers(state.range(0));
    for (auto _ : state) {
        if (cPlayersFile::read().find(heroName(state.range(0) - 1)) < 0) state.SkipWithError("not found");
    }
}

void heroSave(benchmark::State& state) {
    const TempGame files;
    fillPlayers(state.range(0));
    const int64_t last = state.range(0) - 1;
    for (auto _ : state) {
        cPlayersFile file = cPlayersFile::read();
        file.put(heroName(last), record(last));
        if (!file.write()) state.SkipWithError("not written");
    }
}

void settingsLoad(benchmark::State& state) {
    const TempGame files;
    cInputMgr& input = inputWithSettings(state.range(0));
    const std::string last = settingsName(state.range(0) - 1);
    for (auto _ : state) {
        if (input.loadSettings(last) != 0) state.SkipWithError("not found");
    }
}

void settingsSave(benchmark::State& state) {
    const TempGame files;
    cInputMgr& input = inputWithSettings(state.range(0));
    const std::string last = settingsName(state.range(0) - 1);
    for (auto _ : state) {
        if (!input.saveSettings(last)) state.SkipWithError("not written");
    }
}

BENCHMARK(heroFind)->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(heroSave)->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(settingsLoad)->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(settingsSave)->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
} // namespace
