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

namespace fs = std::filesystem;

namespace {
using platform::Bytes;

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
        int damaged = 0, differ = 0;
        readDamaged(good, kFlips, [&](const Bytes& bytes) {
            differ += read(bytes) != digest;
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
