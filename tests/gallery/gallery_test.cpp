// The gallery: a level with an exhibit for every word that level documents know. Each is used as a player
// would use it, in the game's own frames, and what it does is looked at. At the end nothing may be left that
// no exhibit has shown.

#include "audio/audio_mgr.h"
#include "core/name_hash.h"
#include "gallery/hall.h"
#include "script/cml_check_data.h"
#include "script/cml_checker.h"
#include "script/cml_lookups.h"
#include "script/cml_vocabulary.h"
#include "script/dialogue.h"
#include "world/model_objects.h"

#include <AL/al.h>
#include <gtest/gtest.h>

namespace {
/// The hero stands a little higher than the exhibits, as physics leaves him.
bool isAlmost(const cVector3& a, const cVector3& b) {
    return (a - b).length() < 0.03f;
}

void variables(Hall& h) {
    h.enter("ledger");
    h.use();
    for (const auto& [name, local, global] : {std::tuple("a", 10, 55), {"b", 17, 107}, {"none", 0, 0}}) {
        EXPECT_EQ(TestWorld::local("ledger", name), local) << name;
        EXPECT_EQ(h.global(std::string("g") + name), global) << name;
    }
    for (const int32_t die : {TestWorld::local("ledger", "die"), h.global("gdie")}) {
        EXPECT_GE(die, 0);
        EXPECT_LT(die, 6);
    }
    h.attack(kStick);
    for (const auto& [name, value] : {std::pair("p", 15), {"more", 115}, {"less", 85}}) {
        EXPECT_EQ(TestWorld::local("ledger", name), value) << name;
        EXPECT_EQ(h.global(std::string("g") + name), value) << name;
    }
    h.enter("judge");
    h.attack(kStick);
    h.attack(kStick);
    EXPECT_EQ(h.global("right"), 2);
    EXPECT_EQ(h.global("wrong"), 0) << "a test that does not hold was taken to hold";
}

void directions(Hall& h) {
    h.enter("compass");
    h.use(20);
    ASSERT_EQ(TestWorld::local("compass", "step"), 1) << "the pike strikes";
    const cVector3 home(20, 1.25f, 0), there = home + cVector3(0, 0, Hall::kReach);
    const cVector3 chandelier = cVector3(3, 4, 0) * 0.2f;
    for (const auto& [what, facing, position] : {
             std::tuple("player", cVector3(0, 0, 1), home),
             {"invert_player", {0, 0, -1}, home},
             {"target", {-1, 0, 0}, home},
             {"invert_target", {1, 0, 0}, home},
             {"a name", chandelier, home},
             {"inverted", -chandelier, home},
             {"random", {}, home}, // by chance
             {"to the player", {}, there},
             {"origin", {0, 0, -1}, there},
             {"invert_origin", {0, 0, 1}, there},
             {"turn", {1, 0, 0}, there},
             {"to the origin", {1, 0, 0}, home},
             {"level", {1, 0, 0}, home},
             {"to the target", {1, 0, 0}, {18.5f, 1.25f, 0}},
             {"to a name", {1, 0, 0}, {23, 5.25f, 0}},
         }) {
        h.use();
        EXPECT_TRUE(isAlmost(Hall::at("compass"), position)) << what;
        EXPECT_NEAR(Hall::facing("compass").length(), 1, 1e-4f) << what;
        EXPECT_TRUE(facing == cVector3() || isAlmost(Hall::facing("compass"), facing)) << what;
    }
    EXPECT_EQ(TestWorld::object("compass")->getUp(), cVector3(0, 1, 0));
    EXPECT_EQ(TestWorld::object("compass")->boundingRadius(), 2.5f);
}

void sight(Hall& h) {
    h.enter("sentry");
    h.hold(CMD_FORWARD, 20);
    EXPECT_GE(h.global("bumped"), 1);
    EXPECT_EQ(TestWorld::script("sentry").getTarget(), Hall::hero());
    h.stand("sentry");
    h.use();
    h.use();
    EXPECT_EQ(h.global("seen"), 1);
    EXPECT_EQ(h.global("mistaken"), 0);
}

void movement(Hall& h) {
    h.enter("cart");
    h.use(14);
    EXPECT_NEAR(Hall::at("cart").x, 41, 0.15f) << "a tenth of a unit in each of ten frames";
    EXPECT_EQ(TestWorld::script("cart").getSpeed(), 0);
    h.frames(12);
    EXPECT_GT(TestWorld::script("cart").getSpeed(), 0) << "steering";
    h.frames(30);
    EXPECT_LT(Hall::at("cart").z, -1);
    EXPECT_LT(Hall::facing("cart").z, -0.99f);
    EXPECT_EQ(TestWorld::script("cart").getSpeed(), 0);

    h.enter("curtain");
    h.hold(CMD_FORWARD, 40);
    EXPECT_GT(Hall::hero()->getPosition().z, 0.85f) << "it blocks";
    h.use();
    EXPECT_EQ(TestWorld::object("curtain")->body->flags, static_cast<uint32_t>(MOVE_PASSABLE));
    h.hold(CMD_FORWARD, 40);
    EXPECT_LT(Hall::hero()->getPosition().z, -1) << "it lets pass";
    h.stand("curtain");
    h.use();
    EXPECT_EQ(TestWorld::object("curtain")->body->flags, static_cast<uint32_t>(MOVE_SOLID));

    h.enter("leash");
    h.use();
    h.stand("leash", 20);
    h.frames(60);
    EXPECT_EQ(h.global("returned"), 1);
    EXPECT_EQ(h.global("arrived"), 1);
    EXPECT_EQ(h.global("guest"), 0);
    h.stand("leash");
    h.frames(2);
    EXPECT_GT(h.global("guest"), 0);

    h.enter("ball");
    h.use(30);
    EXPECT_EQ(h.global("bounced"), 1);
    EXPECT_GT(Hall::at("ball").y, 1) << "on its way up";
}

void switches(Hall& h) {
    h.enter("switch");
    h.use();
    EXPECT_FALSE(TestWorld::script("lamp").isActive());
    h.use();
    EXPECT_TRUE(TestWorld::script("lamp").isActive());
    EXPECT_EQ(h.global("lit"), 1);
    EXPECT_NE(TestWorld::object("balloon"), nullptr);
    h.use();
    EXPECT_EQ(h.global("lit"), 2);
    EXPECT_EQ(TestWorld::object("balloon"), nullptr);
}

void hits(Hall& h) {
    h.enter("dummy");
    h.attack(kStick);
    EXPECT_EQ(h.global("struck"), 15);
    h.attack(kPistol);
    EXPECT_EQ(h.global("shot"), 20);
    h.attack(kGrenade);
    EXPECT_EQ(h.global("burnt"), 40);
}

void kinds(Hall& h) {
    h.enter("hound");
    h.use(80);
    EXPECT_EQ(h.global("known"), 1);
    EXPECT_EQ(h.global("stranger"), 1);
    EXPECT_EQ(h.global("confused"), 0);
}

void trade(Hall& h) {
    h.enter("merchant");
    for (const auto& [coins, stick, inHand] : {std::tuple(6, true, false),
                                               {3, true, false},
                                               {3, true, true},
                                               {2, true, true},
                                               {2, false, false},
                                               {0, false, false},
                                               {0, false, false}}) {
        h.use();
        const cInventory& inventory = h.world.inventory;
        EXPECT_EQ(inventory.countOf(kCoin), coins);
        EXPECT_EQ(inventory.countOf(kPistol), 7) << coins;
        EXPECT_EQ(inventory.has(kStick), stick) << coins;
        EXPECT_EQ(inventory.isSelected(kStick), inHand) << coins;
    }
    EXPECT_EQ(h.global("sold"), 1);
}

void attacks(Hall& h) {
    h.enter("archer");
    h.use();
    EXPECT_EQ(h.world.health, 80) << "shot";
    h.attack(kPistol);
    ASSERT_EQ(TestWorld::local("archer", "step"), 1);
    const auto faces = [](const cVector3& direction) { return isAlmost(Hall::facing("archer"), direction); };
    int32_t before = h.world.health;
    h.use();
    EXPECT_EQ(before - h.world.health, 15) << "struck";
    h.use();
    EXPECT_EQ(h.global("pierced"), 20);
    EXPECT_TRUE(faces({1, 0, 0}));
    h.use();
    EXPECT_TRUE(faces({-1, 0, 0}));
    EXPECT_EQ(h.global("pierced"), 20);
    h.use(200);
    EXPECT_EQ(h.global("singed"), 1) << "a bomb in an arc";
    before = h.world.health;
    h.use(60);
    EXPECT_LT(h.world.health, before) << "a dart, straight";
    h.use();
    EXPECT_NEAR(Hall::facing("archer").length(), 1, 1e-4f);
    h.use();
    EXPECT_TRUE(faces({0, 0, -1})) << "its origin, from where the hero stands";
}

void figures(Hall& h) {
    h.enter("dancer");
    const cCharacterPose& pose = static_cast<cAnimatedObject*>(TestWorld::object("dancer"))->pose();
    const auto shows = [&](const char* legs, const char* torso) {
        return pose.getState(kLowerPart).nameCode == nameHash(legs) &&
               pose.getState(kUpperPart).nameCode == nameHash(torso);
    };
    h.use(30);
    EXPECT_TRUE(shows("FIRST", "FIRST"));
    EXPECT_TRUE(pose.isPlaying() && pose.isLooping()) << "again and again";
    h.use();
    EXPECT_TRUE(shows("SECOND", "FIRST"));
    EXPECT_FALSE(pose.isPlaying());
    h.use(30);
    EXPECT_TRUE(shows("SECOND", "SECOND"));
    EXPECT_FALSE(pose.isLooping());
    EXPECT_FALSE(pose.isPlaying()) << "to its end";
    EXPECT_EQ(h.global("danced"), 1);
}

/// The page as it is drawn: lines with a bar between them, a colour in front of where it changes.
std::string page() {
    std::string all;
    int y = 0;
    uint32_t colour = 0xFFFFFF;
    for (const auto& word : cDialogue::instance().layOutPage()) {
        const auto now = static_cast<uint32_t>(word.colour.r << 16 | word.colour.g << 8 | word.colour.b);
        if (word.y != y) all += "|";
        if (now != colour) all += "<" + std::to_string(now) + ">";
        y = word.y;
        colour = now;
        all += word.text;
    }
    return all;
}

void conversation(Hall& h) {
    const std::string red = std::to_string(0xFF4040), hero = std::to_string(0xC0C0FF),
                      grey = std::to_string(0x808080);
    h.enter("guide");
    h.use(40);
    EXPECT_EQ(h.app.state(), STATE_DIALOGUE);
    EXPECT_EQ(page(), "Welcome, Quorvane ! ");
    h.press(CMD_USE);
    EXPECT_EQ(page(), "<" + red + ">Red |below |<" + hero + ">Quorvane: mine |<16777215>white ");
    EXPECT_EQ(h.global("told"), 0);
    h.press(CMD_USE);
    EXPECT_EQ(page(), "A page. ");
    EXPECT_EQ(h.global("told"), 1) << "once, however often the page is drawn";
    h.press(CMD_USE);
    EXPECT_EQ(page(), " Yes|<" + grey + ">No");
    h.press(CMD_BACK);
    EXPECT_EQ(page(), " <" + grey + ">Yes|<16777215>No");
    h.press(CMD_USE);
    EXPECT_EQ(page(), " Bad. ");
    h.press(CMD_USE);
    EXPECT_EQ(h.app.state(), STATE_GAME);
    EXPECT_FALSE(cDialogue::instance().isActive());
}

void film(Hall& h) {
    h.enter("projector");
    h.use(0);
    EXPECT_EQ(h.app.state(), STATE_CINEMATIC);
    const auto step = [&] { return static_cast<int>(h.world.cinematic.frame) - 1; };
    h.frames(10 - step());
    EXPECT_TRUE(h.world.camera.getEye().isNear({150, 4, 15}));
    EXPECT_NEAR(h.world.cinematic.fade.r, 0.5f, 1e-4f);
    EXPECT_NEAR(h.world.cinematic.fade.a, 0.5f, 1e-4f);
    h.frames(15);
    EXPECT_TRUE(h.world.camera.getEye().isNear({150, 5, 20}));
    EXPECT_EQ(h.world.cinematic.fade.a, 0);
    EXPECT_NEAR(Hall::hero()->getPosition().x, 150.95f, 0.1f) << "ten steps of his";
    EXPECT_EQ(Hall::hero()->getDirection(), cVector3(1, 0, 0));
    const cCharacterPose& pose = static_cast<cAnimatedObject*>(Hall::hero())->pose();
    EXPECT_EQ(pose.getState(kLowerPart).nameCode, nameHash("SECOND"));
    EXPECT_EQ(pose.getState(kUpperPart).nameCode, nameHash("FIRST"));
    EXPECT_EQ(h.app.state(), STATE_CINEMATIC);
    h.frames(40 - step());
    EXPECT_EQ(h.app.state(), STATE_GAME);
}

void sounds(Hall& h) {
    cAudioMgr& audio = cAudioMgr::instance();
    ASSERT_TRUE(audio.isAudible());
    h.enter("bell");
    const ALuint bell = audio.getSound("bell", true, false)->source;
    const auto heardAt = [&](const cVector3& place) {
        ALint playing = 0;
        cVector3 position;
        alGetSourcei(bell, AL_SOURCE_STATE, &playing);
        alGetSource3f(bell, AL_POSITION, &position.x, &position.y, &position.z);
        alSourceStop(bell);
        return playing == AL_PLAYING && position.isNear(place);
    };
    alSourceStop(bell);
    h.use();
    EXPECT_TRUE(heardAt(Hall::at("bell")));
    h.attack(kStick);
    h.use();
    EXPECT_TRUE(heardAt((Hall::at("bell") + Hall::hero()->getPosition()) * 0.5f));
    audio.stopMusic();
    h.use();
    EXPECT_TRUE(audio.isStreaming());
    h.use(60);
    EXPECT_TRUE(audio.isStreaming());
    EXPECT_GT(h.world.intensity, 100);
    EXPECT_FLOAT_EQ(audio.getMusicVolume(), h.world.playerMusicVolume);
    h.frames(230);
    EXPECT_EQ(h.world.intensity, 0);
    EXPECT_FALSE(audio.isStreaming()) << "risen, faded and gone";
}

void exits(Hall& h) {
    h.enter("boat");
    h.use();
    EXPECT_FALSE(TestWorld::script("boat").isActive()) << "its pilot has it";
    h.enter("exit");
    h.use(80);
    EXPECT_EQ(h.world.levelFile, "annex.xml");
    ASSERT_NE(Hall::hero(), nullptr);
    EXPECT_NEAR(Hall::hero()->getPosition().x, 7, 1e-3f);
    EXPECT_EQ(TestWorld::object("exit"), nullptr);
}

constexpr struct {
    const char* name;
    void (*visit)(Hall&);
} kRooms[] = {
    {"variables", variables}, {"directions", directions},
    {"sight", sight},         {"movement", movement},
    {"switches", switches},   {"hits", hits},
    {"kinds", kinds},         {"trade", trade},
    {"attacks", attacks},     {"figures", figures},
    {"film", film},           {"sounds", sounds},
    {"exits", exits},         {"conversation", conversation},
};

/// Which words each call must have been shown with, besides every keyword with some call.
const std::map<std::string, std::set<std::string>> kForms = {
    {"set_direction",
     {"player", "target", "origin", "name", "invert_player", "invert_target", "invert_origin", "random",
      "inverted"}},
    {"set_position", {"player", "target", "origin", "name"}},
    {"use_item", {"player", "target", "origin", "name", "random", "inverted"}},
    {"distance_less_than", {"player", "target", "origin", "name"}},
    {"distance_more_than", {"player", "target", "origin", "name"}},
    {"in_fov", {"player", "target", "origin", "name"}},
    {"set_animation_type", {"loop", "single"}},
    {"target_type", {"equal", "not_equal"}},
    {"target_race", {"equal", "not_equal"}},
    {"target_class", {"equal", "not_equal"}},
};

void expectEverythingShown(const CallRecorder& shown, const cCmlElement& document) {
    for (const auto& row : cmlProcedures())
        EXPECT_TRUE(shown.procedures.count(std::string(row.name))) << "no exhibit runs " << row.name;
    for (const auto& row : cmlFunctions()) {
        const auto results = shown.tests.find(std::string(row.name));
        EXPECT_TRUE(results != shown.tests.end() && results->second.size() == 2)
            << "no exhibit has " << row.name << " both hold and fail";
    }
    for (const std::string_view trigger : cmlTriggers())
        EXPECT_TRUE(shown.triggers.count(std::string(trigger))) << "no exhibit is triggered by " << trigger;
    for (const auto& row : cmlKeywords()) {
        bool any = false;
        for (const auto& [call, words] : shown.words) any = any || words.count(std::string(row.word));
        EXPECT_TRUE(any) << "no exhibit says " << row.word;
    }
    for (const auto& [call, words] : kForms) {
        for (const std::string& word : words) {
            const auto said = shown.words.find(call);
            EXPECT_TRUE(said != shown.words.end() && said->second.count(word)) << call << " of " << word;
        }
    }
    const cCmlElement* guide = document.findChildWith(kCmlObjectElement, "name", "guide");
    ASSERT_NE(guide, nullptr);
    const std::string& text = guide->findChild(kCmlDialogue)->text;
    for (const char tag : cDialogue::tags())
        EXPECT_NE(text.find(std::string{'^', tag}), std::string::npos) << "nobody says ^" << tag;
}
} // namespace

TEST(Gallery, EveryExhibitWorksAndNothingIsMissing) {
    Hall hall;
    ASSERT_TRUE(hall.started) << TempGame::errors().back();
    for (const auto& room : kRooms) {
        SCOPED_TRACE(room.name);
        room.visit(hall);
    }
    for (const std::string& row : TempGame::errors()) ADD_FAILURE() << row;
    expectEverythingShown(hall.recorder, hall.world.document);
}

TEST(Gallery, TheAuthorsCheckFindsNothingButAWordThatIsJumpedOver) {
    const Hall hall;
    CmlReport report;
    report.quiet = true;
    for (const char* level : {"gallery.xml", "annex.xml"})
        EXPECT_EQ(checkCmlDocument(level, cmlLookups(), gameCheckData(), report, report), 0) << level;
    std::string rows;
    for (const CmlReport::Row& row : report.rows) rows += row.message + "\n";
    EXPECT_EQ(report.rows.size(), 1u) << rows;
    EXPECT_NE(rows.find("\"lost ^6q"), std::string::npos) << rows;
}
