#include "support/temp_game.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

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
    platform::writeFile(name, platform::Bytes(text.begin(), text.end()));
}

std::string TempGame::read(const std::string& name) const {
    platform::Bytes bytes;
    platform::readFile(name, bytes);
    return {bytes.begin(), bytes.end()};
}

const std::vector<std::string>& TempGame::errors() { return g_errors; }
void TempGame::clearErrors() { g_errors.clear(); }

int TempGame::errorCount(const std::string& row) {
    return static_cast<int>(std::count(g_errors.begin(), g_errors.end(), row));
}
