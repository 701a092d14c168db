// The shot, the throw and the blow of cPlayer.

#include "audio/audio_mgr.h"
#include "game/camera.h"
#include "game/player.h"
#include "game/weapons.h"
#include "script/event_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

namespace {
constexpr cVector3 kUp(0, 1, 0);
constexpr float kThrowLift = 0.5f; ///< added to the hero's direction, so that a throw rises
} // namespace

void cPlayer::fire() {
    switch (selectedItem_->weaponType) {
    case kBallistic:
        shoot(*selectedItem_);
        break;
    case kProjectileWeapon:
        throwProjectile(*selectedItem_);
        break;
    case kCloseRange:
        strike(*selectedItem_);
        break;
    default:
        break;
    }
    charge_ = 0;
}

void cPlayer::shoot(const cItemDef& item) {
    cWorld& world = cWorld::instance();
    if (world.inventory.selectedCount() <= 0) return;
    world.inventory.consume(1);
    world.hud.showStats();
    const cVector3 start = owner_->getPosition() + camera_.getOffset();
    const cVector3 ray = camera_.isFirstPerson() ? camera_.getForward() : owner_->getDirection();
    const cObject* hit =
        cObjectMgr::instance().findShotTarget(owner_, start, ray, static_cast<float>(item.range));
    if (hit)
        cEventMgr::instance().post(cEvent::kBallisticHit, this, hit->getController(),
                                   static_cast<float>(item.damage));
    refreshSelected();
    if (selectedItem_) cAudioMgr::instance().playSoundIdAt(selectedItem_->useSound, owner_->getPosition());
}

void cPlayer::throwProjectile(const cItemDef& item) {
    cWorld& world = cWorld::instance();
    if (world.inventory.selectedCount() <= 0) return;
    world.inventory.consume(1);
    world.hud.showStats();
    const cVector3 ahead = owner_->getDirection() * (owner_->boundingRadius() + item.radius);
    const cVector3 direction = camera_.isFirstPerson()
                                   ? camera_.getForward()
                                   : (owner_->getDirection() + kUp * kThrowLift).normalized();
    const float strength = maxHold_ > 0
                               ? static_cast<float>(charge_) * item.maxSpeed / static_cast<float>(maxHold_)
                               : item.maxSpeed;
    launchProjectile(item, owner_->getPosition() + camera_.getOffset() + ahead, direction * strength);
    refreshSelected();
    // The sound of the last one leaving the hand.
    if (!selectedItem_) cAudioMgr::instance().playSoundIdAt(item.useSound, owner_->getPosition());
}

void cPlayer::strike(const cItemDef& item) {
    const cVector3& d = owner_->getDirection();
    cVector3 forward = d, aside = cVector3(d.z, 0, -d.x).normalized(), up = kUp;
    if (camera_.isFirstPerson()) {
        forward = camera_.getForward();
        aside = -camera_.getRight();
        up = forward.cross(aside).normalized();
    }
    const cVector3& o = item.gravityOrOffset;
    const cVector3 centre =
        owner_->getPosition() + camera_.getOffset() - aside * o.x + up * o.y - forward * o.z;
    if (const cObject* hit = cObjectMgr::instance().findBlowTarget(owner_, centre, item.radius))
        cEventMgr::instance().post(cEvent::kMeleeHit, this, hit->getController(),
                                   static_cast<float>(item.damage));
    cAudioMgr::instance().playSoundIdAt(item.useSound, owner_->getPosition());
}
