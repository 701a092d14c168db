// Every reader that has a fuzz target, on good, kept and damaged files. What a target promises of its result
// it checks itself (fuzz/*_fuzz.cpp); under AddressSanitizer the memory is held against the file's size as
// well.
#include "fuzz/support.h"
#include "platform/random.h"
#include "support/damage.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string_view>

namespace fs = std::filesystem;

namespace {
using platform::Bytes;

/// Whose files say how much they hold, or close what they open: cut anywhere, they are refused.
const std::set<std::string_view> kRefuseCuts = {"bmp",       "cff",   "cml",   "cpm", "environment",
                                                "inventory", "items", "level", "md3", "octree",
                                                "tga",       "wav",   "xml"};

Bytes readWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Files of a folder in the order of their names; none when it does not exist.
std::vector<fs::path> filesIn(const fs::path& folder) {
    std::set<fs::path> sorted;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder, none)) sorted.insert(entry.path());
    return {sorted.begin(), sorted.end()};
}

std::vector<const fuzz::Registration*> targets() {
    std::vector<const fuzz::Registration*> all;
    for (const auto* r = fuzz::Registration::first(); r; r = r->next) all.push_back(r);
    return all;
}

class Reader : public ::testing::TestWithParam<const fuzz::Registration*> {
protected:
    static uint64_t read(const Bytes& bytes) {
        return fuzz::run(GetParam()->target, bytes.data(), bytes.size());
    }
    static std::vector<fs::path> seeds() { return filesIn(fs::path(FUZZ_DIR) / "seeds" / GetParam()->name); }
};
} // namespace

TEST_P(Reader, TakesItsGoodFilesAndEveryInputThatEverFailed) {
    ASSERT_GE(seeds().size(), 2u);
    for (const fs::path& seed : seeds()) EXPECT_NE(read(readWhole(seed)), 0u) << seed;
    for (const fs::path& found : filesIn(fs::path(FUZZ_DIR) / "found" / GetParam()->name))
        read(readWhole(found));
}

TEST_P(Reader, ReadsAGoodFileAsBeforeAfterAnyDamage) {
    constexpr int kFlips = 2000, kGoodAgain = 50;
    for (const fs::path& seed : seeds()) {
        const Bytes good = readWhole(seed);
        const uint64_t digest = read(good);
        const bool refusesCuts = kRefuseCuts.count(GetParam()->name) > 0;
        const size_t end = good.size() - (good.back() == '\n'); // of a text that misses nothing
        int damaged = 0, differ = 0;
        readDamaged(good, kFlips, [&](const Bytes& bytes) {
            const uint64_t found = read(bytes);
            differ += found != digest;
            EXPECT_FALSE(refusesCuts && bytes.size() < end && found) << seed << " cut at " << bytes.size();
            if (++damaged % kGoodAgain != 0) return;
            ASSERT_EQ(read(good), digest) << seed << " after " << damaged;
        });
        EXPECT_EQ(damaged, static_cast<int>(good.size()) + kFlips);
        const bool ignored = std::string_view(GetParam()->name) == "shader"; // its lines change nothing
        EXPECT_EQ(differ == 0, ignored) << seed << ": the damage is seen";
        EXPECT_EQ(read(good), digest) << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Reader, ::testing::ValuesIn(targets()),
                         [](const auto& one) { return std::string("_") + one.param->name; });
