// Level documents at work, without a window: frames of scripted objects, compiled calls, events, pages of
// conversations.
#include "bare_game.h"
#include "render/renderer.h"
#include "script/cml_object.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "script/frame_budget.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <string>

namespace {
constexpr int kCallsPerList = 12;
constexpr int kEvents = 1000;
constexpr float kSpacing = 4; ///< from one object to the next, units

struct Game : BareGame {
    Game() : BareGame({{"messages.cfg", "X_POSITION 100\nY_POSITION 100000\nHEIGHT 100000\n"}}) {}

    /// So many objects on a grid, their attributes' and elements' text made by `inside`.
    template <typename Inside> void load(int64_t count, const Inside& inside, bool bodies = true) {
        std::string text;
        const auto side = static_cast<int64_t>(std::ceil(std::sqrt(static_cast<double>(count))));
        const float half = static_cast<float>(side) / 2;
        const auto place = [&](int64_t n) { return (static_cast<float>(n) - half) * kSpacing; };
        for (int64_t i = 0; i < count; ++i)
            text += object(i, {place(i % side), 20, place(i / side)}, {1, 0, 0}, inside(i), bodies);
        BareGame::load(text);
    }
};

/// Wanders about its place: steers, turns by a timer, turns back at a distance.
std::string wanderer(int64_t i) {
    return "<action name=\"a\" on_set=\"set_speed(60);set_acceleration(" + std::to_string(i % 7 - 3) + ",0," +
           std::to_string(i % 5 - 2) + ");set_timer(" + std::to_string(40 + i % 200) +
           ")\"><reaction type=\"timer\" do=\"turn(40);inc_local(n,1);set_timer(200)\" />"
           "<reaction type=\"distance_exceeds\" point=\"origin\" distance=\"1\" do=\"set_direction(origin)\" "
           "/>"
           "<reaction type=\"distance_falls_below\" point=\"origin\" distance=\"0.2\" do=\"inc_local(m,1)\">"
           "<requirement test=\"local_more_than(m,1000)\" do=\"set_local(m,0)\" /></reaction></action>";
}

void expectObjects(benchmark::State& state) {
    if (cObjectMgr::instance().count() != static_cast<size_t>(state.range(0)))
        state.SkipWithError("the level does not hold its objects");
}

void objectFrame(benchmark::State& state) {
    Game game;
    game.load(state.range(0), wanderer);
    expectObjects(state);
    for (auto _ : state) game.frame();
    state.SetComplexityN(state.range(0));
}

/// Each calls its neighbour by name, in every frame.
void callsByName(benchmark::State& state) {
    Game game;
    const int64_t count = state.range(0);
    game.load(
        count,
        [&](int64_t i) {
            return "<action name=\"a\" on_set=\"set_timer(1)\"><reaction type=\"timer\" do=\"set_timer(1);o" +
                   std::to_string((i + count / 2) % count) + ".inc_local(n,1)\" /></action>";
        },
        false);
    expectObjects(state);
    for (auto _ : state) game.frame();
    state.SetComplexityN(count);
}

/// Loading the document, and its objects' end when the next one comes.
void objectLoad(benchmark::State& state) {
    Game game;
    game.load(state.range(0), wanderer);
    expectObjects(state);
    for (auto _ : state) cWorld::instance().loadLevel("level.xml");
    state.SetComplexityN(state.range(0));
}

/// All of them in one frame.
void objectsDestroyed(benchmark::State& state) {
    Game game;
    for (auto _ : state) {
        state.PauseTiming();
        game.load(state.range(0), [](int64_t) {
            return "<action name=\"a\" on_set=\"set_timer(1)\"><reaction type=\"timer\" do=\"destroy()\" "
                   "/></action>";
        });
        expectObjects(state);
        state.ResumeTiming();
        game.frame();
    }
    if (cObjectMgr::instance().count() != 0) state.SkipWithError("objects are left");
    state.SetComplexityN(state.range(0));
}

void compiledCalls(benchmark::State& state) {
    Game game;
    game.load(
        1,
        [](int64_t) {
            return "<action name=\"a\"><reaction type=\"context\" "
                   "do=\"set_local(a,1);inc_local(a,2);set_local(b,a);"
                   "dec_local(b,a);set_speed(100);turn(3);set_global(g,1);inc_global(g,b);set_timer(50);"
                   "level();"
                   "set_direction(origin);set_radius(9)\"><requirement test=\"local_equals(a,-1)\" "
                   "/></reaction></action>";
        },
        false);
    auto* object = static_cast<cCmlObject*>(cObjectMgr::instance().get(0)->getController());
    for (auto _ : state) {
        FrameBudget::instance().renew();
        object->fireReaction(kTriggerContext);
    }
    state.SetItemsProcessed(state.iterations() * kCallsPerList);
}

void thousandEvents(benchmark::State& state) {
    Game game;
    game.load(kEvents, [](int64_t) {
        return "<action name=\"a\"><reaction type=\"ballistic_hit\" do=\"set_local(n,param);inc_local(m,n)\" "
               "/></action>";
    });
    cObjectMgr& objects = cObjectMgr::instance();
    for (auto _ : state) {
        for (size_t i = 0; i < kEvents; ++i) {
            cEventMgr::instance().post(cEvent::kBallisticHit, objects.get(0)->getController(),
                                       objects.get(i)->getController(), 7);
        }
        cEventMgr::instance().process(kFrameMs, &game.state);
        cRenderer::instance().endFrame();
    }
    state.SetItemsProcessed(state.iterations() * kEvents);
}

/// So many words on one page, with colours, names and line breaks.
void dialoguePage(benchmark::State& state) {
    Game game;
    std::string text;
    for (int64_t i = 0; i < state.range(0); ++i)
        text += i % 16 == 0 ? "^23 ^A ^1 " : "word" + std::to_string(i) + " ";
    game.load(
        1, [&](int64_t) { return "<dialogue name=\"d\">" + text + "</dialogue>"; }, false);
    auto* object = static_cast<cCmlObject*>(cObjectMgr::instance().get(0)->getController());
    cDialogue dialogue(800);
    dialogue.start(*object->getElement()->findChild(kCmlDialogue), *object);
    size_t words = 0;
    for (auto _ : state) words = dialogue.layOutPage().size();
    if (words < static_cast<size_t>(state.range(0))) state.SkipWithError("the page does not hold its words");
    state.SetComplexityN(state.range(0));
}

BENCHMARK(objectFrame)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond)->Complexity();
BENCHMARK(callsByName)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond)->Complexity();
BENCHMARK(objectLoad)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond)->Complexity();
BENCHMARK(objectsDestroyed)
    ->RangeMultiplier(10)
    ->Range(100, 10000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity();
BENCHMARK(compiledCalls);
BENCHMARK(thousandEvents)->Unit(benchmark::kMicrosecond);
BENCHMARK(dialoguePage)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond)->Complexity();
} // namespace
