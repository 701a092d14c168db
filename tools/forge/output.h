#pragma once
#include "platform/files.h"

#include <map>
#include <string>
#include <vector>

namespace forge {
/// The data set while it is made: files by name (lower case, slashes), and what went wrong.
class Output {
public:
    Output() = default;
    /// What a recipe fills: it may read the plain data that the authors edit.
    explicit Output(const Output* sources) : sources_(sources) {}

    /// A file of the authors' plain data; null when there is none. It lives as long as the recipe runs.
    const platform::Bytes* source(const std::string& name) const;
    void put(const std::string& name, platform::Bytes bytes);
    void putText(const std::string& name, const std::string& text);
    /// One console line that makes an octree once the game program is there.
    void addOctree(const std::string& commandLine, const std::string& madeFile);
    void problem(const std::string& sentence);
    /// Takes over what another recipe has made.
    void merge(Output&& other);

    bool has(const std::string& name) const { return files_.count(name) != 0; }
    const std::map<std::string, platform::Bytes>& files() const { return files_; }
    const std::vector<std::string>& problems() const { return problems_; }
    /// Files that the listed octree lines will make.
    const std::vector<std::string>& promised() const { return promised_; }
    /// Writes everything below `directory`; files that already hold the same bytes are left alone.
    bool writeAll(const std::string& directory);

private:
    const Output* sources_ = nullptr;
    std::map<std::string, platform::Bytes> files_;
    std::vector<std::string> octreeLines_, promised_, problems_;
};

/// False when there is no such file.
bool readRealFile(const std::string& path, platform::Bytes& bytes);

/// Backslashes become slashes, capitals lower case: the form in which the data set keeps its names.
std::string dataName(const std::string& name);
} // namespace forge
