#include "platform/files.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <physfs.h>
#include <system_error>
#include <unistd.h>

namespace platform {
namespace fs = std::filesystem;
namespace {
constexpr uint64_t kLargestFile = 1ull << 30;
constexpr size_t kFirstBlock = 1 << 20;

std::string g_userDir;
/// Each root is mounted at "/<index>", so that the first root wins whatever its names' case.
int g_mounts = 0;
bool g_realPaths = false;
void (*g_listener)(const std::string&) = nullptr;

void report(const std::string& sentence) {
    if (g_listener) g_listener(sentence);
}

/// Splits at both separators. False for names that are absolute or climb out of their root.
bool splitName(const std::string& name, std::vector<std::string>& parts) {
    std::string part;
    for (size_t i = 0; i <= name.size(); ++i) {
        const char c = i < name.size() ? name[i] : '/';
        if (c != '/' && c != '\\') {
            if (c == '\0' || c == ':') return false;
            part += c;
            continue;
        }
        if (i == 0 && i < name.size()) return false;
        if (part == "..") {
            if (parts.empty()) return false;
            parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        part.clear();
    }
    return !parts.empty();
}

struct Match {
    const std::string* wanted;
    std::string found;
};

PHYSFS_EnumerateCallbackResult compareEntry(void* data, const char*, const char* fileName) {
    auto* match = static_cast<Match*>(data);
    if (!equalIgnoringCase(*match->wanted, fileName)) return PHYSFS_ENUM_OK;
    match->found = fileName;
    return PHYSFS_ENUM_STOP;
}

/// Path inside one mount with the case that the directory really has; empty when there is no such entry.
std::string resolveInMount(int mount, const std::vector<std::string>& parts) {
    std::string path = "/" + std::to_string(mount);
    for (const std::string& part : parts) {
        const std::string exact = path + "/" + part;
        if (PHYSFS_exists(exact.c_str())) {
            path = exact;
            continue;
        }
        Match match{&part, {}};
        PHYSFS_enumerate(path.c_str(), compareEntry, &match);
        if (match.found.empty()) return {};
        path += "/" + match.found;
    }
    return path;
}

std::string resolve(const std::string& name) {
    std::vector<std::string> parts;
    if (!splitName(name, parts)) return {};
    for (int mount = 0; mount < g_mounts; ++mount) {
        const std::string path = resolveInMount(mount, parts);
        PHYSFS_Stat stat;
        if (!path.empty() && PHYSFS_stat(path.c_str(), &stat) && stat.filetype == PHYSFS_FILETYPE_REGULAR)
            return path;
    }
    return {};
}

bool readAll(std::FILE* file, Bytes& out) {
    out.clear();
    uint8_t block[65536];
    size_t n = 0;
    while ((n = std::fread(block, 1, sizeof block, file)) > 0) {
        if (out.size() + n > kLargestFile) return false;
        out.insert(out.end(), block, block + n);
    }
    return std::ferror(file) == 0;
}

/// An archive may promise any length: the array grows with what really comes.
bool readMounted(PHYSFS_File* file, Bytes& out) {
    const PHYSFS_sint64 length = PHYSFS_fileLength(file);
    if (length < 0 || static_cast<uint64_t>(length) > kLargestFile) return false;
    const auto size = static_cast<size_t>(length);
    while (out.size() < size) {
        const size_t at = out.size(), block = std::min(size - at, std::max(kFirstBlock, at));
        out.resize(at + block);
        if (PHYSFS_readBytes(file, out.data() + at, block) != static_cast<PHYSFS_sint64>(block)) return false;
    }
    return true;
}

bool readRealFile(const std::string& path, Bytes& out) {
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) return false;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    const bool ok = readAll(file, out);
    std::fclose(file);
    return ok;
}

bool mountRoot(const std::string& root, std::string& problem) {
    const std::string point = "/" + std::to_string(g_mounts);
    if (!PHYSFS_mount(root.c_str(), point.c_str(), 1)) {
        problem = "Cannot open the directory or archive \"" + root + "\".";
        return false;
    }
    ++g_mounts;
    return true;
}

/// Real path for writing: existing folders and files keep the case they have.
std::string writePath(const std::string& name) {
    std::vector<std::string> parts;
    if (!splitName(name, parts)) return g_realPaths ? name : std::string();
    fs::path path = g_userDir;
    for (const std::string& part : parts) {
        std::error_code ignored;
        fs::path next = path / part;
        if (!fs::exists(next, ignored)) {
            for (const auto& entry : fs::directory_iterator(path, ignored)) {
                if (equalIgnoringCase(entry.path().filename().string(), part)) next = entry.path();
            }
        }
        path = next;
    }
    return path.string();
}

bool writeAndFlush(const std::string& path, const Bytes& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    bool ok = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    ok = std::fflush(file) == 0 && ok;
    ok = fsync(fileno(file)) == 0 && ok;
    return std::fclose(file) == 0 && ok;
}
} // namespace

bool openFileSystem(const char* programName, const FileRoots& roots, std::string& problem) {
    closeFileSystem();
    if (!PHYSFS_init(programName)) {
        problem = "The file library does not start.";
        return false;
    }
    PHYSFS_permitSymbolicLinks(1);
    // A limit on file sizes is a write that fails, not the program's end.
    std::signal(SIGXFSZ, SIG_IGN);
    std::error_code error;
    fs::create_directories(roots.user, error);
    g_userDir = roots.user;
    if (!fs::is_directory(roots.user, error)) {
        problem = "The directory \"" + roots.user + "\" cannot be created.";
        return false;
    }
    if (!mountRoot(roots.user, problem)) return false;
    for (const std::string& root : roots.data) {
        if (!mountRoot(root, problem)) return false;
    }
    return true;
}

void closeFileSystem() {
    if (PHYSFS_isInit()) PHYSFS_deinit();
    g_mounts = 0;
    g_userDir.clear();
}

void allowRealPaths(bool allowed) {
    g_realPaths = allowed;
}
void setFileProblemListener(void (*listener)(const std::string&)) {
    g_listener = listener;
}

bool fileExists(const std::string& name) {
    if (!resolve(name).empty()) return true;
    std::error_code ignored;
    return g_realPaths && fs::is_regular_file(name, ignored);
}

bool readFile(const std::string& name, Bytes& out) {
    out.clear();
    const std::string path = resolve(name);
    if (path.empty()) {
        if (g_realPaths) return readRealFile(name, out);
        std::vector<std::string> parts;
        if (!name.empty() && !splitName(name, parts))
            report("The file name \"" + name + "\" leads out of the game data");
        return false;
    }
    PHYSFS_File* file = PHYSFS_openRead(path.c_str());
    if (!file) return false;
    const bool ok = readMounted(file, out);
    if (!ok) out.clear();
    PHYSFS_close(file);
    return ok;
}

bool writeFile(const std::string& name, const Bytes& bytes) {
    const std::string path = writePath(name);
    bool ok = !path.empty();
    if (ok) {
        std::error_code error;
        const fs::path folder = fs::path(path).parent_path();
        if (!folder.empty()) fs::create_directories(folder, error);
        const std::string beside = path + ".new";
        ok = writeAndFlush(beside, bytes) && std::rename(beside.c_str(), path.c_str()) == 0;
        if (!ok) std::remove(beside.c_str());
    }
    if (!ok) report("The file \"" + name + "\" cannot be written");
    return ok;
}

std::string userPath(const std::string& name) {
    return writePath(name);
}

size_t lastSeparator(const std::string& name) {
    return name.find_last_of("\\/");
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}
} // namespace platform
