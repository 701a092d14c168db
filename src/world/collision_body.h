#pragma once
#include "core/geometry.h"

#include <cstdint>

class cObject;

enum MoveFlags : uint32_t {
    MOVE_GROUNDED = 1, ///< keeps to the ground: steps up and down, snaps to the floor
    MOVE_SWEPT = 2,    ///< swept along the move with sliding; otherwise only the destination is tested
    MOVE_PASSABLE = 4, ///< other bodies ignore this one
    MOVE_SOLID = 8,    ///< contact with other bodies blocks
};

/// Displacement of a capsule's two points for one frame, world units; the same vector twice for a
/// translation.
struct cMove {
    cVector3 p0, p1;
};

/// One physical object in the physics world's array. Addresses change when bodies come and go: reach a body
/// through its owner only.
struct cCollisionBody {
    cCapsule shape; ///< world coordinates
    cObject* owner = nullptr;
    cMove move;
    bool moving = false; ///< a request waits for the next step
    uint32_t flags = 0;  ///< MoveFlags of the pending request; the owner's flags before the first one
    float snap = 0;      ///< ground snap distance of the pending request
    bool airborne = true;
    cVector3 refusedAt{0, -1e9f, 0}; ///< the capsule's first point when a solid body last stopped its fall

    cCollisionBody() = default;
    explicit cCollisionBody(cObject* o) : owner(o) {}
    cCollisionBody(cObject* o, const cCapsule& capsule) : shape(capsule), owner(o) { shape.update(); }

    void requestMove(const cVector3& displacement, uint32_t moveFlags, float snapDistance);
    void requestMove(const cMove& displacement, uint32_t moveFlags, float snapDistance);
    /// Moves owner and capsule and ends the request. A move that is not finite is refused.
    void applyMove(const cMove& m);
    void cancelMove() { moving = false; }
};

/// The collision part of every world object.
struct cCollider {
    cCollisionBody* body = nullptr; ///< inside the physics world's array, null without a body
    float boundingRadius() const { return boundingRadius_; }
    void requestMove(const cVector3& displacement, uint32_t moveFlags, float snapDistance) const {
        if (body) body->requestMove(displacement, moveFlags, snapDistance);
    }

protected:
    float boundingRadius_ = 0; ///< the object sets it: who finds it by its place is told
};
