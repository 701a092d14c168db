#include "forge/checks.h"
#include "forge/preview.h"
#include "forge/recipes.h"
#include "forge/sound_checks.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <vector>

namespace forge {
std::vector<Recipe>& recipes() {
    static std::vector<Recipe> all;
    return all;
}
} // namespace forge

namespace {
namespace fs = std::filesystem;

/// Plain data that the game reads as it is edited: configuration, levels, items.
bool copyPlainData(const fs::path& content, forge::Output& out) {
    std::vector<fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(content, error)) {
        const std::string extension = entry.path().extension().string();
        if (extension == ".cfg" || extension == ".xml" || extension == ".cfl" || extension == ".txt")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& path : files) {
        platform::Bytes bytes;
        if (!forge::readRealFile(path.string(), bytes)) return false;
        out.put(path.filename().string(), std::move(bytes));
    }
    return !error && !files.empty();
}

/// Runs all recipes on as many threads as there are cores. Each fills an output of its own; they are put
/// together in the order of the recipes' names, so the result does not depend on who was first.
void runRecipes(forge::Output& out) {
    auto all = forge::recipes();
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    std::vector<forge::Output> made(all.size(), forge::Output(&out));
    std::atomic<size_t> next = 0;
    const auto work = [&] {
        for (size_t i = next++; i < all.size(); i = next++) all[i].make(made[i]);
    };
    std::vector<std::thread> helpers;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) helpers.emplace_back(work);
    work();
    for (std::thread& helper : helpers) helper.join();
    for (forge::Output& part : made) out.merge(std::move(part));
}

int make(const std::string& content, const std::string& target, const char* previews) {
    forge::Output out;
    if (!copyPlainData(content, out)) {
        std::fprintf(stderr, "forge: no content in %s\n", content.c_str());
        return 1;
    }
    runRecipes(out);
    forge::checkDataSet(out);
    forge::checkSounds(out);
    for (const std::string& sentence : out.problems()) std::fprintf(stderr, "forge: %s\n", sentence.c_str());
    if (previews && !forge::writePreviews(out, previews)) return 1;
    if (!out.problems().empty() || !out.writeAll(target)) return 1;
    std::printf("forge: %zu files in %s\n", out.files().size(), target.c_str());
    return 0;
}
} // namespace

int main(int argc, char** argv) {
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr, "usage: forge CONTENT_DIR OUTPUT_DIR [PREVIEW_DIR]\n");
        return 2;
    }
    return make(argv[1], argv[2], argc == 4 ? argv[3] : nullptr);
}
