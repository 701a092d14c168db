// Readers of pictures and models, and what is derived from meshes. Files lie in a temporary directory; the
// time to open and read them is part of what is measured, as it is part of loading.
#include "core/log_mgr.h"
#include "forge/md3.h"
#include "inputs.h"
#include "models/anim_model.h"
#include "models/cff.h"
#include "models/load_3ds.h"
#include "models/load_obj.h"
#include "models/md3.h"
#include "models/normals.h"
#include "render/image.h"
#include "render/shadow_volume.h"
#include "support/temp_game.h"

#include <benchmark/benchmark.h>

namespace {
constexpr int kTgaSize = 2048;
constexpr int kCharacterTriangles = 1500, kCharacterFrames = 370;

void write(const TempGame& game, const std::string& name, const platform::Bytes& bytes) {
    game.write(name, std::string(bytes.begin(), bytes.end()));
}

const forge::CharacterPart& character() {
    static const forge::CharacterPart part = inputs::character(kCharacterTriangles, kCharacterFrames);
    return part;
}

void tgaDecode(benchmark::State& state) {
    const TempGame game;
    write(game, "runs.tga", inputs::runLengthTga(kTgaSize, kTgaSize));
    for (auto _ : state) {
        cImage image;
        if (image.load("runs.tga") != 0) state.SkipWithError("the picture does not load");
        benchmark::DoNotOptimize(image.pixels().data());
    }
    state.SetBytesProcessed(state.iterations() * kTgaSize * kTgaSize * 4);
}
BENCHMARK(tgaDecode)->Unit(benchmark::kMillisecond);

template <typename Load> void loadModel(benchmark::State& state, int faces, Load load) {
    for (auto _ : state) {
        cModel model;
        load(model);
        if (model.totalFaces() < faces) state.SkipWithError("faces are missing");
    }
}

void objLoad(benchmark::State& state) {
    const TempGame game;
    const auto files = forge::objFiles(inputs::parts(100'000, 25'000), "level.mtl");
    game.write("level.obj", files.obj);
    game.write("level.mtl", files.mtl);
    loadModel(state, 98'000, [](cModel& model) { loadObj("level.obj", model); });
}
BENCHMARK(objLoad)->Unit(benchmark::kMillisecond);

void threeDsLoad(benchmark::State& state) {
    const TempGame game;
    write(game, "level.3ds", forge::threeDsFile(inputs::parts(48'000, 12'000)));
    loadModel(state, 47'000, [](cModel& model) { load3ds("", "level.3ds", model); });
}
BENCHMARK(threeDsLoad)->Unit(benchmark::kMillisecond);

template <typename Load> void loadCharacter(benchmark::State& state, Load load) {
    for (auto _ : state) {
        cAnimModel part;
        if (!load(part) || part.frameCount != kCharacterFrames) state.SkipWithError("the part does not load");
    }
}

void md3Load(benchmark::State& state) {
    const TempGame game;
    write(game, "body.md3", forge::md3File(character()));
    loadCharacter(state, [](cAnimModel& part) { return loadMd3(part, "body.md3"); });
}
BENCHMARK(md3Load)->Unit(benchmark::kMillisecond);

void cffLoad(benchmark::State& state) {
    const TempGame game;
    write(game, "body.cff", forge::cffFile(character(), true));
    loadCharacter(state, [](cAnimModel& part) { return readCff(part, "body.cff"); });
}
BENCHMARK(cffLoad)->Unit(benchmark::kMillisecond);

void perFace(benchmark::State& state, const cModelObject& object) {
    state.counters["faces/s"] = benchmark::Counter(static_cast<double>(object.faceCount()),
                                                   benchmark::Counter::kIsIterationInvariantRate);
}

void normals(benchmark::State& state) {
    const cModelObject object = inputs::surface(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(smoothNormals(object.positions, object.faces));
    perFace(state, object);
}
BENCHMARK(normals)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void neighbours(benchmark::State& state) {
    cModelObject object = inputs::surface(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        shadowVolume::computeNeighbours(object);
        benchmark::DoNotOptimize(object.neighbours.data());
    }
    perFace(state, object);
}
BENCHMARK(neighbours)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void pose(benchmark::State& state) {
    const forge::CharacterPart part = inputs::character(4'000, 2);
    cAnimMesh mesh;
    mesh.verticesPerFrame = static_cast<int32_t>(part.texCoords.size());
    for (const auto& frame : part.frames) {
        mesh.positions.insert(mesh.positions.end(), frame.begin(), frame.end());
        const auto normals = smoothNormals(frame, part.faces);
        mesh.frameNormals.insert(mesh.frameNormals.end(), normals.begin(), normals.end());
    }
    std::vector<cVector3> positions, normals;
    for (auto _ : state) {
        poseMesh(mesh, 0, 1, 0.3f, positions, normals);
        benchmark::DoNotOptimize(positions.data());
        benchmark::ClobberMemory();
    }
    state.counters["vertices"] = mesh.verticesPerFrame;
}
BENCHMARK(pose)->Unit(benchmark::kMicrosecond);
} // namespace
