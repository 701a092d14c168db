#include "platform/user_files.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <strings.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace platform {
namespace fs = std::filesystem;
namespace {
constexpr std::string_view kUnfinished = ".new";
constexpr int kMostLinks = 40;        ///< in a row, as the system has it
constexpr int kMostLeftBehind = 1000; ///< unfinished files of killed programs beside one file

bool isMissing(int error) {
    return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

/// The folder's first entry of that name in any case.
Look lookInFolder(const std::string& folder, const std::string& wanted, std::string& name) {
    DIR* entries = opendir(folder.c_str());
    if (!entries) return isMissing(errno) ? Look::missing : Look::failed;
    Look look = Look::missing;
    errno = 0;
    while (const dirent* entry = readdir(entries)) {
        if (strcasecmp(entry->d_name, wanted.c_str()) != 0) continue;
        name = entry->d_name;
        look = Look::found;
        break;
    }
    if (look == Look::missing && errno != 0) look = Look::failed;
    closedir(entries);
    return look;
}

/// One step down: the exact name, else the same in any case.
Look stepDown(std::string& path, const std::string& part) {
    const std::string exact = path + "/" + part;
    struct stat entry {};
    if (lstat(exact.c_str(), &entry) == 0) {
        path = exact;
        return Look::found;
    }
    if (!isMissing(errno)) return Look::failed;
    std::string name;
    const Look look = lookInFolder(path, part, name);
    if (look == Look::found) path += "/" + name;
    return look;
}

/// A new file beside the target, of a name that no other program uses; −1 when there is none.
int createBeside(const std::string& target, std::string& beside) {
    for (int i = 0; i < kMostLeftBehind; ++i) {
        beside = target + "." + std::to_string(getpid()) + (i > 0 ? "-" + std::to_string(i) : "");
        beside += kUnfinished;
        const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

/// What killed programs left unfinished; what is younger than an hour may still be written.
void removeLeftBehind(const fs::path& target) {
    const std::string start = target.filename().string() + ".";
    const auto oldest = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::error_code error;
    for (fs::directory_iterator at(target.parent_path(), error), end; !error && at != end;
         at.increment(error)) {
        const fs::directory_entry& entry = *at;
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(start) || !name.ends_with(kUnfinished)) continue;
        const std::string number = name.substr(start.size(), name.size() - start.size() - kUnfinished.size());
        if (number.empty() || number.find_first_not_of("0123456789-") != std::string::npos) continue;
        std::error_code gone; // another program's may vanish meanwhile
        const auto time = entry.last_write_time(gone);
        if (!gone && time < oldest) fs::remove(entry.path(), gone);
    }
}

bool writeAndFlush(int file, const std::vector<uint8_t>& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = write(file, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<size_t>(n);
    }
    const bool ok = done == bytes.size() && fsync(file) == 0;
    return close(file) == 0 && ok;
}

/// A rename outlives a power cut only when its folder is on the disk. Not every file system can do that, and
/// the file is replaced already: a failure changes nothing.
void syncFolder(const fs::path& folder) {
    const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    static_cast<void>(fsync(descriptor));
    close(descriptor);
}
} // namespace

Look lookBelow(const std::string& folder, const std::vector<std::string>& parts, std::string& path) {
    path = folder;
    for (const std::string& part : parts) {
        const Look look = stepDown(path, part);
        if (look != Look::found) return look;
    }
    struct stat entry {};
    if (stat(path.c_str(), &entry) != 0) return isMissing(errno) ? Look::missing : Look::failed;
    return S_ISREG(entry.st_mode) ? Look::found : Look::missing;
}

std::string pathBelow(const std::string& folder, const std::vector<std::string>& parts) {
    std::string path = folder;
    for (const std::string& part : parts) {
        if (stepDown(path, part) != Look::found) path += "/" + part;
    }
    return path;
}

std::string targetOf(const std::string& path) {
    fs::path at = path;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        if (!fs::is_symlink(at, error)) return at.string();
        const fs::path next = fs::read_symlink(at, error);
        if (error) return {};
        at = at.parent_path() / next; // an absolute one stands alone
    }
    return {};
}

bool readReal(const std::string& path, std::vector<uint8_t>& out) {
    out.clear();
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) return false;
    std::FILE* file = std::fopen(path.c_str(), "rbe");
    if (!file) return false;
    uint8_t block[65536];
    size_t n = 0;
    bool ok = true;
    while (ok && (n = std::fread(block, 1, sizeof block, file)) > 0) {
        ok = out.size() + n <= kLargestFile;
        if (ok) out.insert(out.end(), block, block + n);
    }
    ok = std::ferror(file) == 0 && ok;
    std::fclose(file);
    if (!ok) out.clear();
    return ok;
}

bool replaceReal(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::error_code error;
    const fs::path folder = fs::path(path).parent_path();
    if (!folder.empty()) fs::create_directories(folder, error);
    const std::string target = targetOf(path);
    if (target.empty() || (fs::exists(target, error) && !fs::is_regular_file(target, error))) return false;
    removeLeftBehind(target);
    std::string beside;
    const int file = createBeside(target, beside);
    if (file < 0) return false;
    const bool ok = writeAndFlush(file, bytes) && std::rename(beside.c_str(), target.c_str()) == 0;
    if (ok) {
        syncFolder(fs::path(target).parent_path());
    } else {
        std::remove(beside.c_str());
    }
    return ok;
}
} // namespace platform
