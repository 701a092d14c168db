// The whole game, from the first picture to the last, by somebody who has never seen it (player/person.h).
// One way through it belongs to every check, the others to the long one. PLAYER_TRACE=1 tells what he does.

#include "platform/files.h"
#include "platform/gl_api.h"
#include "play/player/person.h"
#include "support/game_run.h"
#include "world/world.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <regex>

namespace {
constexpr int kPatience = 90 * 60 * 1000 / 16; ///< frames: an hour and a half

/// What he plays.
enum class Data { kShipped, kOtherNames, kMovedStarts };

struct Play {
    Skill skill;
    bool firstPerson;
    Data data;
};
void PrintTo(const Play& play, std::ostream* out) {
    *out << play.skill.name << (play.firstPerson ? ", first person" : ", third person");
}

constexpr Skill kGood{"good", 150, 3}, kFair{"fair", 250, 6}, kPoor{"poor", 400, 12};
constexpr struct {
    const char *level, *start, *moved; ///< attributes of the first place to start from; moved by three units
} kStarts[] = {{"testlevel.xml", "position=\"0,3.4,-0.5\"", "position=\"0,3.6,-3.5\""},
               {"deepwood.xml", "position=\"0,2.38,31\"", "position=\"0,2.98,28\""},
               {"summit.xml", "position=\"0,2.18,30.5\"", "position=\"0,2.98,27.5\""}};

/// Every object by another name, in the document and in all that its scripts say of it.
std::string renamed(std::string document) {
    std::vector<std::string> names;
    static const std::regex object("<object name=\"(\\w+)\"");
    for (std::sregex_iterator found(document.begin(), document.end(), object), end; found != end; ++found)
        names.push_back((*found)[1]);
    EXPECT_GT(names.size(), 10u) << "the names are written otherwise";
    for (size_t i = 0; i < names.size(); ++i) {
        const std::regex name("(name=\"|point=\"|[(.,;\"])" + names[i] + "(?=[\").,;])");
        std::string other = "q";
        for (size_t n = i + 7; n > 0; n /= 5) other += static_cast<char>('a' + n % 5 * 4);
        document = std::regex_replace(document, name, "$1" + other + std::to_string(i * i));
    }
    return document;
}

std::shared_ptr<TempGame> filesFor(Data data) {
    auto files = std::make_shared<TempGame>(GAME_DATA);
    for (const auto& row : kStarts) {
        std::string document = files->read(row.level);
        if (data == Data::kOtherNames) document = renamed(document);
        if (data == Data::kMovedStarts) {
            const size_t at = document.find(row.start);
            if (at == std::string::npos)
                ADD_FAILURE() << row.level << " starts elsewhere";
            else
                document.replace(at, std::string(row.start).size(), row.moved);
        }
        files->write(row.level, document);
    }
    return files;
}

/// For whoever watches.
void tell(int frame, const cPerson& person, const eyes::View& view, const GameRun& game) {
    static std::string before;
    std::string now =
        person.doing + " " +
        (view.replies.empty() ? view.page : view.replies[view.highlighted % view.replies.size()]);
    if (now == before && frame % 600 != 0) return;
    before = std::move(now);
    const cVector3 at = game.hero();
    std::cerr << frame << " " << cWorld::instance().levelFile << " at " << at.x << ", " << at.y << ", "
              << at.z << ", health " << view.health << ": " << before << "\n";
}

void report(const cPerson& person, int frames) {
    std::cout << "  " << frames * 16 / 1000 << " s, " << person.wordsRead() << " words read, "
              << person.deaths << " deaths, hung in the air " << person.hangs << " times\n";
    for (const cPerson::Stay& stay : person.stays) {
        std::cout << "    " << stay.level << ": " << stay.frames * 16 / 1000 << " s, "
                  << stay.seen - stay.touched << " of " << stay.seen
                  << " things seen were never tried; lost in its fights:";
        for (const cPerson::Fight& fight : person.fights)
            if (fight.level == stay.level) std::cout << " " << std::lround(fight.lost * 100);
        std::cout << "\n";
    }
}
} // namespace

class Player : public testing::TestWithParam<Play> {};

TEST_P(Player, FinishesTheGame) {
    const Play& play = GetParam();
    GameRun game({}, filesFor(play.data));
    game.skipIntro();
    game.startNewGame("Ada");
    cPerson person(play.skill, play.firstPerson, 1);
    eyes::cEyes eyes;
    const bool watched = std::getenv("PLAYER_TRACE") != nullptr;
    int frame = 0;
    for (; frame < kPatience && game.app.state() != STATE_QUIT && person.hangs == 0; ++frame) {
        eyes::View view = eyes.look();
        view.screen = game.app.state();
        person.step(view);
        if (watched) tell(frame, person, view, game);
        // Nothing is drawn but while levels load, whose lists and pictures need it.
        platform::setGlContext(cWorld::instance().levelChangePending > 200);
        game.frames(1);
    }
    platform::setGlContext(true);
    report(person, frame);
    EXPECT_EQ(game.app.state(), STATE_QUIT) << "he did not come to the end; what he knew last:\n"
                                            << person.memories();
    EXPECT_EQ(person.hangs, 0) << "he hung in the air";
    // What is destroyed in the frame in which its level is left is asked for once more, with a row.
    const std::string leftBehind = "Attempted to destroy unexisting object";
    const std::vector<std::string>& rows = TempGame::errors();
    if (std::all_of(rows.begin(), rows.end(), [&](const std::string& row) { return row == leftBehind; }))
        TempGame::clearErrors();
}

INSTANTIATE_TEST_SUITE_P(Once, Player, testing::Values(Play{kGood, false, Data::kShipped}));
INSTANTIATE_TEST_SUITE_P(Long, Player,
                         testing::Values(Play{kFair, false, Data::kShipped},
                                         Play{kPoor, false, Data::kShipped},
                                         Play{kGood, true, Data::kShipped}, Play{kFair, true, Data::kShipped},
                                         Play{kPoor, true, Data::kShipped},
                                         Play{kGood, false, Data::kOtherNames},
                                         Play{kGood, false, Data::kMovedStarts}));
