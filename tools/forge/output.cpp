#include "forge/output.h"

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace forge {
namespace fs = std::filesystem;

std::string dataName(const std::string& name) {
    std::string result;
    for (char c : name)
        result += c == '\\' ? '/' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

void Output::put(const std::string& name, platform::Bytes bytes) {
    if (name != dataName(name)) problem("file name is not in lower case: " + name);
    if (!files_.emplace(name, std::move(bytes)).second) problem("two recipes make " + name);
}

void Output::putText(const std::string& name, const std::string& text) {
    put(name, platform::Bytes(text.begin(), text.end()));
}

void Output::addOctree(const std::string& commandLine, const std::string& madeFile) {
    octreeLines_.push_back(commandLine);
    promised_.push_back(dataName(madeFile));
}

void Output::problem(const std::string& sentence) {
    problems_.push_back(sentence);
}

void Output::merge(Output&& other) {
    for (auto& [name, bytes] : other.files_) put(name, std::move(bytes));
    const auto append = [](auto& to, auto& from) { to.insert(to.end(), from.begin(), from.end()); };
    append(octreeLines_, other.octreeLines_);
    append(promised_, other.promised_);
    append(problems_, other.problems_);
}

bool readRealFile(const std::string& path, platform::Bytes& bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return true;
}

static bool holdsAlready(const fs::path& path, const platform::Bytes& bytes) {
    platform::Bytes old;
    return readRealFile(path.string(), old) && old == bytes;
}

const platform::Bytes* Output::source(const std::string& name) const {
    if (!sources_) return nullptr;
    const auto found = sources_->files_.find(name);
    return found == sources_->files_.end() ? nullptr : &found->second;
}

bool Output::writeAll(const std::string& directory) {
    std::string lines;
    for (const std::string& line : octreeLines_) lines += line + "\n";
    putText("octrees.txt", lines);
    for (const auto& [name, bytes] : files_) {
        const fs::path path = fs::path(directory) / name;
        if (holdsAlready(path, bytes)) continue;
        std::error_code error;
        fs::create_directories(path.parent_path(), error);
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            std::fprintf(stderr, "forge: cannot write %s\n", path.string().c_str());
            return false;
        }
    }
    std::error_code error;
    fs::create_directories(fs::path(directory) / "oct", error);
    return !error;
}
} // namespace forge
