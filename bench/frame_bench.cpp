// The levels: loading them, and their frames without the frame cap. What the frame costs without rasterising
// and without any drawing tells the driver's share apart. Needs a display.
#include "core/application.h"
#include "data/binary_reader.h"
#include "game/physics_world.h"
#include "inputs.h"
#include "platform/clock.h"
#include "platform/gl_api.h"
#include "platform/random.h"
#include "render/particles.h"
#include "render/renderer.h"
#include "support/temp_game.h"
#include "ui/input_mgr.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {
struct Level {
    const char *file, *spawn;
};
constexpr Level kLevels[] = {{"testlevel.xml", "pier"}, {"deepwood.xml", "shore"}, {"summit.xml", "landing"}};
constexpr int kCharacters = 50, kPerRow = 10;

RunOptions firstLevel() {
    RunOptions options;
    options.level = kLevels[0].file;
    options.spawn = kLevels[0].spawn;
    return options;
}

/// The running game, on the made data.
struct Game {
    TempGame files{GAME_DATA};
    cApplication app{firstLevel()};
    bool started = false;

    Game() {
        platform::useFixedStep(16); // virtual time: nobody sleeps
        platform::lockRandomSeed(1);
        started = app.start() && cRenderer::instance().hasScreen();
        frames(10);
    }
    ~Game() { app.shutdown(); }
    void frames(int count) {
        for (int i = 0; i < count; ++i) app.gameFrame();
    }
};

Game& game() {
    static Game running;
    return running;
}

/// What of the frame is drawn.
enum Drawing : int64_t { kEverything, kNotRasterised, kNothing };

void draw(Drawing drawing) {
    platform::setGlContext(drawing != kNothing);
    cRenderer::instance().setFast(drawing == kNotRasterised);
    if (drawing == kEverything) glDisable(GL_RASTERIZER_DISCARD);
}

constexpr const char* kLabels[] = {"everything", "not rasterised", "nothing drawn"};

void measureFrames(benchmark::State& state) {
    draw(static_cast<Drawing>(state.range(0)));
    state.SetLabel(kLabels[state.range(0)]);
    for (auto _ : state) game().frames(1);
    draw(kEverything);
}

bool load(const Level& level) {
    cWorld& world = cWorld::instance();
    world.spawnPoint = level.spawn;
    return world.loadLevel(level.file) >= 0;
}

/// With textures and pictures in their caches, everything else read anew.
void levelLoad(benchmark::State& state) {
    const Level& level = kLevels[state.range(0)];
    state.SetLabel(level.file);
    for (auto _ : state) {
        cWorld& world = cWorld::instance();
        cObjectMgr::instance().clear();
        cPhysicsWorld::destroy();
        world.appearanceFile.clear();
        world.environmentFile.clear();
        if (!load(level)) state.SkipWithError("the level does not load");
    }
}

void levelFrame(benchmark::State& state) {
    const Level& level = kLevels[state.range(1)];
    if (!load(level)) state.SkipWithError("the level does not load");
    game().frames(10);
    measureFrames(state);
    state.SetLabel(std::string(level.file) + ", " + kLabels[state.range(0)]);
}

/// Fifty guards that walk on the spot before the hero, each with its shadow volume.
void shadowedCharacters(benchmark::State& state) {
    cWorld& world = cWorld::instance();
    if (!load(kLevels[0])) state.SkipWithError("the level does not load");
    const cVector3 hero = cObjectMgr::instance().hero()->getPosition();
    for (int i = 0; i < kCharacters; ++i) {
        auto guard = std::make_unique<cAnimatedObject>(
            world.animatedModels.load("chars\\guard", "guard", false, true), &world.animatedModels);
        guard->setController(std::make_unique<cSceneryController>(guard.get()));
        guard->setPosition(hero + cVector3(static_cast<float>(i % kPerRow) * 0.8f - 3.6f, 0,
                                           -4 - 1.5f * static_cast<float>(i / kPerRow)));
        guard->pose().setAnimation("BOTH_WALK", "BOTH_WALK");
        guard->pose().setLooping(true);
        guard->pose().setPlaying(true);
        cObjectMgr::instance().add(std::move(guard));
    }
    const bool before = cObjectMgr::instance().shadowsEnabled;
    cObjectMgr::instance().shadowsEnabled = true;
    game().frames(3);
    int near = 0;
    for (size_t i = cObjectMgr::instance().count() - kCharacters; i < cObjectMgr::instance().count(); ++i)
        near += cObjectMgr::instance().get(i)->isDrawnNear();
    if (near != kCharacters) state.SkipWithError("not all characters are in view");
    measureFrames(state);
    cObjectMgr::instance().shadowsEnabled = before;
    load(kLevels[0]);
}

void tap(SDLKey key) {
    for (const Uint8 type : {SDL_KEYDOWN, SDL_KEYUP}) {
        SDL_Event event{};
        event.type = type;
        event.key.keysym.sym = key;
        SDL_PushEvent(&event);
        game().frames(2);
    }
}

/// The menu over the level: its main page, or a list of as many saved heroes as it offers.
void menuFrame(benchmark::State& state) {
    const bool list = state.range(1) != 0;
    cWorld& world = cWorld::instance();
    const std::string hero = world.heroName;
    for (size_t i = 0; list && i < cMenu::kMostItems; ++i) {
        world.heroName = "hero" + std::to_string(i);
        world.saveGame();
    }
    world.heroName = hero;
    cInputMgr& input = cInputMgr::instance();
    input.openMenu();
    game().app.setState(STATE_MENU);
    game().frames(40); // the panel has slid in
    if (list) {
        for (const SDLKey key : {SDLK_DOWN, SDLK_DOWN, SDLK_RETURN}) tap(key);
        if (input.menu.listNames().size() != cMenu::kMostItems) state.SkipWithError("no full list");
    }
    measureFrames(state);
    state.SetLabel(std::string(list ? "full list, " : "main page, ") + kLabels[state.range(0)]);
    game().app.setState(STATE_GAME);
}

void consoleFrame(benchmark::State& state) {
    cConsole& console = cInputMgr::instance().console;
    console.lines.assign(static_cast<size_t>(state.range(0)), std::string(80, 'x'));
    console.scrollOffset = state.range(1) != 0 ? (static_cast<int32_t>(state.range(0)) - 16) * 12 : 0;
    console.visible = true;
    draw(kNotRasterised);
    for (auto _ : state) game().frames(1);
    draw(kEverything);
    console.visible = false;
    console.lines.clear();
}

/// So many bursts and smokes at once before the hero, in their first updates; the game itself has one pair.
void explosionParticles(benchmark::State& state) {
    const cVector3 hero = cObjectMgr::instance().hero()->getPosition();
    std::vector<std::unique_ptr<cParticleSystem>> systems;
    const auto fill = [&] {
        systems.clear();
        for (int64_t i = 0; i < state.range(0); ++i) {
            const cVector3 place =
                hero + cVector3(static_cast<float>(i % 10) - 4.5f, 1, -8 - static_cast<float>(i / 10));
            systems.push_back(std::make_unique<cSmoke>(place));
            systems.push_back(std::make_unique<cExplosion>(place));
        }
    };
    cRenderer::instance().setFast(true); // our own share: the rasteriser's grows with the picture
    for (auto _ : state) {
        if (systems.empty() || systems.front()->count() < 30 || systems.back()->count() < 50) {
            state.PauseTiming();
            fill();
            state.ResumeTiming();
        }
        for (const auto& system : systems) {
            system->update(0.15f);
            system->draw();
        }
    }
    state.SetComplexityN(state.range(0));
}

/// The screen with so many entries, of which the panel shows a few rows.
void inventoryScreen(benchmark::State& state) {
    cInventory& inventory = cWorld::instance().inventory;
    cBinaryReader in(inputs::inventoryRecord(state.range(0), 14));
    if (!inventory.load(in)) state.SkipWithError("the record is not taken");
    inventory.step(-1); // the last entry: every row before it is passed over
    cRenderer& renderer = cRenderer::instance();
    renderer.setFast(true);
    renderer.setProjection(true);
    for (auto _ : state) inventory.draw(480, 0);
    renderer.setProjection(false);
    inventory.clear();
    state.SetComplexityN(state.range(0));
}

BENCHMARK(menuFrame)
    ->ArgsProduct({{kEverything, kNotRasterised, kNothing}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(consoleFrame)
    ->ArgNames({"lines", "scrolled"})
    ->ArgsProduct({{100, 10000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(levelLoad)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(levelFrame)
    ->ArgsProduct({{kEverything, kNotRasterised, kNothing}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(explosionParticles)->Arg(1)->Arg(50)->Unit(benchmark::kMicrosecond);
BENCHMARK(inventoryScreen)->Arg(14)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(shadowedCharacters)
    ->DenseRange(kEverything, kNothing)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (!game().started) {
        std::fputs("No window with OpenGL could be opened: DISPLAY must name a running X server.\n", stderr);
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
