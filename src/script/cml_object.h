#pragma once
#include "script/cml_element.h"
#include "world/object.h"

/// A world object that is driven by its level document: actions, reactions, timers and steering.
/// Speeds are world units per update, times milliseconds.
class cCmlObject : public cController {
public:
    explicit cCmlObject(cObject* owner);

    /// Reads hierarchy, physics and field of view, runs the object's own on_set, then its default action.
    void init(cCmlElement& objectElement);
    void update(uint32_t elapsedMs, GameState* state) override;
    Kind kind() const override { return kCmlObject; }
    int32_t getId() const override { return element_ ? element_->key : 0; }
    void onAnimationEnd() override { fireReaction(kTriggerAnimationEnd); }
    void forgetGone() override;
    uint32_t moveFlags() const override { return flags_; }

    /// Makes a child of the object element the current action; an index that names no child leaves none.
    void setAction(int32_t childIndex);
    /// The current action's reaction: the first requirement that holds, else the reaction's own list.
    /// Implemented in cml_runtime.cpp.
    void fireReaction(CmlTrigger trigger);

    /// The document asks for what cannot go on: one row in the log for the object's life, "CML object NAME
    /// what".
    void reportOnce(const std::string& what) { logOnce("CML object " + name() + " " + what); }
    void logOnce(const std::string& row); ///< shares that one row
    std::string name() const;             ///< empty without an element
    /// Takes one off a frame's budget; false, with a row the first time, when none is left.
    bool spend(int32_t& left) {
        if (left > 0 && --left == 0) reportOnce("asks for more than a frame can hold");
        return left > 0;
    }

    /// Our own rule: (0, 0, 0), the direction to one's own place, changes nothing, or the model would
    /// collapse.
    void setMoveDirection(const cVector3& unitDirection);
    void setSpeed(float speed) { speed_ = speed; }
    void setTimer(uint32_t ms) { timer_ = ms; }
    void setAcceleration(const cVector3& steering);
    void setFlags(uint32_t mask);
    void clearFlags(uint32_t mask);
    void setTarget(cObject* target) { target_ = target; }
    void setParam(int32_t param) { param_ = param; }

    cObject* getTarget() const { return target_; }
    int32_t getParam() const { return param_; }
    float getSpeed() const { return speed_; }
    uint32_t getTimer() const { return timer_; }
    uint32_t getFlags() const { return flags_; }
    const cVector3& getOrigin() const { return origin_; }
    const cVector3& getMoveDirection() const { return direction_; }
    const cCmlElement* getElement() const { return element_; }
    const cCmlElement* getCurrentAction() const { return currentAction_; }

    // Local variables of the object element; an index outside of the table reads 0 and stores nothing.
    int32_t getLocal(int32_t index) const;
    void setLocal(int32_t index, int32_t value);
    void addLocal(int32_t index, int32_t value);

private:
    /// A distance trigger of the current action.
    struct DistanceTrigger {
        bool armed = false;
        float radiusSq = 0;
        CmlPoint point = kPointOrigin;
    };
    void arm(DistanceTrigger& trigger, CmlTrigger number) const;
    /// False when the point is the hero's and there is no hero.
    bool referencePoint(const DistanceTrigger& trigger, cVector3& out) const;
    void checkExceeds();
    void checkFallsBelow();
    void move();
    void tiltUp() const;
    void flagsChanged() const;

    cVector3 origin_;
    cVector3 direction_;
    float speed_ = 0;
    cVector3 acceleration_;
    float accelerationLength_ = 0;
    uint32_t flags_ = 0;
    cCmlElement* element_ = nullptr;
    const cCmlElement* currentAction_ = nullptr;
    uint32_t timer_ = 0; ///< 0: not running
    cObject* target_ = nullptr;
    int32_t param_ = 0; ///< value of the last event, for example a hit's damage
    DistanceTrigger exceeds_, below_;
    bool reported_ = false;
};

/// Up vector of something that flies along `direction`: across it and its level side.
cVector3 flyingUp(const cVector3& direction);
