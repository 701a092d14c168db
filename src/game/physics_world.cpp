#include "game/physics_world.h"

#include "core/log_mgr.h"
#include "core/matrix4.h"
#include "data/binary_reader.h"
#include "script/event_mgr.h"
#include "world/object.h"

#include <cmath>
#include <memory>

namespace {
constexpr float kBackOff = 0.95f; ///< a sweep never ends on the surface itself
constexpr float kBlocked = 0.01f;
constexpr float kNoGround = 0.99f;       ///< step-down fraction from which a body is airborne
constexpr float kProbeNoGround = 0.999f; ///< the same for ground followers
constexpr float kWalkable = 0.6f;        ///< least y of the normal of ground that holds
constexpr float kSlip = 0.05f;           ///< units a step, off a body that one came down on

std::unique_ptr<cPhysicsWorld> g_instance;

cMove scaled(const cMove& m, float s) {
    return {m.p0 * s, m.p1 * s};
}
cMove vertical(float y) {
    return {{0, y, 0}, {0, y, 0}};
}
cMove difference(const cCapsule& to, const cCapsule& from) {
    return {to.p0 - from.p0, to.p1 - from.p1};
}
cCapsule movedBy(const cCapsule& k, const cMove& m) {
    return k.moved(m.p0, m.p1);
}

void removeComponent(cMove& m, const cVector3& n) {
    m.p0 -= n * n.dot(m.p0);
    m.p1 -= n * n.dot(m.p1);
}

/// Events name controllers: a body without one has nobody to tell.
void post(const cCollisionBody& mover, cEvent::Type type, cController* other) {
    cController* controller = mover.owner ? mover.owner->getController() : nullptr;
    if (controller) cEventMgr::instance().post(type, controller, other);
}

/// How far from its first point: capsules that touch are no farther apart than both together.
float reachOf(const cCapsule& capsule) {
    return std::fabs(capsule.length) + std::fabs(capsule.radius);
}

bool capsulesTouch(const cCapsule& a, const cCapsule& b) {
    const float reach = a.length + b.length + a.radius + b.radius;
    const float radii = a.radius + b.radius;
    return (a.p0 - b.p0).lengthSq() <= reach * reach && segmentDistanceSq(a, b) < radii * radii;
}
} // namespace

cPhysicsWorld& cPhysicsWorld::instance() {
    if (!g_instance) g_instance = std::make_unique<cPhysicsWorld>();
    return *g_instance;
}

void cPhysicsWorld::destroy() {
    g_instance.reset();
}

bool cPhysicsWorld::loadCollision(const std::string& fileName) {
    if (fileName == collisionFile_) return true;
    cBinaryReader in(fileName);
    cMaterialList materials;
    if (!in.isOpen()) {
        cLogMgr::instance().error("Failed to open collision file %s", fileName.c_str());
        return false;
    }
    collisionFile_.clear();
    if (!materials.read(in) || !octree_.read(in, materials)) {
        octree_.clear();
        cLogMgr::instance().error("Collision file %s is damaged", fileName.c_str());
        return false;
    }
    collisionFile_ = fileName;
    return true;
}

void cPhysicsWorld::setGeometry(const cModel& model, int minFaces, int maxGenerations) {
    octree_.build(model, minFaces, maxGenerations, true);
    collisionFile_.clear();
}

void cPhysicsWorld::addBody(const cCollisionBody& body) {
    const cCollisionBody* before = bodies_.data();
    bodies_.push_back(body);
    cCollisionBody& added = bodies_.back();
    added.shape.update();
    if (added.owner && added.owner->getController()) added.flags = added.owner->getController()->moveFlags();
    if (added.owner) {
        added.owner->body = &added;
        added.owner->setBoundingRadius(added.shape.length / 2 + added.shape.radius);
    }
    // A level adds thousands: the others are refreshed once, unless they have moved away.
    refreshDue_ = true;
    if (bodies_.data() != before) refreshOwners();
}

void cPhysicsWorld::removeBody(const cCollisionBody* body) {
    for (size_t i = 0; i < bodies_.size(); ++i) {
        if (&bodies_[i] != body) continue;
        if (bodies_[i].owner) bodies_[i].owner->body = nullptr;
        bodies_.erase(bodies_.begin() + static_cast<std::ptrdiff_t>(i));
        break;
    }
    refreshOwners();
}

void cPhysicsWorld::removeBodiesOfGone() {
    const size_t removed = std::erase_if(bodies_, [](const cCollisionBody& body) {
        if (!body.owner || !body.owner->isGone()) return false;
        body.owner->body = nullptr;
        return true;
    });
    if (removed > 0) refreshOwners();
}

void cPhysicsWorld::refreshOwners() {
    refreshDue_ = false;
    for (cCollisionBody& body : bodies_) {
        if (!body.owner) continue;
        body.owner->body = &body;
        body.shape.update();
        if (body.owner->boundingRadius() == 0)
            body.owner->setBoundingRadius(body.shape.length / 2 + body.shape.radius);
    }
}

bool cPhysicsWorld::touchesGeometry(const cVector3& centre, float radius) const {
    MeshList meshes;
    octree_.querySphere(centre, radius, meshes);
    return sphereTouchesMeshes(centre, radius, meshes);
}

void cPhysicsWorld::step(uint32_t, GameState) {
    if (refreshDue_) refreshOwners();
    bool gridBuilt = false;
    for (size_t i = 0; i < bodies_.size(); ++i) {
        cCollisionBody& body = bodies_[i];
        if (!body.moving) continue;
        if (!body.move.p0.isFinite() || !body.move.p1.isFinite()) {
            body.cancelMove();
            continue;
        }
        if (!gridBuilt) buildGrid();
        gridBuilt = true;
        octree_.queryBodies(body.shape, movedBy(body.shape, body.move), meshes_);
        const bool grounded = (body.flags & MOVE_GROUNDED) != 0;
        if (body.flags & MOVE_SWEPT) {
            grounded ? stepSweptGrounded(i) : stepSwept(i);
        } else {
            grounded ? stepDiscreteGrounded(i) : stepDiscrete(i);
        }
        // Whatever way a solver ended, the request lives for one step.
        bodies_[i].cancelMove();
        grid_.move(static_cast<uint32_t>(i), bodies_[i].shape.p0, reachOf(bodies_[i].shape));
    }
}

void cPhysicsWorld::buildGrid() {
    grid_.reset(bodies_.size());
    for (const cCollisionBody& body : bodies_) grid_.add(body.shape.p0, reachOf(body.shape));
}

void cPhysicsWorld::stepSwept(size_t index) {
    cCollisionBody& body = bodies_[index];
    cMove m = body.move;
    cVector3 contact;
    float t = sweepMeshes(body.shape, m, meshes_, contact);
    if (t < kBlocked) {
        removeComponent(m, contact);
        t = sweepMeshes(body.shape, m, meshes_, contact);
        if (t > kBlocked) body.applyMove(scaled(m, t * kBackOff));
        return;
    }
    m = scaled(m, t * kBackOff);
    if (!touchesBodies(index, movedBy(body.shape, m))) body.applyMove(m);
}

void cPhysicsWorld::stepSweptGrounded(size_t index) {
    cCollisionBody& body = bodies_[index];
    const cMove m = body.move;
    const float stepHeight = body.shape.radius - body.snap;
    body.shape.update();
    cCapsule s = body.shape;
    cVector3 contact, ground;

    const float up = sweepMeshes(s, vertical(stepHeight), meshes_, contact);
    s = movedBy(s, scaled(vertical(stepHeight), up * kBackOff));
    const cMove down = vertical(-(stepHeight * up + body.snap));
    contact = {};
    const float forward = sweepMeshes(s, m, meshes_, contact);
    s = movedBy(s, scaled(m, forward * kBackOff));
    const float fall = sweepMeshes(s, down, meshes_, ground);
    if (fall > kBlocked) s = movedBy(s, scaled(down, fall * kBackOff));

    cVector3 away;
    if (touchesBodies(index, s, &away)) {
        collided(body, -m.p0);
        if (m.p0.y < 0 && body.airborne) slipOff(index, away);
        return;
    }
    body.airborne = fall >= kNoGround;
    const bool steep = ground.y < kWalkable && fall < kNoGround;
    if (forward < kBlocked || steep) {
        slide(body, m, contact, ground, steep);
        return;
    }
    if (forward < 1 && m.p0.y > 0) collided(body, contact);
    body.applyMove(difference(s, body.shape));
}

/// Along the contact plane, level, from where the body stands.
void cPhysicsWorld::slide(cCollisionBody& body, cMove m, cVector3 contact, const cVector3& ground,
                          bool steep) {
    removeComponent(m, contact);
    m.p0.y = 0;
    m.p1.y = 0;
    const float t = sweepMeshes(body.shape, m, meshes_, contact);
    collided(body, steep ? ground : contact);
    if (t > kBlocked) body.applyMove(scaled(m, t * kBackOff));
}

/// OUR OWN RULE: a solid body refuses whoever falls on it, and he would stay above it for ever. From the
/// second refusal in a row on the same spot he slips off, a short step in each frame that refuses him: level,
/// away from the bodies in his way (along x from right above one), or, where a solid body or the level is in
/// the way of that, by 45, 90 or 135 degrees to either side; where all seven are blocked he stays. A refusal
/// is told as always; the slip and its trials tell nobody, and end nobody's move.
void cPhysicsWorld::slipOff(size_t index, cVector3 away) {
    cCollisionBody& body = bodies_[index];
    const bool again = body.shape.p0 == body.refusedAt;
    body.refusedAt = body.shape.p0;
    if (!again) return;
    away.y = 0;
    away = away.lengthSq() > 0 ? away.normalized() : cVector3(1, 0, 0);
    for (const float degrees : {0.0f, 45.0f, -45.0f, 90.0f, -90.0f, 135.0f, -135.0f}) {
        const cVector3 way = cMatrix4::rotationY(degrees).transformDirection(away) * kSlip;
        const cMove slip{way, way};
        octree_.queryBodies(body.shape, movedBy(body.shape, slip), meshes_);
        cVector3 contact;
        const float t = sweepMeshes(body.shape, slip, meshes_, contact);
        const cMove free = scaled(slip, t * kBackOff);
        if (t < kBlocked || isBlockedByBody(index, movedBy(body.shape, free))) continue;
        body.applyMove(free);
        body.refusedAt = body.shape.p0;
        return;
    }
}

void cPhysicsWorld::stepDiscrete(size_t index) {
    cCollisionBody& body = bodies_[index];
    const cCapsule there = movedBy(body.shape, body.move);
    if (overlapsMeshes(there, meshes_)) {
        refuse(body);
    } else if (!touchesBodies(index, there)) {
        body.applyMove(body.move);
    }
}

void cPhysicsWorld::stepDiscreteGrounded(size_t index) {
    cCollisionBody& body = bodies_[index];
    cMove m = body.move;
    const float stepHeight = body.shape.radius - body.snap;
    body.shape.update();
    m.p0.y += stepHeight;
    m.p1.y += stepHeight;
    cCapsule s = movedBy(body.shape, m);
    if (overlapsMeshes(s, meshes_)) {
        refuse(body);
        return;
    }
    const cMove probe = vertical(-body.shape.radius);
    cVector3 ground(0, 1, 0);
    const float t = sweepMeshes(s, probe, meshes_, ground);
    if (t >= kProbeNoGround || ground.y < kWalkable) {
        refuse(body);
        return;
    }
    s = movedBy(s, scaled(probe, t));
    if (!touchesBodies(index, s)) body.applyMove(difference(s, body.shape));
}

cController* cPhysicsWorld::touched(size_t index, uint32_t other, const cCapsule& trial) const {
    const cCollisionBody& body = bodies_[other];
    // The capsules first: they lie in the array, and most are far away.
    if (other == index || (body.flags & MOVE_PASSABLE) || !capsulesTouch(trial, body.shape)) return nullptr;
    cController* controller = body.owner ? body.owner->getController() : nullptr;
    return controller && controller->isActive() ? controller : nullptr;
}

bool cPhysicsWorld::touchesBodies(size_t index, const cCapsule& trial, cVector3* away) {
    cCollisionBody& mover = bodies_[index];
    bool blocked = false;
    for (const uint32_t j : grid_.near(trial.p0, reachOf(trial), 1)) {
        cController* controller = touched(index, j, trial);
        if (!controller) continue;
        cCollisionBody& other = bodies_[j];
        post(mover, cEvent::kTouchedBody, controller);
        if (mover.flags & MOVE_SOLID) other.cancelMove();
        if (other.flags & MOVE_SOLID) {
            mover.cancelMove();
            blocked = true;
            if (away) *away += trial.p1 - closestPointOnSegment(other.shape, trial.p1);
        }
    }
    return blocked;
}

bool cPhysicsWorld::isBlockedByBody(size_t index, const cCapsule& trial) {
    for (const uint32_t j : grid_.near(trial.p0, reachOf(trial), 1))
        if ((bodies_[j].flags & MOVE_SOLID) && touched(index, j, trial)) return true;
    return false;
}

void cPhysicsWorld::refuse(cCollisionBody& body) const {
    body.cancelMove();
    post(body, cEvent::kTouchedGeometry, nullptr);
}

void cPhysicsWorld::collided(cCollisionBody& body, const cVector3& normal) const {
    if (body.owner && body.owner->getController()) body.owner->getController()->onCollision(normal);
}
