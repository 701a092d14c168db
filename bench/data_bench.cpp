// Level documents: parsing and compilation, in memory.
#include "inputs.h"
#include "script/cml_compiler.h"

#include <benchmark/benchmark.h>
#include <map>

namespace {
constexpr size_t kLevelBytes = 5'000'000;

const std::string& document() {
    static const std::string text = inputs::levelXml(kLevelBytes);
    return text;
}

template <typename Node> int parse(Node& root) {
    return root.parse(reinterpret_cast<const uint8_t*>(document().data()), document().size());
}

void countBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document().size()));
}

void xmlParse(benchmark::State& state) {
    for (auto _ : state) {
        auto root = std::make_unique<cXmlNode>();
        if (parse(*root) != 0) state.SkipWithError("the document does not parse");
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    countBytes(state);
}
BENCHMARK(xmlParse)->Unit(benchmark::kMillisecond);

/// Parsing into level elements and taking the tree down again, as a level change does.
void cmlParseAndRelease(benchmark::State& state) {
    for (auto _ : state) {
        cCmlElement root;
        if (parse(root) != 0) state.SkipWithError("the document does not parse");
    }
    countBytes(state);
}
BENCHMARK(cmlParseAndRelease)->Unit(benchmark::kMillisecond);

void cmlCompile(benchmark::State& state) {
    std::map<std::string, int32_t> globals;
    CmlLookups lookups;
    lookups.globalIndex = [&](const std::string& name) {
        return globals.try_emplace(name, static_cast<int32_t>(globals.size())).first->second;
    };
    lookups.findItem = [](const std::string&) { return -1; };
    lookups.itemAt = [](int32_t) { return nullptr; };
    lookups.preloadSound = [](const std::string&) {};
    for (auto _ : state) {
        state.PauseTiming();
        auto root = std::make_unique<cCmlElement>();
        parse(*root);
        CmlReport report;
        report.quiet = true;
        state.ResumeTiming();
        if (!classifyCml(*root, report)) state.SkipWithError("unknown element");
        compileCml(*root, lookups, report);
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
        if (!report.rows.empty()) {
            state.SkipWithError(report.rows.front().message.c_str());
            break;
        }
    }
    countBytes(state);
}
BENCHMARK(cmlCompile)->Unit(benchmark::kMillisecond);
} // namespace
