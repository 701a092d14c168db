// The octree and the moves of bodies, on levels of equal density and equal leaf size.
#include "data/binary_reader.h"
#include "game/physics_world.h"
#include "inputs.h"
#include "script/event_mgr.h"
#include "world/object.h"

#include <benchmark/benchmark.h>
#include <memory>
#include <random>

namespace {
/// Leaves of 4.5 units in each: four times the width, two generations more.
constexpr struct {
    int cellsX, cellsZ, generations;
} kLevels[] = {{72, 68, 4}, {288, 170, 6}, {1152, 426, 8}}; // 10 k, 100 k and 1 M triangles
constexpr int kMinFaces = 10;

constexpr float kRadius = 0.4f, kSnap = 0.06f, kSpeed = 0.11f; // the hero's
constexpr float kFeet = 1.25f; ///< from an object's position down to its lowest point
constexpr size_t kQueries = 4096;

const cModel& model(int64_t index) {
    static cModel models[std::size(kLevels)];
    cModel& m = models[index];
    if (m.objects.empty()) m = inputs::level(kLevels[index].cellsX, kLevels[index].cellsZ);
    return m;
}

const cOctree& octree(int64_t index) {
    static cOctree trees[std::size(kLevels)];
    if (trees[index].empty()) trees[index].build(model(index), kMinFaces, kLevels[index].generations, true);
    return trees[index];
}

/// Spread evenly over the level.
struct Places {
    std::mt19937 random{1};
    float halfX, halfZ;

    explicit Places(int64_t index)
        : halfX(0.49f * static_cast<float>(kLevels[index].cellsX)),
          halfZ(0.49f * static_cast<float>(kLevels[index].cellsZ)) {}
    float number(float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); }
    cVector3 above(float height) {
        const float x = number(-halfX, halfX), z = number(-halfZ, halfZ);
        return {x, inputs::groundHeight(x, z) + height, z};
    }
    cVector3 heading() {
        const float angle = number(0, 6.2831853f);
        return {std::cos(angle), 0, std::sin(angle)};
    }
};

cCapsule heroCapsule(const cVector3& at) {
    return {at + cVector3(0, 0.35f, 0), at + cVector3(0, -0.85f, 0), kRadius};
}

void octreeBuild(benchmark::State& state) {
    const cModel& m = model(state.range(0));
    for (auto _ : state) {
        cOctree tree;
        tree.build(m, kMinFaces, kLevels[state.range(0)].generations, true);
        state.counters["leaves"] = tree.totalNodes();
    }
    state.counters["triangles"] = m.totalFaces();
}
BENCHMARK(octreeBuild)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void octreeRead(benchmark::State& state) {
    cMaterialList materials;
    materials.addFrom(model(state.range(0)));
    cBinaryWriter out;
    octree(state.range(0)).write(out, materials);
    for (auto _ : state) {
        state.PauseTiming();
        cBinaryReader in(out.bytes());
        cOctree tree;
        state.ResumeTiming();
        if (!tree.read(in, materials)) state.SkipWithError("the octree does not read");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * out.bytes().size()));
}
BENCHMARK(octreeRead)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

/// Sight lines of ten units at eye height.
void segmentTrace(benchmark::State& state) {
    const cOctree& tree = octree(state.range(0));
    Places places(state.range(0));
    std::vector<std::pair<cVector3, cVector3>> lines;
    while (lines.size() < kQueries) {
        const cVector3 from = places.above(1.6f);
        lines.emplace_back(from, from + places.heading() * 10 + cVector3(0, places.number(-2, 1), 0));
    }
    size_t i = 0, blocked = 0;
    for (auto _ : state) {
        const auto& [from, to] = lines[i++ % kQueries];
        blocked += tree.trace(from, to) < 1;
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    state.counters["blocked"] = static_cast<double>(blocked) / static_cast<double>(state.iterations());
}
BENCHMARK(segmentTrace)->DenseRange(0, 2);

/// The query of the leaves and one sweep through them, of a hero running or falling.
void capsuleSweep(benchmark::State& state) {
    const cOctree& tree = octree(state.range(0));
    Places places(state.range(0));
    std::vector<std::pair<cCapsule, cVector3>> moves;
    while (moves.size() < kQueries) {
        const cCapsule hero = heroCapsule(places.above(kFeet + places.number(0.02f, 0.2f)));
        moves.emplace_back(hero, places.heading() * kSpeed + cVector3(0, places.number(-0.15f, 0.05f), 0));
    }
    MeshList meshes;
    size_t i = 0, blocked = 0;
    for (auto _ : state) {
        const auto& [hero, move] = moves[i++ % kQueries];
        tree.queryBodies(hero, hero.moved(move, move), meshes);
        cVector3 normal;
        blocked += sweepMeshes(hero, {move, move}, meshes, normal) < 1;
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    state.counters["blocked"] = static_cast<double>(blocked) / static_cast<double>(state.iterations());
}
BENCHMARK(capsuleSweep)->DenseRange(0, 2);

/// An object with the hero's capsule that runs about.
struct Runner {
    cObject object;
    cVector3 at, heading;

    Runner(cPhysicsWorld& world, Places& places) : at(places.above(kFeet + 0.1f)), heading(places.heading()) {
        object.setController(std::make_unique<cSceneryController>(&object));
        object.setPosition(at);
        world.addBody(cCollisionBody(&object, heroCapsule(at)));
    }
    void request() const {
        object.requestMove(heading * kSpeed, MOVE_GROUNDED | MOVE_SWEPT | MOVE_SOLID, kSnap);
    }
};

struct Runners {
    cPhysicsWorld world;
    std::vector<std::unique_ptr<Runner>> all;

    Runners(int64_t index, int count) {
        world.setGeometry(model(index), kMinFaces, kLevels[index].generations);
        Places places(index);
        for (int i = 0; i < count; ++i) all.push_back(std::make_unique<Runner>(world, places));
    }
    ~Runners() {
        for (const auto& runner : all) world.removeBody(runner->object.body);
        cEventMgr::destroy();
    }
};

/// One body that walks; now and then it is put somewhere else.
void steppingMove(benchmark::State& state) {
    Runners runners(state.range(0), 1);
    Runner& hero = *runners.all.front();
    Places places(state.range(0));
    size_t i = 0;
    for (auto _ : state) {
        if (i++ % 64 == 0) {
            hero.object.setPosition(places.above(kFeet + 0.05f));
            hero.heading = places.heading();
        }
        hero.request();
        runners.world.step(16, STATE_GAME);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(steppingMove)->DenseRange(0, 2);

/// A thousand bodies step at once; every other body is tested against each.
void thousandBodies(benchmark::State& state) {
    Runners runners(1, 1000);
    int frame = 0;
    for (auto _ : state) {
        for (const auto& runner : runners.all) {
            if (frame % 60 == 59) runner->heading = -runner->heading;
            runner->request();
        }
        runners.world.step(16, STATE_GAME);
        cEventMgr::instance().clear();
        ++frame;
    }
}
BENCHMARK(thousandBodies)->Unit(benchmark::kMillisecond);
} // namespace
