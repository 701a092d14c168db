#pragma once
#include "core/log_mgr.h"
#include "platform/files.h"

#include <string>
#include <vector>

/// A fresh, empty user directory as the only file root, removed afterwards; log rows are collected.
class TempGame {
public:
    /// With a data directory behind the user directory when one is named.
    explicit TempGame(const std::string& dataDir = {});
    ~TempGame();
    TempGame(const TempGame&) = delete;
    TempGame& operator=(const TempGame&) = delete;

    void write(const std::string& name, const std::string& text) const;
    std::string read(const std::string& name) const; ///< empty when there is none
    const std::string& dir() const { return dir_; }

    static const std::vector<std::string>& errors(); ///< error rows since construction or clearErrors
    static void clearErrors();
    static int errorCount(const std::string& row);

private:
    std::string dir_;
};
