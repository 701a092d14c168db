#pragma once
#include <map>
#include <string>

/// Files in memory behind the game's own file opener: an archive type of the file library that is not on
/// disk.
namespace fuzz {
using FileMap = std::map<std::string, std::string>; ///< names without folders

/// Opens the game's file system on these files alone. They cannot be written. `files` outlives it.
void mountMemoryFiles(const FileMap& files);
/// Removes what a reader has saved: it would come before the files in memory.
void removeSaved();
} // namespace fuzz
