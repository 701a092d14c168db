#pragma once
#include "world/object.h"

#include <array>

class cCharacterPose;
class cCmlElement;
class cInputMgr;
class cCamera;
struct cItemDef;

/// Drives the hero's object from the player's input. Speeds are world units per update, times milliseconds.
class cPlayer : public cController {
public:
    explicit cPlayer(cObject* owner);

    void update(uint32_t elapsedMs, GameState* state) override;
    Kind kind() const override { return kPlayer; }
    void onCollision(const cVector3& normal) override;
    uint32_t moveFlags() const override { return kFlags; }
    void forgetGone() override;

    /// One key frame of a cinematic's hero track.
    void applyCinematicFrame(const cCmlElement& frame);
    void stopScript();
    void refreshSelected();
    void enterVehicle(cController* vehicle);

    const cVector3& getVelocity() const { return velocity_; }

    static constexpr size_t kAnimationCount = 31;
    /// Keys of the configuration section "animation", in stored order.
    static const std::array<const char*, kAnimationCount> kAnimationKeys;

private:
    static constexpr uint32_t kFlags = MOVE_GROUNDED | MOVE_SWEPT | MOVE_SOLID;
    /// What the body does, as the animations tell it.
    enum Gait { kIdle, kWalk, kRun, kRise, kSink, kFall };
    /// Rows of section "animation", in stored order.
    enum Animation {
        kAnimIdle,
        kAnimWalk,
        kAnimRun,
        kAnimJump,
        kAnimDeath = 9,
        kAnimFall = 10,
        kAnimHit1 = 16,
        kAnimHit2 = 17,
    };

    void updateCinematic() const;
    void updateInventory();
    std::string keysOfAReply() const;
    void updateDialogue(uint32_t elapsedMs, GameState* state);
    void updatePlay(uint32_t elapsedMs);
    bool look();
    bool died();
    void useTouched();
    void chargeOrFire(uint32_t elapsedMs);
    void chooseItem();
    cVector3 steer(Gait& gait);
    cVector3 steerAirborne(Gait& gait);
    bool steerByCamera(cVector3& v);
    bool steerByHero(cVector3& v);
    void moveOrRest(const cVector3& v, uint32_t elapsedMs);
    void animate(Gait gait);
    void play(Animation animation, bool looping);
    void runAttack();
    // player_weapons.cpp
    void fire();
    void shoot(const cItemDef& item);
    void throwProjectile(const cItemDef& item);
    void strike(const cItemDef& item);
    void turnOwner(float degreesClockwise);
    bool pressed(int command) const; ///< of the view at the update's start; asks once, the timer restarts
    cCharacterPose* pose() const;
    bool isAirborne() const { return owner_->body && owner_->body->airborne; }
    float radius() const { return owner_->body ? owner_->body->shape.radius : 0; }

    cInputMgr& input_;
    cCamera& camera_;
    cVector3 velocity_; ///< carried over
    static constexpr cVector3 kNoBump{0, -1e9f, 0};
    cVector3 lastBump_ = kNoBump; ///< where he ran into something overhead, until he has moved from there
    cVector3 scriptDirection_;
    float scriptSpeed_ = 0;
    std::array<bool, 4> walkedIntoTalk_{}; ///< by movement command: down since before the conversation
    int viewCommands_ = 0;                 ///< added to commands that each view binds for itself
    int32_t attackFrame_ = -1;             ///< updates since an attack began, −1 without one
    const cItemDef* selectedItem_ = nullptr;
    int32_t charge_ = 0; ///< ms
    cController* vehicle_ = nullptr;
    int32_t maxHold_, regenTime_, regenTimer_ = 0;
    std::array<int32_t, kAnimationCount> animations_; ///< name hashes
};
