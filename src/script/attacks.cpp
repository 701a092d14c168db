#include "script/attacks.h"

#include "audio/audio_mgr.h"
#include "game/projectile.h"
#include "game/weapons.h"
#include "platform/random.h"
#include "script/cml_object.h"
#include "script/cml_vocabulary.h"
#include "script/event_mgr.h"
#include "script/frame_budget.h"
#include "script/targets.h"
#include "world/object_mgr.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {
constexpr float kAimRise = 0.5f; ///< at the hero's chest
constexpr float kShotSpread = 0.003f, kThrowSpread = 0.001f;
constexpr int64_t kSpreadBase = 101;       ///< less the skill, of which documents give any number
constexpr int32_t kShortestStraight = 101; ///< ms; what flies straight for less is thrown in an arc
constexpr float kLaunchGap = 0.1f, kLeastRise = 0.05f, kRiseStep = 0.001f;
constexpr int kRiseSteps = 100;

struct Aim {
    cVector3 point;
    cVector3 direction; ///< unit vector, unless the aim is where the object stands
};

/// None when the player or the last target is meant and there is none; a name of nothing is straight ahead.
std::optional<Aim> aimAt(const cCmlObject& self, int32_t target) {
    const cVector3& mine = self.getOwner()->getPosition();
    const auto along = [&](const cVector3& d) { return Aim{mine + d, d}; };
    cVector3 there;
    switch (target) {
    case kWordPlayer:
    case kWordTarget:
        if (!targetPosition(self, target, there)) return std::nullopt;
        if (target == kWordPlayer) there.y += kAimRise;
        return Aim{there, there - mine};
    case kWordRandom:
        return along(randomDirection());
    case kWordOrigin:
        return Aim{{}, self.getOrigin() - mine}; // it faces its origin, but aims at the middle of the world
    case kWordInverted:
        return along(-self.getOwner()->getDirection());
    case kWordInvertTarget:
    case kWordInvertPlayer:
    case kWordInvertOrigin:
        break;
    default:
        if (targetPosition(self, target, there)) return Aim{there, there - mine};
    }
    return along(self.getOwner()->getDirection());
}

cVector3 spread(int32_t skill, float step) {
    const int64_t s = std::max<int64_t>(1, kSpreadBase - skill);
    const auto component = [&] { return static_cast<float>(platform::randomNumber() % s - s / 2) * step; };
    const float x = component(), y = component(), z = component();
    return {x, y, z};
}

void shoot(cCmlObject& self, const cItemDef& item, const Aim& aim, int32_t skill) {
    const cVector3& mine = self.getOwner()->getPosition();
    const cVector3 ray = ((aim.point - mine).normalized() + spread(skill, kShotSpread)).normalized();
    const cObject* hit =
        cObjectMgr::instance().findShotTarget(self.getOwner(), mine, ray, static_cast<float>(item.range));
    if (hit)
        cEventMgr::instance().post(cEvent::kBallisticHit, &self, hit->getController(),
                                   static_cast<float>(item.damage));
}

/// Velocity of a throw that comes to `aim` under the item's gravity; straight at full speed when nothing
/// pulls it there.
cVector3 throwArc(const cItemDef& item, const cVector3& start, const cVector3& aim,
                  const cVector3& direction) {
    const float extra = static_cast<float>(platform::randomNumber() % kRiseSteps) * kRiseStep;
    const float rise = (direction.y >= kLeastRise ? direction.y / 2 : kLeastRise) + extra;
    const float g = item.gravityOrOffset.y;
    // start + rise·t + g·t²/2 = aim, the later of the two times; with a g that lifts, the only one to come.
    const float height = start.y - aim.y, root = rise * rise - 2 * g * height;
    const float time = g != 0 && root >= 0 ? (-rise + std::copysign(std::sqrt(root), g)) / g : 0;
    const cVector3 level(aim.x - start.x, 0, aim.z - start.z);
    const float distance = level.length();
    if (!(time > 0) || !std::isfinite(distance / time)) return direction * item.maxSpeed;
    cVector3 velocity = distance > 0 ? level * (1 / distance) * (distance / time) : cVector3();
    velocity.y = rise;
    return velocity;
}

void launch(cCmlObject& self, const cItemDef& item, const Aim& aim, int32_t skill) {
    if (cProjectile::inFlight() >= cProjectile::kMostInFlight) {
        self.reportOnce("throws more than can be in the air");
        return;
    }
    const cObject& owner = *self.getOwner();
    const cVector3 start =
        owner.getPosition() + aim.direction * (owner.boundingRadius() + item.radius + kLaunchGap);
    cVector3 velocity = item.duration < kShortestStraight ? throwArc(item, start, aim.point, aim.direction)
                                                          : aim.direction * item.maxSpeed;
    if (velocity.lengthSq() > 0) velocity += spread(skill, kThrowSpread);
    launchProjectile(item, start, velocity);
}

void strike(cCmlObject& self, const cItemDef& item) {
    const cObject& owner = *self.getOwner();
    const cVector3 &d = owner.getDirection(), &u = owner.getUp(), &o = item.gravityOrOffset;
    const cVector3 centre = owner.getPosition() - u.cross(d) * o.x + u * o.y - d * o.z;
    const cObject* hit = cObjectMgr::instance().findBlowTarget(&owner, centre, item.radius);
    if (hit)
        cEventMgr::instance().post(cEvent::kMeleeHit, &self, hit->getController(),
                                   static_cast<float>(item.damage));
}
} // namespace

void attackWith(cCmlObject& self, int32_t skill, int32_t itemPosition, int32_t target) {
    if (!self.spend(FrameBudget::instance().attacks)) return;
    std::optional<Aim> found = aimAt(self, target);
    if (!found) return;
    Aim& aim = *found;
    if (self.getFlags() & MOVE_GROUNDED) aim.direction.y = 0;
    aim.direction = aim.direction.normalized();
    self.setMoveDirection(aim.direction);
    const cCmlElement* element = self.getElement()->childAt(itemPosition);
    const cItemDef* item = element ? element->item : nullptr;
    if (!item) {
        self.logOnce("Object tried to use unexesting item! Its name is " + self.name());
        return;
    }
    switch (item->weaponType) {
    case kBallistic:
        shoot(self, *item, aim, skill);
        return;
    case kProjectileWeapon:
        launch(self, *item, aim, skill);
        break;
    case kCloseRange:
        strike(self, *item);
        break;
    default:
        return;
    }
    if (item->useSound != 0)
        cAudioMgr::instance().playSoundIdAt(item->useSound, self.getOwner()->getPosition());
}
