#pragma once
#include "core/game_state.h"
#include "core/spatial_grid.h"
#include "game/sweep.h"
#include "world/collision_body.h"
#include "world/octree.h"

#include <string>
#include <vector>

class cController;

/// Moves every physical object through the level's collision geometry and against the others. There is no
/// time step: a request is the displacement of one frame. Refused moves reach the owner's controller and the
/// event queue.
class cPhysicsWorld {
public:
    static cPhysicsWorld& instance();
    static void destroy();

    /// Reads the octree unless it is the one in force. False, with a row in the log, when the file is missing
    /// (the old geometry stays) or damaged (it is gone).
    bool loadCollision(const std::string& fileName);
    void setGeometry(const cModel& model, int minFaces, int maxGenerations); ///< for built scenes
    const cOctree& octree() const { return octree_; }

    /// Appends a copy. Every owner's body pointer is set anew by both.
    void addBody(const cCollisionBody& body);
    void removeBody(const cCollisionBody* body);
    void removeBodiesOfGone(); ///< of every owner that is gone
    const std::vector<cCollisionBody>& bodies() const { return bodies_; }

    /// Resolves all pending requests.
    void step(uint32_t elapsedMs, GameState state);

    float sweep(const cCapsule& capsule, const cMove& move, const MeshList& meshes, cVector3& normal) const {
        return sweepMeshes(capsule, move, meshes, normal);
    }
    bool overlaps(const cCapsule& capsule, const MeshList& meshes) const {
        return overlapsMeshes(capsule, meshes);
    }
    bool touchesGeometry(const cVector3& centre, float radius) const;

private:
    void refreshOwners();
    void stepSwept(size_t index);
    void stepSweptGrounded(size_t index);
    void slide(cCollisionBody& body, cMove move, cVector3 contact, const cVector3& ground, bool steep);
    void stepDiscrete(size_t index);
    void stepDiscreteGrounded(size_t index);
    void buildGrid();
    /// The controller of body `other` when body `index` would touch it as `trial`, else null.
    cController* touched(size_t index, uint32_t other, const cCapsule& trial) const;
    /// Of a move that is made: posts the touches and cancels moves. `away`, when asked for, grows by the ways
    /// from the bodies that block.
    bool touchesBodies(size_t index, const cCapsule& trial, cVector3* away = nullptr);
    bool isBlockedByBody(size_t index, const cCapsule& trial); ///< a mere question
    void slipOff(size_t index, cVector3 away);
    void refuse(cCollisionBody& body) const;
    void collided(cCollisionBody& body, const cVector3& normal) const;

    cOctree octree_;
    std::vector<cCollisionBody> bodies_;
    bool refreshDue_ = false; ///< bodies were added since the last step
    cSpatialGrid grid_;       ///< of the bodies, for the current step
    std::string collisionFile_;
    MeshList meshes_; ///< candidates of the body being moved
};
