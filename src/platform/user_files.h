#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// Inside of platform/files.h: files by their real paths. Every failing call counts, because what cannot be
/// looked at must not be taken for missing and written over.
namespace platform {
enum class Look : uint8_t {
    found,   ///< a regular file, or a link that leads to one
    missing, ///< nothing of that name, something else, or a link that leads nowhere
    failed,  ///< the machine did not tell
};

/// Looks for a path below a folder, in any case; `path` gets the names as they are.
Look lookBelow(const std::string& folder, const std::vector<std::string>& parts, std::string& path);
/// `path` for a file that may be new: existing folders and files keep the case they have.
std::string pathBelow(const std::string& folder, const std::vector<std::string>& parts);
/// Where the links of a path lead, if the last of them leads nowhere too; the path itself when it is no link.
/// Empty when they lead in a circle.
std::string targetOf(const std::string& path);
/// False for what is no regular file, cannot be read, or is larger than 1 GiB.
bool readReal(const std::string& path, std::vector<uint8_t>& out);
/// Writes beside the target, flushes, renames over it and syncs the folder. Creates folders, but none where a
/// link leads: that may be a disk which is not there. A link stays one, its target is replaced. False when
/// nothing was replaced.
bool replaceReal(const std::string& path, const std::vector<uint8_t>& bytes);

/// To the listener of setFileProblemListener, beside which it is defined.
void reportFileProblem(const std::string& sentence);

constexpr uint64_t kLargestFile = 1ull << 30;
} // namespace platform
