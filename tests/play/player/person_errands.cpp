// What he does in peace: tries things, goes where nobody has been, jumps, rests.

#include "play/player/person.h"
#include "ui/input_settings.h"

#include <algorithm>
#include <cmath>

using eyes::flat;
using eyes::Thing;
using eyes::View;

namespace {
constexpr float kAtIt = 0.9f;                       ///< from where a thing can be tried
constexpr float kRestBelow = 0.6f, kRested = 0.95f; ///< of the health bar
constexpr float kAnswersWithin = 3;
constexpr size_t kBoxedIn = 30;  ///< places: he has got himself somewhere odd
constexpr int kGetsBold = 4;     ///< times at a loss
constexpr int kSilentEnough = 2; ///< of a look: more of it answer neither
} // namespace

float cPerson::worth(const Memory& memory, float cost) const {
    const Thing& thing = memory.thing;
    float price = cost + 4 * static_cast<float>(memory.failures) + 8 * static_cast<float>(memory.nothingNew);
    if (isDull(memory)) price += 60;
    if (thing.alive && !thing.lying) price -= 4; // people first
    return price;
}

/// What looks like it has not answered.
bool cPerson::isDull(const Memory& memory) const {
    const auto silent = silentLooks_.find(memory.thing.look);
    return !memory.thing.lying && memory.answers == 0 && silent != silentLooks_.end() &&
           silent->second >= kSilentEnough;
}

/// Until nothing else is left.
bool cPerson::isDeadly(const Memory& memory) const {
    const auto near = [&](const cVector3& place) { return (place - memory.thing.place).length() < 1; };
    return round_ < kGetsBold && std::any_of(deadly_.begin(), deadly_.end(), near);
}

void cPerson::chooseErrand(const View& view) {
    letGo();
    errandFrames_ = slow_ = 0;
    lastPlace_ = view.hero;
    if (view.falling) return;
    if (view.health < kRestBelow) {
        errand_ = kRest;
        return;
    }
    // On foot; up to ledges when that leads nowhere; over everything when that does not help either.
    const cLand::Daring boldest = atALoss_ >= kGetsBold ? cLand::kClimbs : cLand::kJumps;
    for (int daring = cLand::kWalks; daring <= boldest; ++daring) {
        land_.plan(view.hero, frame_, static_cast<cLand::Daring>(daring));
        if (findGoal()) return;
    }
    atALoss_ = pages.size() > knownPages_ ? 0 : atALoss_ + 1;
    knownPages_ = pages.size();
    doing = "is at a loss, " + std::to_string(land_.reach()) + " places in reach, round " +
            std::to_string(round_);
    // Everything once more.
    ++round_;
    land_.lookAgain();
    for (auto& [id, memory] : things_) memory.failures = 0;
    errand_ = land_.reach() < kBoxedIn || atALoss_ >= kDespairs ? kWander : kLookAround;
    wander_ = chance(-180, 180);
    lookFrames_ = 0;
}

/// The nearest that is worth it: a thing, or the edge of what he knows.
bool cPerson::findGoal() {
    float least = cLand::kFar;
    uint32_t goal = cLand::kNone;
    for (const auto& [id, memory] : things_) {
        if (memory.triedInRound >= round_ || memory.failures > 3) continue;
        if (memory.hostile && !memory.thing.lying) continue;
        if ((round_ == 0 && isDull(memory)) || isDeadly(memory)) continue;
        uint32_t node =
            memory.answers > 0 && !memory.thing.alive ? land_.nodeAt(memory.from, 0.8f) : cLand::kNone;
        if (node == cLand::kNone) node = land_.nodeAt(memory.thing.place, 1.6f);
        if (round_ > 0 && memory.tries > 0 && memory.answers == 0 && node != cLand::kNone &&
            (land_.placeOf(node) - memory.thing.place).length() > memory.closest - 0.5f)
            continue; // no nearer than before
        const float price = node == cLand::kNone ? cLand::kFar : worth(memory, land_.cost(node));
        if (price >= least) continue;
        least = price;
        goal = node;
        target_ = id;
        errand_ = kTouch;
    }
    const uint32_t edge = land_.nearestEdge();
    if (edge != cLand::kNone && land_.cost(edge) + 2 < least) {
        goal = edge;
        errand_ = kExplore;
    }
    if (goal == cLand::kNone) return false;
    way_ = land_.way(goal);
    at_ = 0;
    waited_ = 0;
    return true;
}

void cPerson::giveUp() {
    if (errand_ == kTouch) ++things_[target_].failures;
    if (errand_ == kExplore && !way_.empty() && ++exploreFailures_ % 2 == 0)
        land_.lookedFrom(way_.back().place);
    letGo();
    errand_ = kNothing;
}

void cPerson::runErrand(const View& view) {
    if (++errandFrames_ > 1500) return giveUp();
    switch (errand_) {
    case kRest:
        doing = "rests";
        if (view.health >= kRested) errand_ = kNothing;
        if (errandFrames_ > 1400) errandFrames_ = 0;
        break;
    case kLookAround:
        turn(view, view.hero + view.right * 3 + view.forward);
        if (++lookFrames_ > 70) {
            land_.lookedFrom(view.hero);
            errand_ = kNothing;
        }
        break;
    case kWander:
        if (std::fabs(wander_) > 3) wander_ -= std::clamp(wander_, -5.0f, 5.0f);
        turn(view, view.hero + view.forward +
                       view.right * (wander_ > 3    ? 0.1f
                                     : wander_ < -3 ? -0.1f
                                                    : 0.0f));
        // Who finds no way out begins again.
        hold(CMD_FORWARD, atALoss_ >= kDespairs || !land_.isWater(view.hero + view.forward * 0.8f));
        if (errandFrames_ > (atALoss_ >= kDespairs ? 300 : 60)) errand_ = kNothing;
        break;
    case kExplore:
        doing = "explores";
        // What he came to see may have come into sight on the way.
        if (follow(view)) {
            errand_ = kLookAround;
            lookFrames_ = 0;
        }
        break;
    case kTouch:
        touch(view);
        break;
    default:
        break;
    }
}

void cPerson::touch(const View& view) {
    Memory& memory = things_[target_];
    doing = "goes to a thing";
    const cVector3 place = memory.thing.place;
    const float away = flat(place - view.hero);
    if (waited_ == 0 && away > kAtIt && at_ < way_.size()) {
        // People do not wait.
        if (errandFrames_ % 60 == 0 && flat(place - way_.back().place) > 2) return chooseErrand(view);
        if (!follow(view)) return;
        at_ = way_.size();
    }
    doing = "tries a thing";
    if (waited_ == 0) {
        const bool ground = land_.isGround(view.hero + view.forward * 0.7f);
        if (!ground) hold(CMD_FORWARD, false);
        if (std::fabs(turn(view, place)) > 30 && ++slow_ < 45) return;
        if (ground && !goTo(view, place, 0.5f) && ++slow_ < 45) return;
        letGo();
    }
    if (waited_++ == 0) {
        memory.triedInRound = round_;
        ++memory.tries;
        memory.closest = std::min(memory.closest, (place - view.hero).length());
        if (memory.tries == 1) ++stays.back().touched;
        answered_ = 0;
        pagesBefore_ = pages.size();
        tap(CMD_USE);
    }
    if (waited_ < 30) return;
    waited_ = 0;
    const bool news = pages.size() > pagesBefore_;
    // Whatever lies here may have answered.
    for (auto& [id, other] : things_) {
        const bool meant = id == target_;
        if (answered_ == 0 ||
            (!meant && (other.thing.alive || (other.thing.place - view.hero).length() > kAnswersWithin)))
            continue;
        ++other.answers;
        other.from = lastGround_;
        if (meant) other.nothingNew = news ? 0 : other.nothingNew + 1;
    }
    if (answered_ > 0) {
        silentLooks_[memory.thing.look] = 0;
    } else {
        ++silentLooks_[memory.thing.look];
    }
    errand_ = kNothing;
}

bool cPerson::follow(const View& view) {
    if (view.falling) return false;
    while (at_ < way_.size() && flat(way_[at_].place - view.hero) < 0.5f &&
           std::fabs(way_[at_].place.y - view.hero.y) < 1.2f)
        ++at_;
    if (at_ >= way_.size()) {
        letGo();
        return true;
    }
    if (way_[at_].jump) {
        jumping_ = 1;
        jumpFrom_ = at_ > 0 ? way_[at_ - 1].place : view.hero;
        return false;
    }
    // As far ahead as the way is straight, a few steps at most.
    size_t ahead = at_;
    while (ahead + 1 < way_.size() && ahead < at_ + 3 && !way_[ahead + 1].jump) ++ahead;
    goTo(view, way_[ahead].place, 0.25f);
    if (++slow_ < 45) return false;
    slow_ = 0;
    const float moved = (view.hero - lastPlace_).length();
    lastPlace_ = view.hero;
    if (moved < 0.5f) {
        stuck(view);
        giveUp();
        return false;
    }
    return false;
}

void cPerson::stuck(const View& view) {
    land_.block(view.hero + view.forward * 0.6f, frame_);
    land_.block(view.hero + view.forward * 0.9f, frame_);
    letGo();
    if (land_.isGround(view.hero - view.forward * 0.8f)) backing_ = 12;
}

/// To the take-off, turn, run, jump, and see where he has come to.
void cPerson::jumpOver(const View& view) {
    doing = "jumps";
    const cVector3 to = way_[at_].place;
    ++jumping_;
    if (jumping_ < 60) {
        if (goTo(view, jumpFrom_, 0.2f) || jumping_ == 59) jumping_ = 60;
        return;
    }
    if (jumping_ < 90) {
        hold(CMD_FORWARD, false);
        if (std::fabs(turn(view, to)) < 3 || jumping_ == 89) jumping_ = 90;
        return;
    }
    hold(CMD_FORWARD, true);
    if (jumping_ == 92) tap(CMD_JUMP, 4);
    if (jumping_ < 100 || (view.falling && jumping_ < 200)) return;
    letGo();
    jumping_ = 0;
    slow_ = 0;
    if (std::fabs(view.hero.y - to.y) < 0.5f) {
        ++at_;
    } else {
        land_.bumped(jumpFrom_, to);
        giveUp();
    }
}
