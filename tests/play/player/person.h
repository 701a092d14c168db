#pragma once
#include "core/auto_player.h"
#include "play/player/eyes.h"
#include "play/player/land.h"

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

/// How good somebody is at it.
struct Skill {
    const char* name;
    int reactionMs;
    float aimDegrees; ///< off the mark at most
};

/// Somebody who plays the game for the first time, with eyes, keys and mouse. Knows what people know of such
/// games: talk to people, try things, go where nobody has been, fight back, rest. Knows no name and no place.
class cPerson {
public:
    cPerson(Skill skill, bool firstPerson, uint32_t seed);
    void step(const eyes::View& view); ///< once a frame: decides, presses keys for the frame to come

    struct Fight {
        uint64_t level;
        float lost; ///< of the health bar, 0 … 1; what came back meanwhile does not count
        int frames;
    };
    struct Stay {
        uint64_t level; ///< as eyes::View counts: a life is a level of its own
        int frames = 0;
        size_t seen = 0, touched = 0;
    };
    // What he tells afterwards.
    std::set<std::string> pages; ///< every page, reply and message read
    size_t wordsRead() const;
    std::string memories() const; ///< of the things of this level, a line each
    std::vector<Fight> fights;    ///< without one that is not over
    std::vector<Stay> stays;
    int deaths = 0;
    int hangs = 0;     ///< times that he hung in the air
    std::string doing; ///< for whoever watches

private:
    /// What he knows of a thing.
    struct Memory {
        eyes::Thing thing;
        uint32_t seenAt = 0;   ///< frame
        int triedInRound = -1; ///< the last round in which he tried it
        int tries = 0, answers = 0, failures = 0;
        int nothingNew = 0;   ///< answers in a row that told nothing new
        float closest = 1e9f; ///< distance from which he tried it
        cVector3 from;        ///< where he stood when it answered
        bool hostile = false;
        int fought = 0; ///< frames
    };
    static constexpr int kDespairs = 14; ///< times at a loss in a row
    enum Errand { kNothing, kTouch, kExplore, kLookAround, kRest, kWander };

    void newLevel(const eyes::View& view);
    void endFight();
    void remember(const eyes::View& view);
    void blame(const eyes::View& view);
    void talk(const eyes::View& view);
    size_t bestReply(const eyes::View& view) const;
    void play(const eyes::View& view);
    bool fight(const eyes::View& view);
    Memory* enemy(const eyes::View& view);
    bool chase(const eyes::View& view, const cVector3& place);
    void attack(const eyes::View& view, const Memory& enemy);
    bool isInReach(const eyes::View& view, const Memory& foe) const;
    bool takeWeapon(const eyes::View& view);
    void chooseErrand(const eyes::View& view);
    bool findGoal();
    float worth(const Memory& memory, float cost) const;
    bool isDull(const Memory& memory) const;
    bool isDeadly(const Memory& memory) const;
    void runErrand(const eyes::View& view);
    void touch(const eyes::View& view);
    bool follow(const eyes::View& view); ///< the way; true at its end or when there is no getting on
    void jumpOver(const eyes::View& view);
    void stuck(const eyes::View& view);
    void giveUp();

    // Hands.
    void hold(int command, bool on);
    void letGo();
    void tap(int command, int frames = 2);
    /// Towards something, or beside it by those degrees; the degrees that are left.
    float turn(const eyes::View& view, const cVector3& to, float aside = 0, float above = 0);
    bool goTo(const eyes::View& view, const cVector3& to, float reach);
    float chance(float least, float most);

    const Skill skill_;
    const bool firstPerson_;
    uint32_t random_;
    cAutoPlayer hands_;
    std::map<int, int> taps_; ///< frames until the command's key is let go
    uint32_t frame_ = 0;
    uint64_t level_ = 0;
    cLand land_;
    std::map<uint64_t, Memory> things_;
    std::map<const void*, int> silentLooks_; ///< how often things that look like this did not answer
    std::set<const void*> hostileLooks_;
    std::map<std::string, int> chosen_;
    std::vector<cVector3> deadly_;                 ///< places of things on the way to which he drowned
    std::deque<std::vector<eyes::Thing>> delayed_; ///< what was in sight, newest last
    std::vector<eyes::Thing> now_;                 ///< of it, as far as he has reacted
    // The errand under way.
    Errand errand_ = kNothing;
    uint64_t target_ = 0;
    std::vector<cLand::Step> way_;
    size_t at_ = 0;
    int errandFrames_ = 0, waited_ = 0, round_ = 0, jumping_ = 0, backing_ = 0, lookFrames_ = 0;
    int atALoss_ = 0; ///< times in a row without anything new
    size_t knownPages_ = 0;
    cVector3 lastPlace_, jumpFrom_, lastAlive_, lastGround_, lastFall_;
    int hanging_ = 0;
    float wander_ = 0; ///< degrees
    int exploreFailures_ = 0;
    int slow_ = 0; ///< frames without getting on
    uint32_t answered_ = 0;
    size_t messages_ = 0, pagesBefore_ = 0;
    // The fight under way.
    float healthBefore_ = 1, fightLost_ = 0;
    int fightFrames_ = 0, calm_ = 0, chase_ = 0, shotAt_ = 0, side_ = 1, weaponTaps_ = 0;
    float aim_ = 0, aimUp_ = 0; ///< degrees off the mark
    int talkFrames_ = 0, pageFrames_ = 0;
    std::string lastPage_;
};
