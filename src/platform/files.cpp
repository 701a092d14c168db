#include "platform/files.h"

#include "platform/user_files.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <filesystem>
#include <physfs.h>
#include <system_error>

namespace platform {
namespace fs = std::filesystem;
namespace {
constexpr size_t kFirstBlock = 1 << 20;

std::string g_userDir;
struct DataRoot {
    std::string path;
    bool isFolder;
};
/// Each is mounted at "/<index>", so that the first one wins whatever its names' case.
std::vector<DataRoot> g_dataRoots;
bool g_realPaths = false;
void (*g_listener)(const std::string&) = nullptr;

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

std::string mountPoint(size_t root) {
    return "/" + std::to_string(root);
}

/// Path inside one mount with the case that the directory really has; empty when there is no such entry.
std::string resolveInMount(size_t root, const std::vector<std::string>& parts) {
    std::string path = mountPoint(root);
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

/// The links of an archive stay inside it.
bool isMountedFile(const std::string& path) {
    PHYSFS_Stat stat;
    if (path.empty() || !PHYSFS_stat(path.c_str(), &stat)) return false;
    if (stat.filetype != PHYSFS_FILETYPE_SYMLINK) return stat.filetype == PHYSFS_FILETYPE_REGULAR;
    PHYSFS_File* file = PHYSFS_openRead(path.c_str());
    return file && PHYSFS_close(file);
}

/// Where a name was found.
struct Place {
    Look look = Look::missing;
    std::string realPath; ///< of a file in a folder, else
    std::string mounted;  ///< path in the mounts of an archive's
};

/// The data's file is taken only when the user directory truly has none: else the next save would write it
/// over the player's. Links in folders may lead anywhere: whoever installs data may keep it where he likes,
/// and no name in the data can make a link or climb through one.
Place resolve(const std::string& name) {
    Place place;
    std::vector<std::string> parts;
    if (!splitName(name, parts)) return place;
    place.look = lookBelow(g_userDir, parts, place.realPath);
    if (place.look != Look::missing) return place;
    for (size_t i = 0; i < g_dataRoots.size(); ++i) {
        const DataRoot& root = g_dataRoots[i];
        place.realPath.clear();
        if (root.isFolder) {
            if (lookBelow(root.path, parts, place.realPath) != Look::found) continue;
        } else {
            place.mounted = resolveInMount(i, parts);
            if (!isMountedFile(place.mounted)) continue;
        }
        place.look = Look::found;
        break;
    }
    return place;
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

bool mountRoot(const std::string& root, std::string& problem) {
    if (!PHYSFS_mount(root.c_str(), mountPoint(g_dataRoots.size()).c_str(), 1)) {
        problem = "Cannot open the directory or archive \"" + root + "\".";
        return false;
    }
    std::error_code ignored;
    g_dataRoots.push_back({root, fs::is_directory(root, ignored)});
    return true;
}

} // namespace

bool openFileSystem(const char* programName, const FileRoots& roots, std::string& problem) {
    closeFileSystem();
    if (!PHYSFS_init(programName)) {
        problem = "The file library does not start.";
        return false;
    }
    PHYSFS_permitSymbolicLinks(1);
    // A limit on file sizes and a closed pipe are writes that fail, not the program's end.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    std::error_code error;
    fs::create_directories(roots.user, error);
    g_userDir = roots.user;
    while (g_userDir.size() > 1 && g_userDir.back() == '/') g_userDir.pop_back();
    if (!fs::is_directory(roots.user, error)) {
        problem = "The directory \"" + roots.user + "\" cannot be created.";
        return false;
    }
    for (const std::string& root : roots.data) {
        if (!mountRoot(root, problem)) return false;
    }
    return true;
}

void closeFileSystem() {
    if (PHYSFS_isInit()) PHYSFS_deinit();
    g_dataRoots.clear();
    g_userDir.clear();
}

void allowRealPaths(bool allowed) {
    g_realPaths = allowed;
}
void setFileProblemListener(void (*listener)(const std::string&)) {
    g_listener = listener;
}

void reportFileProblem(const std::string& sentence) {
    if (g_listener) g_listener(sentence);
}

bool fileExists(const std::string& name) {
    if (resolve(name).look != Look::missing) return true;
    std::error_code ignored;
    return g_realPaths && fs::is_regular_file(name, ignored);
}

bool readFile(const std::string& name, Bytes& out) {
    out.clear();
    const Place place = resolve(name);
    if (place.look == Look::failed) return false;
    if (place.look == Look::missing) {
        if (g_realPaths) return readReal(name, out);
        std::vector<std::string> parts;
        if (!name.empty() && !splitName(name, parts))
            reportFileProblem("The file name \"" + name + "\" leads out of the game data");
        return false;
    }
    if (!place.realPath.empty()) return readReal(place.realPath, out);
    PHYSFS_File* file = PHYSFS_openRead(place.mounted.c_str());
    if (!file) return false;
    const bool ok = readMounted(file, out);
    if (!ok) out.clear();
    PHYSFS_close(file);
    return ok;
}

bool writeFile(const std::string& name, const Bytes& bytes) {
    const std::string path = userPath(name);
    const bool ok = !path.empty() && replaceReal(path, bytes);
    if (!ok) reportFileProblem("The file \"" + name + "\" cannot be written");
    return ok;
}

std::string userPath(const std::string& name) {
    std::vector<std::string> parts;
    if (!splitName(name, parts)) return g_realPaths ? name : std::string();
    return pathBelow(g_userDir, parts);
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
