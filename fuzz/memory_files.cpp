#include "memory_files.h"

#include "platform/files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <physfs.h>

namespace fuzz {
namespace {
constexpr const char* kExtension = "mem";
const FileMap* g_files = nullptr;
std::string g_folder; ///< the user directory

struct OpenFile {
    const std::string* content;
    PHYSFS_uint64 at = 0;
};

OpenFile& openFile(PHYSFS_Io* io) {
    return *static_cast<OpenFile*>(io->opaque);
}

PHYSFS_sint64 readBlock(PHYSFS_Io* io, void* out, PHYSFS_uint64 wanted) {
    OpenFile& file = openFile(io);
    const auto n = std::min<PHYSFS_uint64>(wanted, file.content->size() - file.at);
    std::memcpy(out, file.content->data() + file.at, n);
    file.at += n;
    return static_cast<PHYSFS_sint64>(n);
}

int seekTo(PHYSFS_Io* io, PHYSFS_uint64 offset) {
    if (offset > openFile(io).content->size()) return 0;
    openFile(io).at = offset;
    return 1;
}

PHYSFS_sint64 tellPosition(PHYSFS_Io* io) {
    return static_cast<PHYSFS_sint64>(openFile(io).at);
}
PHYSFS_sint64 fileLength(PHYSFS_Io* io) {
    return static_cast<PHYSFS_sint64>(openFile(io).content->size());
}
int flushNothing(PHYSFS_Io*) {
    return 1;
}
PHYSFS_Io* duplicateIo(PHYSFS_Io* io);

void destroyIo(PHYSFS_Io* io) {
    delete static_cast<OpenFile*>(io->opaque);
    delete io;
}

PHYSFS_Io* makeIo(const std::string& content) {
    return new PHYSFS_Io{
        0,           new OpenFile{&content}, readBlock, nullptr, seekTo, tellPosition, fileLength,
        duplicateIo, flushNothing,           destroyIo};
}
PHYSFS_Io* duplicateIo(PHYSFS_Io* io) {
    return makeIo(*openFile(io).content);
}

void* openArchive(PHYSFS_Io* io, const char*, int forWriting, int* claimed) {
    if (forWriting) return nullptr;
    *claimed = 1;
    return io;
}

PHYSFS_EnumerateCallbackResult enumerate(void*, const char*, PHYSFS_EnumerateCallback callback,
                                         const char* folder, void* data) {
    for (const auto& [name, content] : *g_files) {
        const auto result = callback(data, folder, name.c_str());
        if (result != PHYSFS_ENUM_OK) return result;
    }
    return PHYSFS_ENUM_OK;
}

PHYSFS_Io* openRead(void*, const char* name) {
    const auto it = g_files->find(name);
    if (it != g_files->end()) return makeIo(it->second);
    PHYSFS_setErrorCode(PHYSFS_ERR_NOT_FOUND);
    return nullptr;
}

PHYSFS_Io* refuseOpen(void*, const char*) {
    PHYSFS_setErrorCode(PHYSFS_ERR_READ_ONLY);
    return nullptr;
}
int refuse(void*, const char*) {
    PHYSFS_setErrorCode(PHYSFS_ERR_READ_ONLY);
    return 0;
}

int statFile(void*, const char* name, PHYSFS_Stat* stat) {
    const auto it = g_files->find(name);
    if (it == g_files->end()) {
        PHYSFS_setErrorCode(PHYSFS_ERR_NOT_FOUND);
        return 0;
    }
    *stat = {static_cast<PHYSFS_sint64>(it->second.size()), 0, 0, 0, PHYSFS_FILETYPE_REGULAR, 1};
    return 1;
}

void closeArchive(void* io) {
    destroyIo(static_cast<PHYSFS_Io*>(io));
}

constexpr PHYSFS_Archiver kArchiver = {0,           {kExtension, "Files in memory", "", "", 0},
                                       openArchive, enumerate,
                                       openRead,    refuseOpen,
                                       refuseOpen,  refuse,
                                       refuse,      statFile,
                                       closeArchive};

[[noreturn]] void stop(const char* sentence) {
    std::fprintf(stderr, "%s\n", sentence);
    std::abort();
}
} // namespace

void removeSaved() {
    std::error_code error;
    std::filesystem::remove_all(g_folder, error);
}

void mountMemoryFiles(const FileMap& files) {
    static const std::string kNoContent;
    g_files = &files;
    g_folder = (std::filesystem::temp_directory_path() / "quorvane-fuzz-XXXXXX").string();
    if (!mkdtemp(g_folder.data())) stop("The directory for temporary files cannot be written");
    // Mounts are asked for archives alone: an empty one holds the place of the files in memory.
    const std::string archive = g_folder + ".grp";
    std::ofstream(archive, std::ios::binary) << "KenSilverman" << std::string(4, '\0'); // and the count
    std::string problem;
    const bool open = platform::openFileSystem("fuzz", {{archive}, g_folder}, problem);
    std::filesystem::remove(archive);
    // The user directory goes away at once, so the log has no page; a reader that saves brings it back.
    removeSaved();
    std::atexit(&removeSaved);
    if (!open) stop(problem.c_str());
    if (!PHYSFS_registerArchiver(&kArchiver) || !PHYSFS_mountIo(makeIo(kNoContent), "files.mem", "/0", 0))
        stop("The files in memory cannot be mounted");
}
} // namespace fuzz
