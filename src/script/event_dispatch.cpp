// What becomes of events: reactions of the objects involved, damage to the hero, changes of the game state.

#include "game/item_def.h"
#include "game/projectile.h"
#include "render/renderer.h"
#include "script/cml_object.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "script/frame_budget.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <cmath>

namespace {
/// Reactions that hit each other (a shoots b, b shoots back) would go on within one frame: so many events
/// beyond those that the frame began with.
constexpr int32_t kMostCausedEvents = 10000;

cCmlObject* scripted(cController* c) {
    return c && c->kind() == cController::kCmlObject ? static_cast<cCmlObject*>(c) : nullptr;
}

/// Truncated toward zero; what an integer cannot hold counts as 0.
int32_t wholeDamage(float value) {
    return std::fabs(value) < 2147483648.0f ? static_cast<int32_t>(value) : 0;
}

void touched(cController* source, cController* other) {
    if (cCmlObject* object = scripted(source)) {
        object->setTarget(other ? other->getOwner() : nullptr);
        object->fireReaction(kTriggerCollisionChr);
    }
    if (cCmlObject* object = scripted(other)) {
        object->setTarget(source ? source->getOwner() : nullptr);
        object->fireReaction(kTriggerCollisionChr);
    }
}

void hit(const cEvent& e, CmlTrigger trigger) {
    const int32_t damage = wholeDamage(e.value);
    if (cCmlObject* object = scripted(e.other)) {
        object->setParam(damage);
        object->setTarget(e.source ? e.source->getOwner() : nullptr);
        object->fireReaction(trigger);
    } else if (e.other && e.other->kind() == cController::kPlayer) {
        cWorld::instance().damage(damage);
    }
}

/// Full damage within damageRadius, then less and less until damageFalloff farther out. Does not become a
/// target.
int32_t explosionDamage(const cItemDef& item, float distance) {
    const float beyond = distance - item.damageRadius;
    if (!(beyond > 0)) return item.damage;
    return wholeDamage(static_cast<float>(item.damage) * (item.damageFalloff - beyond) / item.damageFalloff);
}

void exploded(cController* source) {
    if (!source || source->kind() != cController::kProjectile) return;
    const cItemDef* item = static_cast<cProjectile*>(source)->getItem();
    cObjectMgr::instance().destroy(source->getOwner());
    if (!item) return;
    const cVector3 centre = source->getOwner()->getPosition();
    const float reach = item->damageRadius + item->damageFalloff;
    cObjectMgr::instance().visitTargets(centre, reach, [&](cObject& target, float distance) {
        const int32_t damage = explosionDamage(*item, distance);
        if (cCmlObject* object = scripted(target.getController())) {
            object->setParam(damage);
            object->fireReaction(kTriggerProjectileHit);
        } else {
            cWorld::instance().damage(damage);
        }
    });
}

void reportEndless(const cEvent& e) {
    cCmlObject* object = scripted(e.source) ? scripted(e.source) : scripted(e.other);
    if (object) object->reportOnce("causes events without end");
}

/// Hits arrive behind the menu and the inventory as well. Our own rule: the conversation that one of them
/// starts or ends is what the open menu returns to, since nothing else would close it; the inventory closes
/// first.
GameState& stateBehindMenu(GameState* state) {
    return *state == STATE_MENU ? cInputMgr::instance().returnState : *state;
}

void conversationStarted(GameState* state) {
    GameState& behind = stateBehindMenu(state);
    if (behind == STATE_INVENTORY) cWorld::instance().inventory.close();
    behind = STATE_DIALOGUE;
}

void conversationEnded(GameState* state) {
    GameState& behind = stateBehindMenu(state);
    if (*state != STATE_MENU || behind == STATE_DIALOGUE) behind = STATE_GAME;
}

void handle(const cEvent& e, GameState* state) {
    switch (e.type) {
    case cEvent::kTouchedGeometry:
        if (cCmlObject* object = scripted(e.source)) object->fireReaction(kTriggerCollisionMesh);
        break;
    case cEvent::kTouchedBody:
        touched(e.source, e.other);
        break;
    case cEvent::kDialogueStarted:
        if (cDialogue::instance().isActive()) conversationStarted(state);
        break;
    case cEvent::kDialogueEnded:
        if (!cDialogue::instance().isActive()) conversationEnded(state);
        break;
    case cEvent::kBallisticHit:
        hit(e, kTriggerBallisticHit);
        break;
    case cEvent::kMeleeHit:
        hit(e, kTriggerMeleeHit);
        break;
    case cEvent::kExplosion:
        exploded(e.source);
        break;
    }
}
} // namespace

void cEventMgr::process(uint32_t, GameState* state) {
    cRenderer::instance().addDebugText("%d events cleared", count());
    if (count() == kMostEvents) reportEndless(events_.back());
    for (int32_t left = count() + kMostCausedEvents; !events_.empty(); --left) {
        // Taken off first: a reaction may post further events, which are handled next.
        const cEvent event = events_.back();
        events_.pop_back();
        if (left > 0) {
            handle(event, state);
            continue;
        }
        reportEndless(event);
        events_.clear();
    }
    FrameBudget::instance().renew();
}
