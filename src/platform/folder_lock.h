#pragma once
#include <string>

namespace platform {
/// While it lives no other program is between reading and replacing a file of the folder in which this file
/// of the user directory, or what its links lead to, really stands. Does not nest. Waits at most 3 s, then
/// goes on with a row in the log: a program that was stopped while it held the lock must not keep others from
/// saving. Where nothing can be locked the save goes on as well, with one row a folder.
class cFolderLock {
public:
    explicit cFolderLock(const std::string& name);
    ~cFolderLock();
    cFolderLock(const cFolderLock&) = delete;
    cFolderLock& operator=(const cFolderLock&) = delete;

private:
    int file_ = -1;
};

/// Opens a file of the user directory, empty, that stays open for the run (the log); `path` is what it is.
/// While another program writes it, "name-2.ext" is opened instead, up to -9. −1 when none can be opened; for
/// the caller to close.
int openRunFile(const std::string& name, std::string& path);
} // namespace platform
