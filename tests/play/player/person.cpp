#include "play/player/person.h"

#include "ui/input_mgr.h"
#include "ui/input_settings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <sstream>

using eyes::flat;
using eyes::Thing;
using eyes::View;

namespace {
constexpr int kFrameMs = 16;
constexpr float kRadiansToDegrees = 57.29578f;
constexpr float kFastestTurn = 6;                 ///< degrees a frame
constexpr float kThirdTurn = 25, kFirstTurn = 50; ///< degrees for one unit of look
constexpr int kReadingFrames = 30;                ///< a page at least
constexpr int kBoxOpens = 150;                    ///< frames that a page is waited for
constexpr int kHangs = 120;                       ///< frames in the air on one spot
/// Words of threats and of refusals, which nobody says first who wants to get on in peace.
constexpr const char* kThreats[] = {"fight", "kill", "attack", "draw", "die", "blood", "steal", "rob", "war"};
constexpr const char* kRefusals[] = {"no", "not", "never", "nothing", "none", "nobody", "don't", "won't"};
constexpr int kThreat = 3, kRefusal = 2; ///< as if said so often already
} // namespace

cPerson::cPerson(Skill skill, bool firstPerson, uint32_t seed)
    : skill_(skill), firstPerson_(firstPerson), random_(seed) {}

float cPerson::chance(float least, float most) {
    random_ = random_ * 1664525u + 1013904223u;
    return least + (most - least) * static_cast<float>(random_ >> 8) / 16777216.0f;
}

size_t cPerson::wordsRead() const {
    size_t words = 0;
    for (const std::string& page : pages) {
        std::istringstream in(page);
        for (std::string word; in >> word;) ++words;
    }
    return words;
}

std::string cPerson::memories() const {
    std::ostringstream out;
    for (const auto& [id, m] : things_) {
        const uint32_t node = land_.nodeAt(m.thing.place, 1.6f);
        out << id << " at " << m.thing.place.x << ", " << m.thing.place.y << ", " << m.thing.place.z
            << ": tried " << m.tries << ", answered " << m.answers << ", not reached " << m.failures
            << ", from " << m.closest << ", way " << land_.cost(node) << (m.hostile ? ", hostile" : "")
            << "\n";
    }
    return out.str();
}

// --- Hands

void cPerson::hold(int command, bool on) {
    const bool everywhere = command == CMD_RUN || command == CMD_TOGGLE_VIEW;
    for (const int view : {0, kFirstPersonCommands}) {
        if (view != 0 && everywhere) continue;
        on ? hands_.press(command + view) : hands_.release(command + view);
    }
}

void cPerson::letGo() {
    for (const int command : {CMD_FORWARD, CMD_BACK, CMD_LEFT, CMD_RIGHT, CMD_RUN, CMD_FIRE, CMD_JUMP})
        hold(command, false);
}

void cPerson::tap(int command, int frames) {
    hold(command, true);
    taps_[command] = frames;
}

float cPerson::turn(const View& view, const cVector3& to, float aside, float above) {
    const cVector3 way = to - view.hero;
    if (flat(way) < 0.01f) return 0;
    const float left = std::atan2(view.right.dot(way), view.forward.dot(way)) * kRadiansToDegrees + aside;
    const float degrees = std::clamp(left, -kFastestTurn, kFastestTurn);
    // The height of what is looked at; walking looks a little down.
    const float wanted = view.firstPerson ? std::atan2(way.y - 0.3f, std::max(flat(way), 1.0f)) - 0.12f +
                                                above / kRadiansToDegrees
                                          : -0.2f;
    const float unit = view.firstPerson ? kFirstTurn : kThirdTurn;
    const float sensitivity = cInputMgr::instance().bindings.settings.sensitivity;
    const float up = std::clamp((wanted - view.pitch) * 0.2f, -0.05f, 0.05f);
    hands_.look(static_cast<int>(degrees / unit / sensitivity),
                static_cast<int>(view.firstPerson ? up / sensitivity
                                                  : up * kRadiansToDegrees / kThirdTurn / sensitivity));
    return left;
}

bool cPerson::goTo(const View& view, const cVector3& to, float reach) {
    if (flat(to - view.hero) < reach) {
        hold(CMD_FORWARD, false);
        return true;
    }
    const float left = std::fabs(turn(view, to));
    // At an edge only straight on.
    const bool edge =
        !land_.isGround(view.hero + view.forward * 0.7f) || !land_.isGround(view.hero + view.forward * 1.1f);
    hold(CMD_RUN, edge); // at a walk
    hold(CMD_FORWARD, left < (edge ? 8 : 40));
    return false;
}

// --- What he sees

void cPerson::newLevel(const View& view) {
    const bool died = healthBefore_ <= 0;
    if (died) {
        ++deaths;
        if (!fightFrames_ && atALoss_ < kDespairs) { // nobody else did it
            land_.fear(lastAlive_);
            land_.fear(lastGround_);
            if (errand_ == kTouch) deadly_.push_back(things_[target_].thing.place);
        }
    }
    endFight();
    level_ = view.level;
    if (!died) {
        land_ = cLand();
        silentLooks_.clear();
        hostileLooks_.clear();
        deadly_.clear();
    }
    things_.clear();
    delayed_.clear();
    stays.push_back({level_});
    healthBefore_ = view.health;
    round_ = atALoss_ = 0;
    errand_ = kNothing;
    letGo();
    if (view.firstPerson != firstPerson_) tap(CMD_TOGGLE_VIEW);
}

void cPerson::endFight() {
    if (fightFrames_ > 0) fights.push_back({level_, fightLost_, fightFrames_});
    fightFrames_ = calm_ = 0;
    fightLost_ = 0;
}

void cPerson::remember(const View& view) {
    for (const eyes::Spot& spot : view.spots) land_.see(spot, frame_);
    delayed_.push_back(view.things);
    while (delayed_.size() > static_cast<size_t>(skill_.reactionMs / kFrameMs) + 1) delayed_.pop_front();
    now_ = delayed_.front();
    for (const Thing& thing : now_) {
        if (thing.flying) continue;
        const auto [row, fresh] = things_.try_emplace(thing.id);
        Memory& memory = row->second;
        if (thing.lying && !memory.thing.lying) { // somebody may carry something
            memory.triedInRound = -1;
            memory.failures = 0;
        }
        memory.thing = thing;
        memory.seenAt = frame_;
        if (fresh && hostileLooks_.count(thing.look)) memory.hostile = true;
    }
    stays.back().seen = things_.size();
    for (const std::string& message : view.messages) pages.insert(message);
    if (view.messages.size() > messages_) ++answered_;
    messages_ = view.messages.size();
    if (view.health < healthBefore_ - 0.001f && view.screen == STATE_GAME) blame(view);
    healthBefore_ = view.health;
}

/// Who has hurt him: the nearest who looks his way.
void cPerson::blame(const View& view) {
    if (view.health <= 0 && healthBefore_ > 0.5f) return; // nobody strikes like that: it was the water
    fightFrames_ = std::max(fightFrames_, 1);
    fightLost_ += healthBefore_ - std::max(view.health, 0.0f);
    calm_ = 0;
    Memory* guilty = nullptr;
    float least = 30;
    for (auto& [id, memory] : things_) {
        if (!memory.thing.alive || memory.thing.lying || frame_ - memory.seenAt > 200) continue;
        const cVector3 way = view.hero - memory.thing.place;
        const float facing = memory.thing.facing.dot(way) / std::max(flat(way), 0.1f);
        const float away = way.length() * (facing > 0.8f ? 1.0f : 3.0f) *
                           (memory.hostile       ? 0.5f
                            : memory.answers > 0 ? 4.0f
                                                 : 1.0f);
        if (away >= least) continue;
        least = away;
        guilty = &memory;
    }
    if (!guilty) return;
    guilty->hostile = true;
    hostileLooks_.insert(guilty->thing.look);
}

// --- Talking

namespace {
int rashness(const std::string& reply) {
    std::string words = " ";
    for (const char c : reply)
        words += std::isalpha(static_cast<unsigned char>(c)) || c == '\''
                     ? static_cast<char>(std::tolower(static_cast<unsigned char>(c)))
                     : ' ';
    words += ' ';
    int sum = 0;
    for (const char* word : kThreats)
        sum += words.find(std::string(" ") + word + " ") != std::string::npos ? kThreat : 0;
    for (const char* word : kRefusals)
        sum += words.find(std::string(" ") + word + " ") != std::string::npos ? kRefusal : 0;
    return sum;
}
} // namespace

size_t cPerson::bestReply(const View& view) const {
    size_t best = 0;
    int least = 1000;
    for (size_t i = 0; i < view.replies.size(); ++i) {
        const auto found = chosen_.find(view.replies[i]);
        int rank = found == chosen_.end() ? 0 : found->second;
        rank += rashness(view.replies[i]);
        if (rank >= least) continue;
        least = rank;
        best = i;
    }
    return best;
}

void cPerson::talk(const View& view) {
    letGo();
    answered_ += talkFrames_ == 0;
    ++talkFrames_;
    if (!view.page.empty()) pages.insert(view.page);
    const std::string shown = view.replies.empty() ? view.page : view.replies.front();
    if (shown != lastPage_) {
        lastPage_ = shown;
        pageFrames_ = 0;
    }
    if (shown.empty() && talkFrames_ < kBoxOpens) return; // the box is still opening
    if (++pageFrames_ < kReadingFrames || pageFrames_ % kReadingFrames != 0 || !taps_.empty()) return;
    if (view.replies.empty()) {
        tap(CMD_USE);
        return;
    }
    for (const std::string& reply : view.replies) pages.insert(reply);
    const size_t best = bestReply(view);
    if (view.highlighted != best) {
        tap(view.highlighted < best ? CMD_BACK : CMD_FORWARD);
        return;
    }
    ++chosen_[view.replies[best]];
    tap(CMD_USE);
}

// --- Playing

void cPerson::step(const View& view) {
    ++frame_;
    for (auto row = taps_.begin(); row != taps_.end();) {
        if (--row->second > 0) {
            ++row;
            continue;
        }
        hold(row->first, false);
        row = taps_.erase(row);
    }
    if (view.level == 0 || view.screen == STATE_QUIT) return;
    if (view.level != level_) newLevel(view);
    ++stays.back().frames;
    remember(view);
    if (view.screen == STATE_DIALOGUE) return talk(view);
    talkFrames_ = 0;
    if (view.screen != STATE_GAME || view.dark || view.health <= 0) return letGo();
    lastAlive_ = view.hero;
    if (!view.falling && land_.isGround(view.hero)) lastGround_ = view.hero;
    hanging_ = view.falling && (view.hero - lastFall_).length() < 0.01f ? hanging_ + 1 : 0;
    lastFall_ = view.hero;
    if (hanging_ == kHangs) ++hangs;
    play(view);
}

void cPerson::play(const View& view) {
    if (jumping_ > 0) return jumpOver(view);
    if (backing_ > 0) {
        hold(CMD_BACK, --backing_ > 0);
        return;
    }
    if (fight(view)) return;
    if (errand_ == kNothing) chooseErrand(view);
    runErrand(view);
}
