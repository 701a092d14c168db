#include "core/log_mgr.h"

#include "platform/clock.h"
#include "platform/console_streams.h"
#include "platform/files.h"
#include "platform/folder_lock.h"

#include <cstdarg>

namespace {
constexpr const char* kPage = "quorvane.html";
constexpr size_t kRowBuffer = 5000;
constexpr const char* kRowTemplates[] = {
    "<tr><td class=\"debug\" valign=\"top\">%s</td><td class=\"debug\" valign=\"top\">%s</td>\n",
    "<tr><td class=\"info\" valign=\"top\">%s</td><td class=\"info\">%s</td>\n",
    "<tr><td class=\"error\" valign=\"top\">%s</td><td class=\"error\" valign=\"top\">%s</td>\n",
};

cLogMgr* g_instance = nullptr;
bool g_terminal = false;
cLogMgr::Listener g_listener = nullptr;

void fileProblem(const std::string& sentence) {
    cLogMgr::instance().error(sentence);
}

std::string today() {
    return logDate(platform::monthDayYear());
}
} // namespace

std::string logDate(const std::string& monthDayYear) {
    static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "Maj", "Jun",
                                              "Jul", "Aug", "Sep", "Okt", "Nov", "Dec"};
    if (monthDayYear.size() < 8) return "00 XXX -20";
    const int month = (monthDayYear[0] - '0') * 10 + (monthDayYear[1] - '0');
    const char* name = month >= 1 && month <= 12 ? kMonths[month - 1] : "XXX";
    return monthDayYear.substr(3, 2) + " " + name + " -20" + monthDayYear.substr(6, 2);
}

cLogMgr& cLogMgr::instance() {
    if (!g_instance) {
        g_instance = new cLogMgr;
        platform::setFileProblemListener(&fileProblem);
        g_instance->debug("Obviously, the log manager was created correctly since you're reading this");
    }
    return *g_instance;
}

void cLogMgr::destroy() {
    if (!g_instance) return;
    g_instance->debug("cLogMgr properly destroyed.");
    platform::setFileProblemListener(nullptr);
    delete g_instance;
    g_instance = nullptr;
}

void cLogMgr::useTerminal(bool on) {
    g_terminal = on;
}
void cLogMgr::setListener(Listener listener) {
    g_listener = listener;
}

cLogMgr::cLogMgr() {
    if (g_terminal) return;
    const int file = platform::openRunFile(kPage, path_);
    if (path_.empty()) return;
    if (file >= 0) page_ = fdopen(file, "wb");
    if (!page_) {
        losePage();
        return;
    }
    std::setvbuf(page_, nullptr, _IOLBF, BUFSIZ);
    writeHead();
}

cLogMgr::~cLogMgr() {
    write("\n</table><br>Log Manager terminated at %s.\n<br>Good bye...\n</td></table>\n\n</body>\n\n</html>",
          platform::timeOfDay().c_str());
    if (page_) std::fclose(page_);
}

void cLogMgr::writeHead() {
    write("<html>\n\n<head>\n\n<title>Quorvane log, run %s, %s</title>", platform::timeOfDay().c_str(),
          today().c_str());
    static constexpr const char* kStyle[] = {
        "<STYLE TYPE=\"text/css\">\n<!--\n",
        "font { Font-size:10pt; Font-weight:medium; Font-family:Arial,Helvetica}\n",
        ".standard { Font-size:10pt;Color:#505050}\n",
        ".head { Font-size:10pt;Color:#000000; Font-weight:bold; background-color:#DDDDDD; }\n",
        ".debug { Font-size:10pt;Color:#C0C0C0; Font-weight:bold; background-color:#FFFFFF; }\n",
        ".info { Font-size:10pt;Color:#9090FF; Font-weight:bold; background-color:#FFFFFF; }\n",
        ".error { Font-size:10pt;Color:#FF4040; Font-weight:bold; background-color:#FFFFFF; }\n",
        "--></STYLE>\n\n</head>\n\n<body bgcolor=\"#FFFFFF\"><font face=\"Verdana,Helvetica,Arial\">",
    };
    for (const char* line : kStyle) write("%s", line);
    write("<center><b><big><big>- Quorvane -</big></big></b><br>\n<small>run %s, %s </small><br><br>\n\n",
          platform::timeOfDay().c_str(), today().c_str());
    write("<table border=0 width=600><tr><td class=\"standard\"><table border=0>\n"
          "<td class=\"head\">Timestamp&nbsp;&nbsp;</td><td class=\"head\">Event</td>");
}

void cLogMgr::write(const char* format, ...) {
    if (!page_) return;
    char buffer[kRowBuffer];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (std::fputs(buffer, page_) == EOF) losePage();
}

std::string cLogMgr::whereToRead() const {
    return lost_ || path_.empty() ? "what stands above" : path_;
}

std::string cLogMgr::pageName() const {
    return lost_ || path_.empty() ? "The terminal" : path_.substr(path_.rfind('/') + 1);
}

void cLogMgr::losePage() {
    if (page_) std::fclose(page_);
    page_ = nullptr;
    lost_ = true;
    platform::tellTerminal("The log " + path_ +
                           " cannot be written, nor can settings be saved there. "
                           "Is the directory writable, is the disk full?");
}

void cLogMgr::row(Level level, const char* message) {
    if (level == Level::error) ++errorCount_;
    if (g_listener) g_listener(level, message);
    if (g_terminal && level == Level::error) std::fprintf(stderr, "%s\n", message);
    if (lost_ && level == Level::error) platform::tellTerminal(message);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    write(kRowTemplates[static_cast<size_t>(level)], platform::timeOfDay().c_str(), message);
#pragma GCC diagnostic pop
}

void cLogMgr::debug(const std::string& message) {
    row(Level::debug, message.c_str());
}
void cLogMgr::info(const std::string& message) {
    row(Level::info, message.c_str());
}
void cLogMgr::error(const std::string& message) {
    row(Level::error, message.c_str());
}

#define QUORVANE_LOG_FORMATTED(name)                                                                         \
    void cLogMgr::name(const char* format, ...) {                                                            \
        char buffer[kRowBuffer];                                                                             \
        va_list args;                                                                                        \
        va_start(args, format);                                                                              \
        std::vsnprintf(buffer, sizeof buffer, format, args);                                                 \
        va_end(args);                                                                                        \
        row(Level::name, buffer);                                                                            \
    }
QUORVANE_LOG_FORMATTED(debug)
QUORVANE_LOG_FORMATTED(info)
QUORVANE_LOG_FORMATTED(error)
#undef QUORVANE_LOG_FORMATTED
