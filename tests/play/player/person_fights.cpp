// How he fights: whom, with what, from where.

#include "play/player/person.h"
#include "ui/input_settings.h"

#include <cmath>

using eyes::flat;
using eyes::Hold;
using eyes::View;

namespace {
constexpr int kPatience = 1800;                ///< frames of fighting somebody whom nothing hurts
constexpr float kShoots = 11, kStrikes = 2.1f; ///< distances
constexpr int kCalmFrames = 240;               ///< after which a fight is over
constexpr float kNotices = 16;                 ///< enemies farther away are left alone

bool isFar(Hold hold) {
    return hold == Hold::kShot || hold == Hold::kThrow || hold == Hold::kSwing;
}
} // namespace

cPerson::Memory* cPerson::enemy(const View& view) {
    Memory* best = nullptr;
    float least = kNotices;
    for (auto& [id, memory] : things_) {
        if (!memory.hostile || memory.thing.lying || frame_ - memory.seenAt > 120 ||
            memory.fought > kPatience)
            continue;
        const float away = (memory.thing.place - view.hero).length();
        if (away >= least) continue;
        least = away;
        best = &memory;
    }
    return best;
}

bool cPerson::takeWeapon(const View& view) {
    const bool ready = view.hold != Hold::kNothing && view.hold != Hold::kNoWeapon && view.count > 0;
    if (ready && (view.hold != Hold::kSwing || weaponTaps_ > 14)) return true;
    if (weaponTaps_ > 15 || view.hold == Hold::kNothing) return ready;
    if (frame_ % 20 == 0) {
        tap(CMD_NEXT_ITEM);
        ++weaponTaps_;
    }
    return false;
}

bool cPerson::fight(const View& view) {
    if (fightFrames_ > 0) {
        ++fightFrames_;
        if (++calm_ > kCalmFrames) endFight();
    }
    Memory* foe = enemy(view);
    if (!foe) {
        weaponTaps_ = 0;
        // Hurt by somebody who is not in sight: look round for him.
        if (fightFrames_ > 0 && calm_ < 75) {
            letGo();
            turn(view, view.hero + view.right * 3 + view.forward);
            doing = "looks for who hurt him";
            return true;
        }
        return false;
    }
    fightFrames_ = std::max(fightFrames_, 1);
    calm_ = 0;
    const bool armed = takeWeapon(view);
    if (!armed && weaponTaps_ > 15) return false; // nothing to fight with: he goes on with what he does
    if (view.hold == Hold::kNothing) return false;
    errand_ = kNothing;
    ++foe->fought;
    if (isInReach(view, *foe)) {
        attack(view, *foe);
        return true;
    }
    return chase(view, foe->thing.place);
}

bool cPerson::isInReach(const View& view, const Memory& foe) const {
    return flat(foe.thing.place - view.hero) < (isFar(view.hold) ? kShoots : kStrikes) &&
           frame_ - foe.seenAt < 30;
}

/// Along a way that he knows; false when there is none.
bool cPerson::chase(const View& view, const cVector3& place) {
    doing = "goes for somebody";
    if (view.falling) return true;
    if (chase_++ % 50 == 0 || at_ >= way_.size()) {
        land_.plan(view.hero, frame_, cLand::kWalks);
        const uint32_t node = land_.nodeAt(place, 2.5f);
        way_ = land_.way(node);
        at_ = 0;
        if (way_.empty()) return false;
    }
    follow(view);
    return true;
}

void cPerson::attack(const View& view, const Memory& foe) {
    doing = "fights";
    const cVector3 place = foe.thing.place;
    const float away = flat(place - view.hero);
    const bool far = isFar(view.hold);
    ++shotAt_;
    const float left = turn(view, place, aim_, aimUp_);
    const bool facing = std::fabs(left) < 3;
    if (far && away < 3.5f) {
        hold(CMD_FORWARD, false);
        hold(CMD_BACK, true);
        if (shotAt_ < 60) return;
    }
    hold(CMD_BACK, false);
    if (!facing) {
        hold(CMD_FORWARD, !far);
        return;
    }
    // A step towards him turns the hero's own front there; then the stroke or the shot.
    if (shotAt_ > (far ? 34 : 24)) {
        tap(CMD_FORWARD, 3);
        tap(CMD_FIRE, view.hold == Hold::kSwing ? 40 : 6);
        shotAt_ = 0;
        aim_ = chance(-skill_.aimDegrees, skill_.aimDegrees);
        aimUp_ = chance(-skill_.aimDegrees, skill_.aimDegrees);
        side_ = -side_;
        return;
    }
    if (far && shotAt_ > 8 && shotAt_ < 24) {
        hold(CMD_FORWARD, false);
        tap(side_ > 0 ? CMD_RIGHT : CMD_LEFT, 2);
    }
}
