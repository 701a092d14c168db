#pragma once
#include "core/game_state.h"
#include "core/geometry.h"
#include "core/spatial_grid.h"
#include "world/object.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

/// Owns every live world object. The hero, when a level has one, is element 0.
class cObjectMgr {
public:
    static cObjectMgr& instance();
    static void destroyInstance();

    void add(std::unique_ptr<cObject> object);      ///< at once; not while update runs
    void addLater(std::unique_ptr<cObject> object); ///< joins at the end of this or the next update
    /// Makes the controller inactive at once; the object goes at the end of the update.
    void destroy(cObject* object);
    cObject* get(size_t index) const; ///< null beyond the last
    cObject* hero() const;            ///< null in a level without one
    size_t count() const { return objects_.size(); }
    /// Releases and deletes every object, last first.
    void clear();
    /// Is told of every object just before it is deleted, so that nobody keeps its pointer.
    void setForgetListener(std::function<void(const cObject*)> listener) {
        forgetListener_ = std::move(listener);
    }

    /// Controllers, then destructions, all at once (their order shows nowhere), then creations, newest first.
    void update(uint32_t elapsedMs, GameState* state);
    /// Shadow pass, then the objects. Without `drawHero` the hero neither shows nor casts a shadow.
    void draw(bool drawHero, const ViewInfo& view);

    cController* findCmlObject(int32_t id) const; ///< first whose name has this hash, null when there is none
    cObject* findTouching(const cObject* object) const;
    /// Nearest object along the ray (from `start`, unit `direction`, world units), not behind level geometry.
    cObject* findShotTarget(const cObject* shooter, const cVector3& start, const cVector3& direction,
                            float length) const;
    cObject* findBlowTarget(const cObject* attacker, const cVector3& centre, float radius) const;
    bool projectileHits(const cVector3& centre, float radius, const cObject* excluded) const;
    void collectTargets(std::vector<cObject*>& out) const; ///< appends the CML objects and the hero
    /// Calls `visit` for those targets whose centres are nearer than `radius`, in the order of
    /// the list, each as it stands when its turn comes: a visit may move others. It must not add or remove
    /// objects.
    void visitTargets(const cVector3& centre, float radius,
                      const std::function<void(cObject&, float distance)>& visit) const;

    bool shadowsEnabled = false;

private:
    void deleteDoomed();
    void takeOut(const std::vector<cObject*>& gone) const;
    void index(const cObject& object) const;
    cObject* firstHitBySphere(const cObject* excluded, const cVector3& centre, float radius) const;
    cSpatialGrid& grid() const;

    /// Of `objects_`, by their positions and bounding radii; made anew when the list has changed.
    mutable cSpatialGrid grid_;
    mutable bool gridDue_ = true;
    std::vector<std::unique_ptr<cObject>> objects_;
    std::vector<uint64_t> destroyQueue_; ///< serials
    std::vector<std::unique_ptr<cObject>> createQueue_;
    std::function<void(const cObject*)> forgetListener_;
    /// First CML object of each id; made anew when one has gone.
    mutable std::unordered_map<int32_t, cController*> byId_;
    mutable bool indexed_ = true;
};
