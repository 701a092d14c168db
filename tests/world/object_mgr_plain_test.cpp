// What the object manager finds by place against the plain forms, which look at every object in the order of
// the list: the same objects, in the same order, at the same distances to the bit.
#include "game/physics_world.h"
#include "support/test_level.h"
#include "support/test_world.h"

#include <gtest/gtest.h>

namespace {
class Idle : public cSceneryController {
public:
    Idle(cObject* owner, Kind kind) : cSceneryController(owner), kind_(kind) {}
    Kind kind() const override { return kind_; }

private:
    Kind kind_;
};

using Visits = std::vector<std::pair<const cObject*, float>>;
using Visitor = std::function<void(cObject&, float)>;

/// Objects that come, go, move, swell and fall asleep at random.
class ObjectMgrPlain : public ::testing::Test {
protected:
    TestWorld t;
    TestRandom random;
    cObjectMgr& objects = cObjectMgr::instance();
    const cPhysicsWorld& physics = cPhysicsWorld::instance();
    float half = 10; ///< the scene reaches from −half to half; wide ones are flat

    cObject* any() {
        return objects.get(static_cast<size_t>(random.index(static_cast<int>(objects.count()))));
    }
    /// Whole numbers among them, so that distances are equal, and now and then nowhere.
    cVector3 place() {
        cVector3 p = random.vector(half);
        if (half > 50) p.y *= 0.05f;
        const int how = random.index(60);
        if (how == 0) return {NAN, p.y, p.z};
        if (how == 1) return {p.x, INFINITY, p.z};
        if (how == 2) return p * 1e12f;
        if (how < 30) return {std::round(p.x), std::round(p.y), std::round(p.z)};
        return p;
    }
    float radius() {
        constexpr float kOdd[] = {0, 0, NAN, INFINITY, 1e30f, 1e12f, 60, -1.5f};
        const int how = random.index(40);
        return how < 8 ? kOdd[how] : how < 20 ? 1 : random.number(0, 1.5f);
    }

    void create() {
        auto object = std::make_unique<cObject>(random.index(20) ? cObject::kPlain : cObject::kCamera);
        object->setPosition(place());
        object->setBoundingRadius(radius());
        if (random.index(20)) {
            const auto kind = static_cast<cController::Kind>(random.index(4));
            object->setController(std::make_unique<Idle>(object.get(), kind));
        }
        if (random.index(3) == 0) {
            const cVector3 at = object->getPosition();
            cPhysicsWorld::instance().addBody(
                {object.get(), {at, at + random.vector(1), random.number(0.1f, 1)}});
            object->body->flags = random.index(4) ? uint32_t{MOVE_SOLID} : 0;
            if (random.index(3) == 0) object->setBoundingRadius(radius());
        }
        objects.add(std::move(object));
    }
    void disturb() {
        if (objects.count() == 0) return create();
        switch (random.index(8)) {
        case 0:
            return create();
        case 1:
            return objects.destroy(any()); // asleep at once, gone with the next update
        case 2:
            return objects.update(16, &t.state);
        case 3:
            return any()->setBoundingRadius(radius());
        case 4:
            if (cController* controller = any()->getController()) controller->toggleActive();
            return;
        case 5:
            any()->requestMove(random.vector(3), MOVE_SOLID, 0);
            return cPhysicsWorld::instance().step(16, t.state);
        default:
            any()->setPosition(place());
        }
    }

    // The plain forms.
    template <typename Test> const cObject* first(const Test& test) const {
        for (size_t i = 0; i < objects.count(); ++i) {
            if (objects.get(i)->isQueryable() && test(*objects.get(i))) return objects.get(i);
        }
        return nullptr;
    }
    const cObject* touching(const cObject* object) const {
        return first([&](const cObject& o) {
            const float reach = object->boundingRadius() + o.boundingRadius();
            return &o != object && (o.getPosition() - object->getPosition()).lengthSq() < reach * reach;
        });
    }
    const cObject* blow(const cObject* attacker, const cVector3& centre, float r) const {
        return first([&](const cObject& o) {
            const float reach = o.boundingRadius() + r;
            if (&o == attacker || !((o.getPosition() - centre).lengthSq() < reach * reach)) return false;
            if (!o.body) return true;
            const float least = o.body->shape.radius + r;
            const cVector3 nearest = closestPointOnSegment(o.body->shape, centre);
            return (nearest - centre).lengthSq() <= least * least && (o.body->flags & MOVE_SOLID);
        });
    }
    const cObject* shot(const cObject* shooter, const cVector3& start, const cVector3& way,
                        float length) const {
        const cSegment ray(start, start + way * length);
        const cVector3 line = ray.p1 - ray.p0;
        const float open = physics.octree().trace(ray.p0, ray.p1);
        const float farthest = length > 0 ? std::min(open, open * length / ray.length) : 0;
        float least = 1e30f;
        const cObject* nearest = nullptr;
        for (size_t i = 0; i < objects.count(); ++i) {
            const cObject* o = objects.get(i);
            if (o == shooter || !o->isQueryable()) continue;
            const cVector3 passing = closestPointOnSegment(ray, o->getPosition());
            const float r = o->boundingRadius(), distance = (passing - start).length();
            const float part = std::max(0.0f, line.dot(o->getPosition() - start) / line.lengthSq());
            if (!((passing - o->getPosition()).lengthSq() < 6 * r * r) || !(part < farthest) ||
                !(distance < least))
                continue;
            if (o->body && !capsuleTouchesSegment(o->body->shape, ray)) continue;
            nearest = o;
            least = distance;
        }
        return nearest;
    }
    void visitPlainly(const cVector3& centre, float r, const Visitor& visit) const {
        for (size_t i = 0; i < objects.count(); ++i) {
            cObject* o = objects.get(i);
            const cController* controller = o->getController();
            if (!controller ||
                (controller->kind() != cController::kCmlObject && controller->kind() != cController::kPlayer))
                continue;
            const float distanceSq = (o->getPosition() - centre).lengthSq();
            if (distanceSq < r * r) visit(*o, std::sqrt(distanceSq));
        }
    }

    /// Each visit moves somebody, the same in both forms; afterwards everybody is back.
    template <typename Form> Visits visits(const Form& form) {
        std::vector<cVector3> before;
        for (size_t i = 0; i < objects.count(); ++i) before.push_back(objects.get(i)->getPosition());
        Visits list;
        const TestRandom same = random;
        form([&](cObject& o, float distance) {
            list.emplace_back(&o, distance);
            if (random.index(3) == 0) any()->setPosition(place());
        });
        random = same;
        for (size_t i = 0; i < before.size(); ++i) objects.get(i)->setPosition(before[i]);
        return list;
    }
};
} // namespace

TEST_F(ObjectMgrPlain, RandomScenesGiveTheSameToTheBit) {
    std::vector<cModelObject> level{wallMesh(6, 4), floorMesh(-8, 30)};
    for (float x = -100; x <= 100; x += 40) level.push_back(wallMesh(x, 130));
    t.setGeometry(level);
    constexpr float kHalves[] = {8, 30, 120};
    int touched = 0, struck = 0, shots = 0, visited = 0;
    for (int scene = 0; scene < 2000; ++scene) {
        half = kHalves[scene % 3];
        objects.clear();
        for (int i = random.index(scene % 2 ? 400 : 100); i >= 0; --i) create();
        for (int round = 0; round < 8; ++round) {
            for (int i = random.index(4); i > 0; --i) disturb();
            if (objects.count() == 0) continue;
            const cObject* self = any();
            const cVector3 at = random.index(4) ? place() : self->getPosition();
            const float r = radius();
            SCOPED_TRACE(std::to_string(scene) + ", " + std::to_string(round));
            ASSERT_EQ(objects.findTouching(self), touching(self));
            const cObject* hit = blow(self, at, r);
            ASSERT_EQ(objects.findBlowTarget(self, at, r), hit);
            ASSERT_EQ(objects.projectileHits(at, r, self), physics.touchesGeometry(at, r) || hit);
            cVector3 way = random.vector(1);
            if (half > 50) way.y *= 0.05f;
            way = way.normalized() * (random.index(10) ? 1.0f : random.number(0, 3));
            const float length = random.index(10) ? random.number(0, 60) : random.number(-1e9f, 1e9f);
            const cObject* target = shot(self, at, way, length);
            ASSERT_EQ(objects.findShotTarget(self, at, way, length), target);
            const float blast = random.index(5) ? random.number(0, 8) : r;
            const Visits seen = visits([&](const Visitor& visit) { objects.visitTargets(at, blast, visit); });
            ASSERT_EQ(seen, visits([&](const Visitor& visit) { visitPlainly(at, blast, visit); }));
            touched += touching(self) != nullptr;
            struck += hit != nullptr;
            shots += target != nullptr;
            visited += seen.size() > 1;
        }
    }
    for (const int found : {touched, struck, shots, visited}) EXPECT_GT(found, 1000);
}
TEST_F(ObjectMgrPlain, LongShotsMeetSmallThingsInFrontOfAWall) {
    t.setGeometry({wallMesh(100, 50)});
    int shots = 0;
    for (int scene = 0; scene < 100; ++scene) {
        objects.clear();
        for (int i = 0; i < 300; ++i) {
            auto object = std::make_unique<cObject>();
            object->setPosition({random.number(i < 3 ? 95.0f : -300.0f, i < 3 ? 100.0f : 0.0f),
                                 random.number(-3, 3), random.number(-3, 3)});
            object->setBoundingRadius(random.number(0.1f, 0.4f));
            object->setController(std::make_unique<cSceneryController>(object.get()));
            objects.add(std::move(object));
        }
        const cVector3 start(0, random.number(-3, 3), random.number(-3, 3));
        for (int i = 0; i < 3; ++i) {
            const cVector3 way = (objects.get(static_cast<size_t>(i))->getPosition() - start).normalized();
            for (const float length : {90.0f, 101.0f, 1e3f, 9e3f}) {
                const cObject* target = shot(nullptr, start, way, length);
                ASSERT_EQ(objects.findShotTarget(nullptr, start, way, length), target) << length;
                shots += target != nullptr;
            }
        }
    }
    EXPECT_GT(shots, 800);
}

TEST_F(ObjectMgrPlain, AShotEndsWithItsRange) {
    auto made = std::make_unique<cObject>();
    cObject* object = made.get();
    object->setBoundingRadius(1);
    object->setController(std::make_unique<cSceneryController>(object));
    objects.add(std::move(made));
    for (int i = 0; i < 2000; ++i) {
        const cVector3 start = random.vector(100), way = random.vector(1).normalized();
        const float range = random.number(1, 60);
        object->setPosition(start + way * (range + 0.5f));
        ASSERT_EQ(objects.findShotTarget(nullptr, start, way, range), nullptr) << "beyond " << range;
        object->setPosition(start + way * (range - 0.01f));
        ASSERT_EQ(objects.findShotTarget(nullptr, start, way, range), object) << "within " << range;
    }
}
