#pragma once
#include <cstdint>
#include <cstdio>
#include <string>

/// The run's log: one HTML page, "quorvane.html" in the user directory, one table row a message. OUR OWN
/// RULE: while another program writes that page, this run's is "quorvane-2.html", up to -9. Rows are written
/// as they come, so that they outlive a program that is killed. When the page cannot be written the person at
/// the terminal is told so, and every error from then on.
class cLogMgr {
public:
    enum class Level : uint8_t { debug, info, error };
    using Listener = void (*)(Level level, const std::string& message);

    /// The single manager; the first call writes the head and the first row.
    static cLogMgr& instance();
    /// Writes the last row and the foot and closes the page. A later instance() starts a new page.
    static void destroy();
    /// For tool modes, before the first use: errors go to standard error and no page is written.
    static void useTerminal(bool on);
    // Which "… says why".
    std::string whereToRead() const;               ///< at the terminal: the page's path, or what stands above
    std::string pageName() const;                  ///< in the game: "quorvane.html", or the terminal
    int errorCount() const { return errorCount_; } ///< error rows so far
    /// Is told of every row besides; null to stop. For tests and the CML checker.
    static void setListener(Listener listener);

    // A message taken as it is.
    void debug(const std::string& message);
    void info(const std::string& message);
    void error(const std::string& message);
    // printf forms; a row longer than 4999 bytes is cut.
    void debug(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void info(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void error(const char* format, ...) __attribute__((format(printf, 2, 3)));

    cLogMgr(const cLogMgr&) = delete;
    cLogMgr& operator=(const cLogMgr&) = delete;

private:
    cLogMgr();
    ~cLogMgr();
    void writeHead();
    void write(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void row(Level level, const char* message);

    void losePage();

    std::FILE* page_ = nullptr;
    std::string path_; ///< of the page
    bool lost_ = false;
    int errorCount_ = 0;
};

/// "07 Maj -2004" from "05/07/04".
std::string logDate(const std::string& monthDayYear);
