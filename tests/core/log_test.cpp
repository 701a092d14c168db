#include "platform/clock.h"
#include "platform/folder_lock.h"
#include "support/temp_game.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {
const std::string kTime = "00:00:00", kDate = "01 Jan -2070"; // of the fixed clock

std::string head() {
    return "<html>\n\n<head>\n\n<title>Quorvane log, run " + kTime + ", " + kDate +
           "</title><STYLE TYPE=\"text/css\">\n<!--\n"
           "font { Font-size:10pt; Font-weight:medium; Font-family:Arial,Helvetica}\n"
           ".standard { Font-size:10pt;Color:#505050}\n"
           ".head { Font-size:10pt;Color:#000000; Font-weight:bold; background-color:#DDDDDD; }\n"
           ".debug { Font-size:10pt;Color:#C0C0C0; Font-weight:bold; background-color:#FFFFFF; }\n"
           ".info { Font-size:10pt;Color:#9090FF; Font-weight:bold; background-color:#FFFFFF; }\n"
           ".error { Font-size:10pt;Color:#FF4040; Font-weight:bold; background-color:#FFFFFF; }\n"
           "--></STYLE>\n\n</head>\n\n<body bgcolor=\"#FFFFFF\"><font face=\"Verdana,Helvetica,Arial\">"
           "<center><b><big><big>- Quorvane -</big></big></b><br>\n<small>run " +
           kTime + ", " + kDate +
           " </small><br><br>\n\n<table border=0 width=600><tr><td class=\"standard\"><table border=0>\n"
           "<td class=\"head\">Timestamp&nbsp;&nbsp;</td><td class=\"head\">Event</td>" +
           "<tr><td class=\"debug\" valign=\"top\">" + kTime +
           "</td><td class=\"debug\" valign=\"top\">Obviously, the log manager was created correctly since "
           "you're reading this</td>\n";
}

std::string foot() {
    return "<tr><td class=\"debug\" valign=\"top\">" + kTime +
           "</td><td class=\"debug\" valign=\"top\">cLogMgr properly destroyed.</td>\n"
           "\n</table><br>Log Manager terminated at " +
           kTime + ".\n<br>Good bye...\n</td></table>\n\n</body>\n\n</html>";
}

class LogPage : public ::testing::Test {
protected:
    LogPage() { platform::useFixedStep(16); }
    ~LogPage() override { platform::useFixedStep(0); }
};
} // namespace

TEST_F(LogPage, HoldsHeadRowsAndFootByteForByte) {
    TempGame game;
    cLogMgr& log = cLogMgr::instance();
    log.debug("%s is %d", "one", 1);
    log.info("a <b>bold</b> & \"plain\" text");
    log.error(std::string("taken as it is: 100%s %n"));
    cLogMgr::destroy();
    EXPECT_EQ(game.read("quorvane.html"),
              head() +
                  "<tr><td class=\"debug\" valign=\"top\">00:00:00</td><td class=\"debug\" "
                  "valign=\"top\">one is 1</td>\n"
                  "<tr><td class=\"info\" valign=\"top\">00:00:00</td><td class=\"info\">a <b>bold</b> & "
                  "\"plain\" text</td>\n"
                  "<tr><td class=\"error\" valign=\"top\">00:00:00</td><td class=\"error\" "
                  "valign=\"top\">taken as it is: 100%s %n</td>\n" +
                  foot());
    cLogMgr::instance();
    cLogMgr::destroy();
    EXPECT_EQ(game.read("quorvane.html"), head() + foot()) << "a second run replaces the page";
}

TEST_F(LogPage, AnOverlongMessageIsCutAndHurtsNoOther) {
    TempGame game;
    cLogMgr::instance().error("%s", std::string(20000, 'x').c_str());
    cLogMgr::instance().error(std::string(20000, 'y'));
    cLogMgr::destroy();
    const std::string page = game.read("quorvane.html");
    EXPECT_LT(page.size(), head().size() + foot().size() + 2 * 5000);
    EXPECT_GT(page.size(), head().size() + foot().size() + 2 * 4900);
    EXPECT_EQ(page.substr(page.size() - foot().size()), foot());
}

TEST_F(LogPage, WithoutAPageRowsAreLostAndTheProgramRunsOn) {
    TempGame game;
    cLogMgr::destroy();
    std::filesystem::remove(game.dir() + "/quorvane.html");
    std::filesystem::create_directory(game.dir() + "/quorvane.html");
    cLogMgr::instance().error("lost");
    EXPECT_EQ(TempGame::errorCount("lost"), 1) << "listeners still hear of it";
}

TEST_F(LogPage, AnotherProgramsPageIsLeftToIt) {
    TempGame game;
    EXPECT_EQ(cLogMgr::instance().pageName(), "quorvane.html");
    cLogMgr::destroy();
    std::string path;
    const int other = platform::openRunFile("quorvane.html", path);
    EXPECT_EQ(cLogMgr::instance().pageName(), "quorvane-2.html");
    EXPECT_EQ(cLogMgr::instance().whereToRead(), game.dir() + "/quorvane-2.html");
    close(other);
}

TEST(LogDate, IsMadeFromMonthDayAndYear) {
    const char* months[] = {"Jan", "Feb", "Mar", "Apr", "Maj", "Jun",
                            "Jul", "Aug", "Sep", "Okt", "Nov", "Dec"};
    for (int m = 1; m <= 12; ++m) {
        const std::string digits = std::to_string(m / 10) + std::to_string(m % 10);
        EXPECT_EQ(logDate(digits + "/09/31"), std::string("09 ") + months[m - 1] + " -2031");
    }
    EXPECT_EQ(logDate("05/07/04"), "07 Maj -2004");
}
