#include "world/object_mgr.h"

#include "core/log_mgr.h"
#include "game/physics_world.h"
#include "platform/gl_api.h"
#include "render/shadow_volume.h"
#include "script/event_mgr.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// Times the squared bounding radius: how near a ray must pass an object's centre.
constexpr float kShotReachSq = 6;
constexpr float kShotReach = 2.45f; ///< no less than its root
/// Of a ray's farthest coordinate: how far beside the ray a nearest point may be reckoned.
constexpr float kRayRounding = 1e-5f;

std::unique_ptr<cObjectMgr> g_instance;

bool isTarget(const cObject& object) {
    const cController* controller = object.getController();
    return controller &&
           (controller->kind() == cController::kCmlObject || controller->kind() == cController::kPlayer);
}

bool bodyHitBySphere(const cObject& object, const cVector3& centre, float radius) {
    if (!object.body) return true;
    const cCapsule& shape = object.body->shape;
    const float reach = shape.radius + radius;
    return (closestPointOnSegment(shape, centre) - centre).lengthSq() <= reach * reach &&
           (object.body->flags & MOVE_SOLID);
}
} // namespace

cObjectMgr& cObjectMgr::instance() {
    if (!g_instance) g_instance = std::make_unique<cObjectMgr>();
    return *g_instance;
}

void cObjectMgr::destroyInstance() {
    g_instance.reset();
}

void cObjectMgr::add(std::unique_ptr<cObject> object) {
    if (indexed_) index(*object);
    objects_.push_back(std::move(object));
    gridDue_ = true;
}
void cObjectMgr::addLater(std::unique_ptr<cObject> object) {
    createQueue_.push_back(std::move(object));
}

void cObjectMgr::destroy(cObject* object) {
    if (object->getController()) object->getController()->setActive(false);
    destroyQueue_.push_back(object->getSerial());
}

cObject* cObjectMgr::get(size_t index) const {
    return index < objects_.size() ? objects_[index].get() : nullptr;
}

cObject* cObjectMgr::hero() const {
    cObject* first = get(0);
    const cController* controller = first ? first->getController() : nullptr;
    return controller && controller->kind() == cController::kPlayer ? first : nullptr;
}

void cObjectMgr::clear() {
    // What waits to join belongs to the old level as well.
    for (auto* list : {&createQueue_, &objects_}) {
        std::vector<cObject*> gone;
        for (auto it = list->rbegin(); it != list->rend(); ++it) gone.push_back(it->get());
        takeOut(gone);
        while (!list->empty()) list->pop_back();
    }
    byId_.clear();
    indexed_ = true;
    gridDue_ = true;
}

/// Takes objects out of everything outside of this class that refers to them.
void cObjectMgr::takeOut(const std::vector<cObject*>& gone) const {
    for (cObject* object : gone) {
        object->markGone();
        if (object->getController()) cEventMgr::instance().removeFor(object->getController());
        object->releaseModel();
    }
    cPhysicsWorld::instance().removeBodiesOfGone();
    for (const cObject* object : gone)
        if (forgetListener_) forgetListener_(object);
}

void cObjectMgr::update(uint32_t elapsedMs, GameState* state) {
    // By index: a controller may start a level load, which replaces the list.
    for (size_t i = 0; i < objects_.size(); ++i) {
        cController* controller = objects_[i]->getController();
        if (controller && controller->isActive()) controller->update(elapsedMs, state);
    }
    deleteDoomed();
    while (!createQueue_.empty()) {
        std::unique_ptr<cObject> object = std::move(createQueue_.back());
        createQueue_.pop_back();
        add(std::move(object));
    }
}

/// Serials are looked up, never addresses: those are used again.
void cObjectMgr::deleteDoomed() {
    if (destroyQueue_.empty()) return;
    std::sort(destroyQueue_.begin(), destroyQueue_.end());
    std::vector<cObject*> gone;
    for (const auto& object : objects_) {
        if (std::binary_search(destroyQueue_.begin(), destroyQueue_.end(), object->getSerial()))
            gone.push_back(object.get());
    }
    for (size_t i = gone.size(); i < destroyQueue_.size(); ++i)
        cLogMgr::instance().error("Attempted to destroy unexisting object");
    destroyQueue_.clear();
    takeOut(gone);
    for (const cObject* object : gone) {
        const cController* controller = object->getController();
        if (controller && controller->kind() == cController::kCmlObject) indexed_ = false;
    }
    for (const auto& object : objects_) {
        if (object->getController()) object->getController()->forgetGone();
    }
    std::erase_if(objects_, [](const auto& object) { return object->isGone(); });
    gridDue_ = true;
}

void cObjectMgr::draw(bool drawHero, const ViewInfo& view) {
    if (!platform::hasGlContext()) return;
    if (shadowsEnabled && view.light.y > 0) {
        glEnable(GL_BLEND);
        shadowVolume::begin();
        for (size_t i = drawHero ? 0 : 1; i < objects_.size(); ++i) objects_[i]->drawShadow(view.light);
        shadowVolume::second();
        for (size_t i = drawHero ? 0 : 1; i < objects_.size(); ++i) objects_[i]->drawShadow(view.light);
        shadowVolume::end();
        glDisable(GL_BLEND);
    }
    for (size_t i = drawHero ? 0 : 1; i < objects_.size(); ++i) objects_[i]->draw(view);
}

void cObjectMgr::index(const cObject& object) const {
    cController* controller = object.getController();
    if (controller && controller->kind() == cController::kCmlObject)
        byId_.try_emplace(controller->getId(), controller);
}

cController* cObjectMgr::findCmlObject(int32_t id) const {
    if (!indexed_) {
        byId_.clear();
        for (const auto& object : objects_) index(*object);
        indexed_ = true;
    }
    const auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : found->second;
}

cSpatialGrid& cObjectMgr::grid() const {
    if (!gridDue_) return grid_;
    gridDue_ = false;
    grid_.reset(objects_.size());
    for (uint32_t i = 0; i < objects_.size(); ++i) {
        grid_.add(objects_[i]->getPosition(), objects_[i]->boundingRadius());
        objects_[i]->standIn(&grid_, i);
    }
    return grid_;
}

cObject* cObjectMgr::findTouching(const cObject* object) const {
    for (const uint32_t i : grid().near(object->getPosition(), object->boundingRadius(), 1)) {
        cObject* other = objects_[i].get();
        if (other == object || !other->isQueryable()) continue;
        const float reach = object->boundingRadius() + other->boundingRadius();
        if ((other->getPosition() - object->getPosition()).lengthSq() < reach * reach) return other;
    }
    return nullptr;
}

cObject* cObjectMgr::findShotTarget(const cObject* shooter, const cVector3& start, const cVector3& direction,
                                    float length) const {
    const cVector3 end = start + direction * length, way = end - start;
    const float open = cPhysicsWorld::instance().octree().trace(start, end), longest = open * length;
    const cSegment ray(start, end);
    // OUR OWN RULE: the longest distance is held against the place along the line, as parts of it. The length
    // of the way to its very end may come out shorter than the range, and would let in what lies beyond.
    const float farthest = length > 0 ? std::min(open, longest / ray.length) : 0;
    // What counts passes no farther than `longest`.
    const cVector3 last = ray.length > longest ? lerp(start, end, longest / ray.length) : end;
    const float beside = (start.length() + ray.length) * kRayRounding;
    cObject* nearest = nullptr;
    float least = std::numeric_limits<float>::infinity();
    for (const uint32_t i : grid().near(start, last, beside, kShotReach)) {
        cObject* object = objects_[i].get();
        const cVector3 passing = closestPointOnSegment(ray, object->getPosition());
        const float radius = object->boundingRadius();
        if (!((passing - object->getPosition()).lengthSq() < kShotReachSq * radius * radius)) continue;
        if (object == shooter || !object->isQueryable()) continue;
        const float place = way.dot(object->getPosition() - start) / way.lengthSq();
        const float distance = (passing - start).length();
        if (!(std::max(0.0f, place) < farthest) || !(distance < least)) continue;
        if (object->body && !capsuleTouchesSegment(object->body->shape, ray)) continue;
        nearest = object;
        least = distance;
    }
    return nearest;
}

cObject* cObjectMgr::firstHitBySphere(const cObject* excluded, const cVector3& centre, float radius) const {
    for (const uint32_t i : grid().near(centre, radius, 1)) {
        cObject* object = objects_[i].get();
        const float reach = object->boundingRadius() + radius;
        if (!((object->getPosition() - centre).lengthSq() < reach * reach)) continue;
        if (object == excluded || !object->isQueryable()) continue;
        if (bodyHitBySphere(*object, centre, radius)) return object;
    }
    return nullptr;
}

cObject* cObjectMgr::findBlowTarget(const cObject* attacker, const cVector3& centre, float radius) const {
    return firstHitBySphere(attacker, centre, radius);
}

bool cObjectMgr::projectileHits(const cVector3& centre, float radius, const cObject* excluded) const {
    return cPhysicsWorld::instance().touchesGeometry(centre, radius) ||
           firstHitBySphere(excluded, centre, radius);
}

void cObjectMgr::collectTargets(std::vector<cObject*>& out) const {
    for (const auto& object : objects_)
        if (isTarget(*object)) out.push_back(object.get());
}

void cObjectMgr::visitTargets(const cVector3& centre, float radius,
                              const std::function<void(cObject&, float)>& visit) const {
    std::vector<cObject*> targets;
    for (const uint32_t i : grid().near(centre, radius, 0))
        if (isTarget(*objects_[i])) targets.push_back(objects_[i].get());
    const uint64_t changes = grid_.changes();
    bool all = false;
    for (size_t i = 0; i < targets.size(); ++i) {
        cObject* target = targets[i];
        const float distanceSq = (target->getPosition() - centre).lengthSq();
        if (!(distanceSq < radius * radius)) continue;
        visit(*target, std::sqrt(distanceSq));
        if (all || grid_.changes() == changes) continue;
        // Others may have come here: from now on it looks at everyone.
        all = true;
        targets.clear();
        collectTargets(targets);
        i = static_cast<size_t>(std::find(targets.begin(), targets.end(), target) - targets.begin());
    }
}
