#include "game/projectile.h"

#include "audio/audio_mgr.h"
#include "game/item_def.h"
#include "render/particles.h"
#include "script/cml_object.h"
#include "script/event_mgr.h"
#include "world/object_mgr.h"

#include <algorithm>

void cProjectile::launch(const cItemDef& item, const cVector3& position, const cVector3& velocity) {
    item_ = &item;
    position_ = position;
    velocity_ = velocity;
    delay_ = item.duration;
    active_ = true;
}

void cProjectile::update(uint32_t elapsedMs, GameState*) {
    if (!item_) return;
    if (delay_ < 1) {
        fall();
    } else {
        delay_ = static_cast<int32_t>(std::max<int64_t>(static_cast<int64_t>(delay_) - elapsedMs, 0));
    }
    position_ += velocity_;
    owner_->setPosition(position_);
    const cVector3 direction = velocity_.normalized();
    owner_->setDirection(direction);
    owner_->setUp(flyingUp(direction));
    if (cObjectMgr::instance().projectileHits(position_, item_->radius, owner_)) hit();
}

/// Never more than its diameter in one update, or it would fly through what it should hit.
void cProjectile::fall() {
    velocity_ += item_->gravityOrOffset;
    const float r = item_->radius;
    if (velocity_.lengthSq() > 4 * r * r) velocity_ = velocity_.normalized() * (2 * r);
}

/// What the explosion does, and the end of the projectile, is the event's business.
void cProjectile::hit() {
    cEventMgr::instance().post(cEvent::kExplosion, this);
    if (item_->hitSound != 0) cAudioMgr::instance().playSoundIdAt(item_->hitSound, position_);
    if (item_->explodes) startExplosion(position_);
}
