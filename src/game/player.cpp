#include "game/player.h"

#include "audio/audio_mgr.h"
#include "core/config_mgr.h"
#include "core/name_hash.h"
#include "game/camera.h"
#include "script/cml_object.h"
#include "script/dialogue.h"
#include "ui/input_mgr.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

namespace {
constexpr float kLeastMove = 0.01f;
constexpr float kLeastVectorSq = 0.0000001f;
constexpr float kAirControl = 0.2f;     ///< of the body's radius, per update
constexpr float kFallMargin = 0.1f;     ///< the body's radius less this is the fastest fall
constexpr int32_t kScreenHoldOff = 250; ///< ms between two steps in the inventory and in conversations
constexpr float kFirstPersonTurn = 50;  ///< degrees per unit of look input
constexpr float kKeyTurn = 1000;        ///< degrees per unit of sensitivity
constexpr cVector3 kUp(0, 1, 0);

float movement(const char* key) {
    return cConfigMgr::instance().getFloat(key, "movement");
}

float clampAround(float value, float limit) {
    return value > limit ? limit : value < -limit ? -limit : value;
}
} // namespace

const std::array<const char*, cPlayer::kAnimationCount> cPlayer::kAnimationKeys = {
    "IDLE",
    "WALK",
    "RUN",
    "JUMP",
    "JUMPDOWN",
    "CROUCH",
    "CROUCHIDLE",
    "CROUCHWALK",
    "STAND",
    "DEATH1",
    "FALL",
    "PISTOLSHOOT",
    "PISTOLRELOAD",
    "PISTOLDOWN",
    "PISTOLUP",
    "PISTOLHIT2",
    "BODYHIT1",
    "BODYHIT2",
    "CROSSBOWSHOOT",
    "CROSSBOWRELOAD",
    "CROSSBOWDOWN",
    "CROSSBOWUP",
    "CROSSBOWHIT",
    "SNIPERRIFLESHOOT",
    "SNIPERRIFLERELOAD",
    "SNIPERRIFLEDOWN",
    "SNIPERRIFLEUP",
    "SNIPERRIFLEHIT",
    "ROCKTHROW",
    "ROCKDOWN",
    "ROCKUP",
};

cPlayer::cPlayer(cObject* owner)
    : cController(owner), input_(cInputMgr::instance()), camera_(cWorld::instance().camera),
      maxHold_(cConfigMgr::instance().getInt("MAX_HOLD", "input")),
      regenTime_(cConfigMgr::instance().getInt("REGENTIME", "character")) {
    typeIndex_ = raceIndex_ = classIndex_ = 0;
    for (size_t i = 0; i < kAnimationCount; ++i) {
        animations_[i] = nameHash(cConfigMgr::instance().getString(kAnimationKeys[i], "animation"));
    }
    refreshSelected(); // who comes from another level has his weapon in hand
}

cCharacterPose* cPlayer::pose() const {
    return owner_->getVisualKind() == cObject::kAnimated ? &static_cast<cAnimatedObject*>(owner_)->pose()
                                                         : nullptr;
}

void cPlayer::forgetGone() {
    if (vehicle_ && vehicle_->getOwner()->isGone()) vehicle_ = nullptr;
}

bool cPlayer::pressed(int command) const {
    return input_.bindings.isCommandTriggered(command + viewCommands_);
}

void cPlayer::update(uint32_t elapsedMs, GameState* state) {
    switch (*state) {
    case STATE_CINEMATIC:
        updateCinematic();
        break;
    case STATE_INVENTORY:
        updateInventory();
        break;
    case STATE_DIALOGUE:
        updateDialogue(elapsedMs, state);
        break;
    case STATE_GAME:
        if (active_) updatePlay(elapsedMs);
        break;
    default:
        break;
    }
}

void cPlayer::updateCinematic() const {
    const cVector3 v = scriptDirection_ * scriptSpeed_;
    if (v.length() > kLeastMove || isAirborne()) owner_->requestMove(v, kFlags, movement("SNAP_GROUND"));
}

void cPlayer::updateInventory() {
    static constexpr struct {
        int command, dx, dy;
    } kCursor[] = {{CMD_FORWARD, 0, -1}, {CMD_BACK, 0, 1}, {CMD_LEFT, -1, 0}, {CMD_RIGHT, 1, 0}};
    cInventory& inventory = cWorld::instance().inventory;
    for (const auto& row : kCursor) {
        if (!input_.bindings.isCommandTriggered(row.command)) continue;
        inventory.moveCursor(row.dx, row.dy);
        input_.bindings.holdOffCommand(row.command, kScreenHoldOff);
    }
    for (const auto& [command, rows] : {std::pair{CMD_ZOOM_IN, -1}, {CMD_ZOOM_OUT, 1}}) {
        if (!input_.bindings.isCommandTriggered(command)) continue;
        inventory.moveRow(rows);
        input_.bindings.holdOffCommand(command, kScreenHoldOff);
    }
    refreshSelected();
}

void cPlayer::updateDialogue(uint32_t elapsedMs, GameState* state) {
    static constexpr struct {
        int command, other, step;
    } kChoice[] = {{CMD_FORWARD, CMD_LEFT, -1},
                   {CMD_LEFT, CMD_FORWARD, -1},
                   {CMD_BACK, CMD_RIGHT, 1},
                   {CMD_RIGHT, CMD_BACK, 1}};
    cBindings& keys = input_.bindings;
    cDialogue& dialogue = cDialogue::instance();
    dialogue.setHint(dialogue.wantsHint() ? keysOfAReply() : "");
    if (keys.isCommandTriggered(CMD_USE)) {
        dialogue.advance(elapsedMs, state);
        keys.holdOffCommand(CMD_USE, kScreenHoldOff);
    }
    if (keys.isCommandTriggered(CMD_JUMP)) {
        dialogue.close();
        *state = STATE_GAME;
        keys.holdOffCommand(CMD_JUMP, kScreenHoldOff);
    }
    // OUR OWN RULE: a key that has been down since he walked up to somebody chooses nothing until it is let
    // go; else it would be the last reply before he has seen one.
    for (const auto& row : kChoice) {
        bool& held = walkedIntoTalk_[static_cast<size_t>(row.command)];
        held = held && keys.isCommandDown(row.command);
        if (held || !keys.isCommandTriggered(row.command)) continue;
        dialogue.moveChoice(row.step);
        keys.holdOffCommand(row.command, kScreenHoldOff);
        keys.holdOffCommand(row.other, kScreenHoldOff);
    }
}

/// Our own addition: the keys of a reply, as they are bound, until the player has moved a choice once.
std::string cPlayer::keysOfAReply() const {
    const auto key = [&](int command) { return input_.names.shown(input_.bindings.getBinding(command)); };
    return key(CMD_FORWARD) + " and " + key(CMD_BACK) + " choose a reply, " + key(CMD_USE) + " takes it, " +
           key(CMD_JUMP) + " ends the talk.";
}

void cPlayer::updatePlay(uint32_t elapsedMs) {
    viewCommands_ = camera_.isFirstPerson() ? kFirstPersonCommands : 0;
    for (int command = 0; command < 4; ++command)
        walkedIntoTalk_[static_cast<size_t>(command)] = input_.bindings.isCommandDown(command);
    if ((owner_->getPosition() - lastBump_).lengthSq() >= kLeastMove * kLeastMove) lastBump_ = kNoBump;
    if (!look()) return;
    if (input_.bindings.isCommandTriggered(CMD_TOGGLE_VIEW)) camera_.toggleView();
    if (pressed(CMD_ZOOM_IN)) camera_.zoom(-movement("ZOOM_SPEED"));
    if (pressed(CMD_ZOOM_OUT)) camera_.zoom(movement("ZOOM_SPEED"));
    if (died()) return;
    if (pressed(CMD_USE)) useTouched();
    chargeOrFire(elapsedMs);
    chooseItem();
    Gait gait = kIdle;
    const cVector3 v = steer(gait);
    moveOrRest(v, elapsedMs);
    animate(gait);
    runAttack();
}

/// False while the camera flies free: the hero then stands still.
bool cPlayer::look() {
    const bool following = camera_.getTarget() != nullptr;
    const int view = camera_.isFirstPerson() || !following ? 1 : 0;
    float dx, dy;
    if (input_.getCameraControl(view, dx, dy)) {
        camera_.rotate(dx, dy);
        if (camera_.isFirstPerson() && following) turnOwner(dx * kFirstPersonTurn);
    }
    if (!following) camera_.freeMove(input_.bindings);
    return following;
}

/// The matrix helper applies angles negated, which is clockwise seen from above.
void cPlayer::turnOwner(float degreesClockwise) {
    owner_->setDirection(
        cMatrix4::rotationY(degreesClockwise).transformDirection(owner_->getDirection()).normalized());
}

bool cPlayer::died() {
    const cCharacterPose* p = pose();
    // 0: no animation was ever set, or the death has no name.
    if (!p || p->getCurrentAnimation() == 0 || p->getCurrentAnimation() != animations_[kAnimDeath])
        return false;
    if (!p->isPlaying()) {
        active_ = false;
        cWorld::instance().levelChangePending = 1;
    }
    return true;
}

void cPlayer::useTouched() {
    const cObject* touched = cObjectMgr::instance().findTouching(owner_);
    if (!touched || touched->getController()->kind() != kCmlObject) return;
    static_cast<cCmlObject*>(touched->getController())->fireReaction(kTriggerContext);
    refreshSelected();
}

void cPlayer::refreshSelected() {
    selectedItem_ = cWorld::instance().inventory.selectedItem();
}

void cPlayer::chargeOrFire(uint32_t elapsedMs) {
    const int fire = CMD_FIRE + viewCommands_;
    if (charge_ > 0 && attackFrame_ == -1) {
        if (input_.bindings.isCommandDown(fire)) {
            charge_ =
                static_cast<int32_t>(std::min<int64_t>(static_cast<int64_t>(charge_) + elapsedMs, maxHold_));
        } else {
            attackFrame_ = 0;
        }
        return;
    }
    if (!pressed(CMD_FIRE) || attackFrame_ != -1) return;
    refreshSelected(); // scripts give, take and select as well
    if (!selectedItem_ || selectedItem_->weaponType == kNoWeapon) return;
    if (selectedItem_->weaponType == kProjectileWeapon && selectedItem_->charge) {
        charge_ = 1;
        return;
    }
    if (selectedItem_->weaponType == kProjectileWeapon) charge_ = maxHold_;
    attackFrame_ = 0;
}

void cPlayer::chooseItem() {
    if (attackFrame_ != -1) return;
    const bool next = pressed(CMD_NEXT_ITEM), previous = pressed(CMD_PREV_ITEM);
    if (next) cWorld::instance().inventory.step(1);
    if (previous) cWorld::instance().inventory.step(-1);
    if (next || previous) refreshSelected();
}

cVector3 cPlayer::steer(Gait& gait) {
    if (isAirborne()) return steerAirborne(gait);
    cVector3 v;
    const bool byCamera = !camera_.isFirstPerson() && input_.isMoveRelativeToCamera();
    if (byCamera ? steerByCamera(v) : steerByHero(v)) gait = kWalk;
    const bool modifier = input_.bindings.isCommandTriggered(CMD_RUN);
    const bool runs = input_.isWalkDefault() ? modifier : !modifier;
    if (runs && gait == kWalk) gait = kRun;
    v *= movement(runs ? "RUN_SPEED" : "WALK_SPEED");
    v += velocity_;
    velocity_ *= movement("FRICTION");
    if (pressed(CMD_JUMP)) {
        v.y = radius() * movement("JUMP_SPEED");
        velocity_ = v;
        cAudioMgr::instance().playSound("sounds/hopp");
    }
    return v;
}

cVector3 cPlayer::steerAirborne(Gait& gait) {
    gait = velocity_.y > 0 ? kRise : kSink;
    const float r = radius(), fastest = -(r - kFallMargin);
    velocity_.y -= movement("GRAVITY");
    if (velocity_.y <= fastest) {
        velocity_.y = fastest;
        gait = kFall;
    }
    velocity_.x = clampAround(velocity_.x, kAirControl * r);
    velocity_.z = clampAround(velocity_.z, kAirControl * r);
    return velocity_;
}

bool cPlayer::steerByCamera(cVector3& v) {
    const bool forward = pressed(CMD_FORWARD), back = pressed(CMD_BACK);
    const bool right = pressed(CMD_RIGHT), left = pressed(CMD_LEFT);
    if (!forward && !back && !right && !left) return false;
    if (forward) v += camera_.getForward();
    if (back) v -= camera_.getForward();
    if (right) v += camera_.getRight();
    if (left) v -= camera_.getRight();
    v.y = 0;
    v = v.normalized();
    // Opposite keys cancel out: the hero keeps facing where he faced.
    if (v.lengthSq() > 0) owner_->setDirection(v);
    return true;
}

bool cPlayer::steerByHero(cVector3& v) {
    const cVector3& direction = owner_->getDirection();
    const cVector3 side = direction.cross(kUp).normalized();
    const bool forward = pressed(CMD_FORWARD), back = pressed(CMD_BACK);
    const bool left = pressed(CMD_LEFT), right = pressed(CMD_RIGHT);
    bool moves = forward || back;
    if (forward) v += direction;
    if (back) v -= direction;
    if (camera_.isFirstPerson()) {
        if (left) v -= side;
        if (right) v += side;
        moves = moves || left || right;
    } else {
        const float step = input_.bindings.settings.sensitivity * kKeyTurn;
        if (left) turnOwner(-step);
        if (right) turnOwner(step);
    }
    if (moves) v = v.normalized();
    return moves;
}

void cPlayer::moveOrRest(const cVector3& v, uint32_t elapsedMs) {
    if (v.length() > kLeastMove || isAirborne()) {
        owner_->requestMove(v, kFlags, movement("SNAP_GROUND"));
        return;
    }
    int32_t points = 0;
    if (regenTime_ > 0) {
        const int64_t waited = static_cast<int64_t>(regenTimer_) + elapsedMs;
        points = static_cast<int32_t>(std::min<int64_t>(waited / regenTime_, INT32_MAX));
        regenTimer_ = static_cast<int32_t>(waited % regenTime_);
    }
    cWorld::instance().damage(-points);
}

void cPlayer::play(Animation animation, bool looping) {
    cCharacterPose* p = pose();
    if (!p) return;
    p->setAnimationByHash(animations_[animation], animations_[animation]);
    p->setPlaying(true);
    p->setLooping(looping);
}

void cPlayer::animate(Gait gait) {
    static constexpr struct {
        Animation animation;
        bool looping, onGround;
    } kByGait[] = {{kAnimIdle, true, true},   {kAnimWalk, true, true},  {kAnimRun, true, true},
                   {kAnimJump, false, false}, {kAnimIdle, true, false}, {kAnimFall, true, false}};
    const cCharacterPose* p = pose();
    if (!p || gait == kSink) return; // the jump runs on while the hero sinks
    const auto& row = kByGait[gait];
    const int32_t current = p->getCurrentAnimation();
    if (current == animations_[row.animation]) return;
    const bool hit = current == animations_[kAnimHit1] || current == animations_[kAnimHit2];
    if (gait == kIdle && hit && p->isPlaying()) return;
    // The damage routine plays the death: nothing may replace it.
    if (current == animations_[kAnimDeath] && cWorld::instance().health <= 0) return;
    play(row.animation, row.looping);
    if (row.onGround && current == animations_[kAnimJump]) cAudioMgr::instance().playSound("sounds\\landa");
}

void cPlayer::runAttack() {
    if (attackFrame_ < 0) return;
    if (selectedItem_ && attackFrame_ == selectedItem_->fireFrame) fire();
    // Without a weapon in hand (the last one was thrown) the attack ends.
    if (!selectedItem_ || attackFrame_ > selectedItem_->attackLength) {
        attackFrame_ = -2;
        charge_ = 0; // one that never fired would begin the next attack by itself
    }
    ++attackFrame_;
}

void cPlayer::onCollision(const cVector3& n) {
    const float bounce = movement("SLOPE_BOUNCE");
    velocity_.x = bounce * n.x;
    velocity_.z = bounce * n.z;
    if (n.y >= 0) return;
    // OUR OWN RULE: a second bump on the same spot takes the upward speed away. With it given back at each
    // bump, who cannot slide from under an edge would hang there for ever.
    const cVector3& here = owner_->getPosition();
    const bool again = (here - lastBump_).lengthSq() < kLeastMove * kLeastMove;
    velocity_.y = again ? std::min(velocity_.y, 0.0f) : movement("SNAP_GROUND");
    lastBump_ = here;
}

void cPlayer::applyCinematicFrame(const cCmlElement& frame) {
    const cVector3 &position = frame.vectors[0], &direction = frame.vectors[1];
    if (frame.speed > cCmlElement::kNoSpeed) scriptSpeed_ = frame.speed;
    if (cCharacterPose* p = pose()) {
        if (frame.lowerAnim != 0) p->setAnimationByHash(kLowerPart, frame.lowerAnim);
        if (frame.upperAnim != 0) p->setAnimationByHash(kUpperPart, frame.upperAnim);
    }
    if (position.lengthSq() > kLeastVectorSq) owner_->setPosition(position);
    if (direction.lengthSq() > kLeastVectorSq) {
        scriptDirection_ = direction;
        owner_->setDirection(direction);
    }
}

void cPlayer::stopScript() {
    scriptDirection_ = {};
    scriptSpeed_ = 0;
}

void cPlayer::enterVehicle(cController* vehicle) {
    if (vehicle_) return;
    vehicle->setActive(false);
    vehicle_ = vehicle;
}
