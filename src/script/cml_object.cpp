#include "script/cml_object.h"

#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "core/parse.h"
#include "world/hierarchy.h"
#include "world/object_mgr.h"

namespace {
constexpr float kLeastSteering = 1e-7f; ///< squared
constexpr float kLeastMove = 0.0001f;   ///< squared
constexpr float kThrust = 0.1f;         ///< part of the steering that changes the speed
} // namespace

cVector3 flyingUp(const cVector3& d) {
    return d.cross(cVector3(d.z, 0, -d.x).normalized()).normalized();
}

cCmlObject::cCmlObject(cObject* owner) : cController(owner) {
    active_ = false;
}

void cCmlObject::init(cCmlElement& e) {
    const HierarchyIndices indices =
        lookupHierarchy(e.getAttribute("type"), e.getAttribute("race"), e.getAttribute("class"));
    typeIndex_ = indices.type;
    raceIndex_ = indices.race;
    classIndex_ = indices.classIndex;
    if (const cCmlElement* physics = e.findChild(kCmlPhysics)) {
        if (toInt(physics->getAttribute("gravity")) > 0) flags_ |= MOVE_GROUNDED;
        origin_ = toVector3(physics->getAttribute("position"));
        direction_ = toVector3(physics->getAttribute("direction")).normalized();
        const cCmlElement* volume = physics->findChild(kCmlBoundingVolume);
        if (volume && toInt(volume->getAttribute("solid")) > 0) flags_ |= MOVE_SOLID;
    }
    speed_ = 0;
    element_ = &e;
    active_ = true;
    e.runCalls(*this);
    setAction(e.childIndex(kCmlAction, "name", e.getAttribute("default_action")));
}

void cCmlObject::forgetGone() {
    if (target_ && target_->isGone()) target_ = nullptr;
}

std::string cCmlObject::name() const {
    return element_ ? element_->getAttribute("name") : "";
}

void cCmlObject::logOnce(const std::string& row) {
    if (!reported_) cLogMgr::instance().error(row);
    reported_ = true;
}

void cCmlObject::setAction(int32_t childIndex) {
    const cCmlElement* action = element_ ? element_->childAt(childIndex) : nullptr;
    currentAction_ = action;
    if (action) action->runCalls(*this);
    // An on_set that sets another action has armed that one's triggers already.
    if (currentAction_ != action) return;
    arm(exceeds_, kTriggerDistanceExceeds);
    arm(below_, kTriggerDistanceFallsBelow);
}

void cCmlObject::arm(DistanceTrigger& trigger, CmlTrigger number) const {
    const bool isAction = currentAction_ && currentAction_->elementKind == kCmlAction;
    const cCmlElement* reaction = isAction ? currentAction_->slots[number] : nullptr;
    trigger.armed = reaction != nullptr;
    if (!reaction) return;
    trigger.radiusSq = reaction->distance * reaction->distance;
    trigger.point = reaction->point;
}

bool cCmlObject::referencePoint(const DistanceTrigger& trigger, cVector3& out) const {
    if (trigger.point == kPointPlayer) {
        const cObject* hero = cObjectMgr::instance().hero();
        if (hero) out = hero->getPosition();
        return hero != nullptr;
    }
    out = trigger.point == kPointSelf ? owner_->getPosition() : origin_;
    return true;
}

void cCmlObject::update(uint32_t elapsedMs, GameState* state) {
    if (*state != STATE_GAME && *state != STATE_CINEMATIC) return;
    if (timer_ != 0) {
        if (timer_ <= elapsedMs) {
            timer_ = 0;
            fireReaction(kTriggerTimer);
        } else {
            timer_ -= elapsedMs;
        }
    }
    if (owner_ && exceeds_.armed) checkExceeds();
    if (owner_ && below_.armed) checkFallsBelow();
    if (owner_) move();
}

void cCmlObject::checkExceeds() {
    cVector3 point;
    if (!referencePoint(exceeds_, point)) return;
    const float now = (owner_->getPosition() - point).lengthSq();
    const float next = (owner_->getPosition() + direction_ - point).lengthSq();
    if (now > exceeds_.radiusSq && next > now) fireReaction(kTriggerDistanceExceeds);
}

void cCmlObject::checkFallsBelow() {
    cVector3 point;
    if (!referencePoint(below_, point)) return;
    if ((owner_->getPosition() - point).lengthSq() < below_.radiusSq)
        fireReaction(kTriggerDistanceFallsBelow);
}

void cCmlObject::move() {
    // OUR OWN RULE: steering that cancels the direction out is skipped, speed and all. A direction of no
    // length collapses the model and never steers back.
    const cVector3 steered = (direction_ + acceleration_).normalized();
    if (acceleration_.lengthSq() > kLeastSteering && steered.lengthSq() > 0) {
        direction_ = steered;
        speed_ += kThrust * direction_.dot(acceleration_.normalized()) * accelerationLength_;
        if (owner_->body && speed_ > 2 * owner_->body->shape.radius) speed_ = 2 * owner_->body->shape.radius;
        owner_->setDirection(direction_);
        if (!(flags_ & MOVE_GROUNDED)) tiltUp();
    }
    const cVector3 v = direction_ * speed_;
    if (v.lengthSq() > kLeastMove && owner_->body) {
        owner_->requestMove(v, flags_, cConfigMgr::instance().getFloat("SNAP_GROUND", "movement"));
    }
}

void cCmlObject::tiltUp() const {
    owner_->setUp(flyingUp(direction_));
}

void cCmlObject::setMoveDirection(const cVector3& unitDirection) {
    if (unitDirection.lengthSq() == 0) return;
    direction_ = unitDirection;
    owner_->setDirection(unitDirection);
    if (!(flags_ & MOVE_GROUNDED)) tiltUp();
}

void cCmlObject::setAcceleration(const cVector3& steering) {
    acceleration_ = steering;
    accelerationLength_ = steering.length();
}

void cCmlObject::setFlags(uint32_t mask) {
    flags_ |= mask;
    flagsChanged();
}

void cCmlObject::clearFlags(uint32_t mask) {
    flags_ &= ~mask;
    flagsChanged();
}

/// An object that never moves never posts a request: its body would keep the old flags.
void cCmlObject::flagsChanged() const {
    if (owner_->body) owner_->body->flags = flags_;
}

int32_t cCmlObject::getLocal(int32_t index) const {
    const auto i = static_cast<size_t>(index);
    return element_ && index >= 0 && i < element_->localValues.size() ? element_->localValues[i] : 0;
}

void cCmlObject::setLocal(int32_t index, int32_t value) {
    const auto i = static_cast<size_t>(index);
    if (element_ && index >= 0 && i < element_->localValues.size()) element_->localValues[i] = value;
}

void cCmlObject::addLocal(int32_t index, int32_t value) {
    setLocal(index,
             static_cast<int32_t>(static_cast<uint32_t>(getLocal(index)) + static_cast<uint32_t>(value)));
}
