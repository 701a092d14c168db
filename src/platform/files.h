#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The program's one file opener. Names are taken as the data gives them: backslashes or slashes, any case.
/// The user directory is searched first, then each data directory (folder or zip) in order. A name that is
/// absolute or climbs out with ".." is not found. Links count as what they lead to.
namespace platform {
using Bytes = std::vector<uint8_t>;

struct FileRoots {
    std::vector<std::string> data; ///< folders or zip archives, first match wins
    std::string user;              ///< folder that is written to; created when missing
};

/// False with a sentence in `problem` when a root cannot be used.
bool openFileSystem(const char* programName, const FileRoots& roots, std::string& problem);
void closeFileSystem();
/// Tool modes may name real paths besides names in the roots.
void allowRealPaths(bool allowed);
/// Told of refused names and failed writes, in one sentence each; null to stop.
void setFileProblemListener(void (*listener)(const std::string& sentence));

/// True also when the user directory cannot be looked at: then nothing may be taken for missing.
bool fileExists(const std::string& name);
/// Reads the whole file. False when there is none, it cannot be read or it is larger than 1 GiB.
bool readFile(const std::string& name, Bytes& out);
/// Writes beside the target under a name of this program's own, flushes, renames over it and syncs the
/// folder. Creates folders. The target of a link is replaced, the link stays. False when nothing was
/// replaced.
bool writeFile(const std::string& name, const Bytes& bytes);
/// Real path of a name inside the user directory, for streams that stay open (the log); empty when refused.
std::string userPath(const std::string& name);
/// "dir\file.ext" and "dir/file.ext" alike: position of the last separator, npos when there is none.
size_t lastSeparator(const std::string& name);
bool equalIgnoringCase(std::string_view a, std::string_view b);
} // namespace platform
