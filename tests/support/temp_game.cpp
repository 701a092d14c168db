#include "support/temp_game.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {
std::vector<std::string> g_errors;

void collect(cLogMgr::Level level, const std::string& message) {
    if (level == cLogMgr::Level::error) g_errors.push_back(message);
}
} // namespace

TempGame::TempGame(const std::string& dataDir) {
    std::string pattern = (std::filesystem::temp_directory_path() / "quorvane-test-XXXXXX").string();
    dir_ = mkdtemp(pattern.data());
    std::string problem;
    platform::FileRoots roots{{}, dir_};
    if (!dataDir.empty()) roots.data.push_back(dataDir);
    if (!platform::openFileSystem("test", roots, problem)) std::abort();
    g_errors.clear();
    cLogMgr::setListener(&collect);
    cLogMgr::instance();
}

TempGame::~TempGame() {
    cLogMgr::destroy();
    cLogMgr::setListener(nullptr);
    platform::closeFileSystem();
    std::filesystem::remove_all(dir_);
}

void TempGame::write(const std::string& name, const std::string& text) const {
    // Not the game's own writer: that one waits for the disk, which damage tests would do thousands of times.
    std::string path = dir_ + "/" + name;
    std::replace(path.begin(), path.end(), '\\', '/');
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
}

std::string TempGame::read(const std::string& name) const {
    platform::Bytes bytes;
    platform::readFile(name, bytes);
    return {bytes.begin(), bytes.end()};
}

const std::vector<std::string>& TempGame::errors() {
    return g_errors;
}
void TempGame::clearErrors() {
    g_errors.clear();
}

int TempGame::errorCount(const std::string& row) {
    return static_cast<int>(std::count(g_errors.begin(), g_errors.end(), row));
}
