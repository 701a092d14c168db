#pragma once
#include "core/game_state.h"
#include "core/matrix4.h"
#include "world/collision_body.h"

#include <memory>

class cController;
class cSpatialGrid;

/// What drawing a world object needs to know of the frame.
struct ViewInfo {
    cVector3 eye;
    cVector3 light;       ///< position; y at or below −49 means that there is none
    unsigned celRamp = 0; ///< GL name of the 1D ramp
};

/// The visible part of everything that stands or moves in a level besides its scenery. Owns its controller.
class cObject : public cCollider {
public:
    enum VisualKind : int32_t { kPlain = 1, kStatic = 2, kAnimated = 3, kCamera = 4 };

    explicit cObject(VisualKind kind = kPlain);
    virtual ~cObject();
    cObject(const cObject&) = delete;
    cObject& operator=(const cObject&) = delete;

    virtual void setController(std::unique_ptr<cController> controller);
    virtual void drawShadow(const cVector3& light);
    virtual void draw(const ViewInfo& view);
    /// Hands the model back to the store that it came from.
    virtual void releaseModel();

    /// Moves the collision body along by the same offset.
    void setPosition(const cVector3& position);
    /// Moves the object alone: the physics world moves the body itself.
    void moveWithoutBody(const cVector3& offset);
    void setDirection(const cVector3& unitDirection);
    void setUp(const cVector3& unitUp);
    void setBoundingRadius(float radius);
    /// The grid, which must outlive the object, is told of every change of position and bounding radius.
    void standIn(cSpatialGrid* grid, uint32_t index);

    const cVector3& getPosition() const { return position_; }
    const cVector3& getDirection() const { return direction_; }
    const cVector3& getUp() const { return up_; }
    const cMatrix4& getTransform() const { return transform_; }
    cController* getController() const { return controller_.get(); }
    VisualKind getVisualKind() const { return visualKind_; }
    bool isDrawnNear() const { return drawnNear_; }
    uint64_t getSerial() const { return serial_; } ///< never used twice, unlike an address
    /// Taken out of the level, about to be deleted: nobody may keep its pointer.
    bool isGone() const { return gone_; }
    void markGone() { gone_ = true; }
    /// Takes part in proximity, hit and collision queries.
    bool isQueryable() const;

protected:
    VisualKind visualKind_;
    cVector3 position_, direction_{0, 0, -1}, up_{0, 1, 0};
    cMatrix4 transform_ = cMatrix4::identity(); ///< columns right, up, −direction
    bool drawnNear_ = false;                    ///< visible and within 25 units in the last draw
    cVector3 lightInModel_;                     ///< valid while drawnNear_
    bool shadowDirty_ = true;
    std::unique_ptr<cController> controller_;

private:
    void changed();
    void relocated();
    const uint64_t serial_;
    cSpatialGrid* grid_ = nullptr;
    uint32_t gridIndex_ = 0;
    bool gone_ = false;
};

/// What an object does each frame.
class cController {
public:
    enum Kind : int32_t { kScenery = 0, kPlayer = 1, kCmlObject = 2, kProjectile = 3 };

    explicit cController(cObject* owner) : owner_(owner) {}
    virtual ~cController() = default;
    cController(const cController&) = delete;
    cController& operator=(const cController&) = delete;

    virtual void update(uint32_t elapsedMs, GameState* state) = 0;
    virtual Kind kind() const = 0;
    /// Told by the physics world of a blocked move.
    virtual void onCollision(const cVector3& normal);
    /// Key under which scripts find the object; 0 for everything but CML objects.
    virtual int32_t getId() const { return 0; }
    /// A one-shot animation of the object's model has ended.
    virtual void onAnimationEnd() {}
    /// Objects are about to be deleted: drop every pointer to one that is gone.
    virtual void forgetGone() {}
    /// Ground flags that a new collision body starts with.
    virtual uint32_t moveFlags() const { return 0; }

    cObject* getOwner() const { return owner_; }
    bool isActive() const { return active_; }
    void setActive(bool active) { active_ = active; }
    void toggleActive() { active_ = !active_; }
    int16_t getTypeIndex() const { return typeIndex_; }
    int16_t getRaceIndex() const { return raceIndex_; }
    int16_t getClassIndex() const { return classIndex_; }

protected:
    cObject* owner_;
    bool active_ = true;
    int16_t typeIndex_ = -1, raceIndex_ = -1, classIndex_ = -1; ///< −1: unknown to hierarchy.cfl
};

class cSceneryController : public cController {
public:
    using cController::cController;
    void update(uint32_t, GameState*) override {}
    Kind kind() const override { return kScenery; }
};
