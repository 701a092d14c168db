// What the story rests on, as the player sees it: each is found in a picture of the real window by taking the
// thing away for a second one.

#include "core/matrix4.h"
#include "game/item_def.h"
#include "render/renderer.h"
#include "script/cml_object.h"
#include "support/game_run.h"
#include "support/picture.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <cmath>
#include <gtest/gtest.h>

using inhabitants::action;
using inhabitants::place;
using inhabitants::script;

namespace {
cObject& thing(const char* name) {
    return *script(name).getOwner();
}

/// The camera held where it is; nobody moves a limb and nothing throws a shadow.
class StillView {
public:
    explicit StillView(GameRun& run)
        : game(run), shadows_(cObjectMgr::instance().shadowsEnabled), offset_(camera.getOffset()),
          view_(camera.getView()) {
        cObjectMgr::instance().shadowsEnabled = false;
        camera.detach();
        for (size_t i = 0; cObject* object = cObjectMgr::instance().get(i); ++i) {
            if (object->getVisualKind() != cObject::kAnimated) continue;
            cCharacterPose& pose = static_cast<cAnimatedObject*>(object)->pose();
            if (pose.isPlaying()) stopped_.push_back(&pose);
            pose.setPlaying(false);
        }
    }
    ~StillView() {
        cObjectMgr::instance().shadowsEnabled = shadows_;
        for (cCharacterPose* pose : stopped_) pose->setPlaying(true);
        camera.setTarget(cObjectMgr::instance().hero());
        camera.setOffset(offset_);
        camera.setView(view_);
    }
    StillView(const StillView&) = delete;
    StillView& operator=(const StillView&) = delete;

    void lookFrom(const cVector3& eye, const cVector3& at) {
        camera.setOffset(eye);
        camera.setView((at - eye).normalized());
        game.frames(1);
    }
    Picture without(cObject& object) {
        const cVector3 here = object.getPosition();
        object.setPosition(here + cVector3(0, 200, 0));
        Picture picture = game.picture();
        object.setPosition(here);
        return picture;
    }
    /// What is seen of it.
    Box seen(cObject& object) { return changed(game.picture(), without(object)); }
    /// Adds where a place in the level appears on the screen.
    void project(const cVector3& where, Box& box) const {
        constexpr float kTanHalf = 0.41421356f; // of 45 degrees from top to bottom
        const cVector3 way = where - camera.getEye(), forward = camera.getForward(),
                       right = camera.getRight();
        const float h = static_cast<float>(cRenderer::instance().getHeight()) / 2,
                    w = static_cast<float>(cRenderer::instance().getWidth()) / 2,
                    unit = h / kTanHalf / way.dot(forward);
        box.add(static_cast<int>(w + way.dot(right) * unit),
                static_cast<int>(h + way.dot(right.cross(forward)) * unit));
    }

    GameRun& game;
    cCamera& camera = cWorld::instance().camera;

private:
    const bool shadows_;
    const cVector3 offset_, view_;
    std::vector<cCharacterPose*> stopped_;
};

int width(const Box& box) {
    return box.hiX - box.loX + 1;
}
int height(const Box& box) {
    return box.hiY - box.loY + 1;
}

/// Where somebody's head is on the screen.
Box headOf(cObject& who, const StillView& view) {
    const cCharacterPose& pose = static_cast<cAnimatedObject&>(who).pose();
    const cCharacterModel& model = *pose.getModel();
    cMatrix4 at = who.getTransform();
    for (const auto& [part, tag] : {std::pair(kLowerPart, "tag_torso"), {kUpperPart, "tag_head"}}) {
        const cPartState& s = pose.getState(part);
        at = at * model.parts[part].tagTransform(model.parts[part].findTag(tag), s.frameA, s.frameA, 0);
    }
    Box box;
    std::vector<cVector3> positions, normals;
    for (const cAnimMesh& mesh : model.parts[kHeadPart].meshes) {
        const size_t count = poseMesh(mesh, 0, positions, normals);
        for (size_t i = 0; i < count; ++i) view.project(at.transformPoint(positions[i]), box);
    }
    return box;
}

/// How much of a head's place on the screen shows the head, 0 ... 1.
float shareSeen(const Box& head, const Picture& with, const Picture& without) {
    int seen = 0;
    for (int y = head.loY; y <= head.hiY; ++y)
        for (int x = head.loX; x <= head.hiX; ++x) seen += differs(with.at(x, y), without.at(x, y));
    return static_cast<float>(seen) / static_cast<float>(width(head) * height(head));
}

/// Pixels of fire, and how many of them lie in the box.
int flames(const Picture& picture, const Box& box) {
    int count = 0;
    for (int y = box.loY; y <= box.hiY; ++y)
        for (int x = box.loX; x <= box.hiX; ++x) {
            const uint32_t c = picture.at(x, y), r = c >> 16, g = c >> 8 & 255, b = c & 255;
            count += r > 170 && g > r / 3 && g < r * 9 / 10 && b < r * 2 / 5;
        }
    return count;
}
} // namespace

TEST(SetPieces, TheFirstTalkShowsBothFaces) {
    struct Way {
        const char* from;
        float x, z;
    };
    for (const Way& way :
         {Way{"head-on", 0.8f, -8.4f}, {"the left", 4.2f, -9.6f}, {"the right", -1.4f, -10.4f}}) {
        SCOPED_TRACE(way.from);
        GameRun game(GameRun::at("hut"));
        ASSERT_TRUE(game.follow({{0, -5}, {0, -8}, {way.x, way.z}}));
        const cVector3 rosa = place("rosa");
        game.walkTo(rosa.x, rosa.z, 120); // right up to her
        game.frames(20);
        game.use();
        ASSERT_EQ(game.app.state(), STATE_DIALOGUE);
        game.frames(40);
        StillView view(game);
        const Picture both = game.picture();
        for (cObject* who : {&thing("rosa"), cObjectMgr::instance().hero()}) {
            const Box head = headOf(*who, view);
            EXPECT_TRUE(head.within(0, 200, 799, 599)) << "above the words: " << head;
            const float share = shareSeen(head, both, view.without(*who));
            EXPECT_GT(share, 0.5f) << (who == cObjectMgr::instance().hero() ? "the hero" : "Rosa");
        }
    }
}

TEST(SetPieces, TheBellIsSeenByWhoRingsIt) {
    GameRun game(GameRun::at("pier"));
    script("lever_ledge").fireReaction(kTriggerContext);
    game.frames(3);
    game.talkToTheEnd();
    ASSERT_TRUE(game.follow({{0, 18}, {9.5f, 17.4f}, {9.5f, 9.5f}, {9.5f, 5.9f}}, 1200));
    game.face(place("bell_bastion").x, place("bell_bastion").z);
    game.use();
    ASSERT_EQ(game.app.state(), STATE_DIALOGUE);
    StillView view(game);
    const Box bell = view.seen(thing("bell_bastion"));
    EXPECT_GT(bell.count, 1500) << bell;
    EXPECT_LT(bell.count, 60000) << bell;
    cObject& hero = *cObjectMgr::instance().hero();
    EXPECT_GT(shareSeen(headOf(hero, view), game.picture(), view.without(hero)), 0.5f)
        << "behind the open leaf of the gate";
}

TEST(SetPieces, TheBarIsAsLongAsHisHealth) {
    GameRun game(GameRun::at("hut"));
    game.frames(30);
    cWorld& world = cWorld::instance();
    world.damage(80);
    ASSERT_EQ(world.health, 20);
    game.frames(60);
    StillView view(game);
    const auto barAt = [&](int32_t health) {
        world.health = health;
        return game.picture();
    };
    const Picture hurt = barAt(20), empty = barAt(0);
    const Box fifth = changed(empty, hurt), all = changed(empty, barAt(100));
    ASSERT_TRUE(all.within(16, 16, 16 + 128, 16 + 96)) << all;
    EXPECT_EQ(all.count, width(all) * height(all)) << "a rectangle";
    EXPECT_GT(width(all), 80);
    EXPECT_NEAR(width(fifth), width(all) / 5.0, 1) << fifth;
    EXPECT_EQ(fifth.loX, all.loX);
    EXPECT_EQ(fifth.count, width(fifth) * height(fifth));
}

TEST(SetPieces, WhoIsShotLies) {
    GameRun game(GameRun::at("landing", "summit.xml"));
    cWorld::instance().inventory.give(cItemDefs::instance().findItem("rifle"), 2);
    for (float part = 0; part < 0.21f; part += 0.02f) {
        const float r = 26 - 14.5f * part, angle = 6.28318531f * part;
        ASSERT_TRUE(game.walkTo(r * std::sin(angle), r * std::cos(angle), 300)) << part;
    }
    for (int i = 0; i < 1500 && action("raider_bend") != "dead"; ++i) {
        const bool near = (place("raider_bend") - game.hero()).length() < 8;
        if (action("raider_bend") == "die") {
            game.player.release(CMD_FORWARD);
        } else if (!near) {
            game.player.walkTowards(place("raider_bend"));
        } else if (game.player.turnTowards(place("raider_bend"))) {
            game.player.press(CMD_FIRE);
        }
        game.frames(1);
        game.player.release(CMD_FIRE);
    }
    ASSERT_EQ(action("raider_bend"), "dead") << "health " << cWorld::instance().health;
    StillView view(game);
    cObject& body = thing("raider_bend");
    const cVector3 feet = body.getPosition() - cVector3(0, 1.25f, 0),
                   middle = feet - body.getDirection() * 0.6f; // he falls backwards
    const cVector3 side = body.getDirection().cross({0, 1, 0});
    view.lookFrom(middle + side * 4 + cVector3(0, 1, 0), middle);
    const Box seen = view.seen(body);
    Box standing;
    view.project(feet, standing);
    view.project(feet + cVector3(0, 1.8f, 0), standing);
    EXPECT_GT(seen.count, 3000) << seen;
    EXPECT_GT(width(seen), 2 * height(seen)) << seen;
    EXPECT_LT(height(seen), height(standing) / 2) << seen << "; standing: " << standing;
}

TEST(SetPieces, TheBeaconIsDarkThenBurns) {
    GameRun game(GameRun::at("landing", "summit.xml"));
    cWorld::instance().inventory.give(cItemDefs::instance().findItem("flint"), 1);
    thing("marn").setPosition({0, -30, 0}); // whose talk is another matter
    cObjectMgr::instance().hero()->setPosition({0, 17, 6});
    game.frames(60);
    ASSERT_TRUE(game.follow({{-1.5f, 4}, {-1.2f, 2.2f}}));
    game.walkTo(0, 0, 60); // up the steps to the bowl
    game.frames(20);
    const auto aboveTheBowl = [](const StillView& view) {
        Box box;
        for (const float x : {-1.2f, 1.2f})
            for (const float y : {0.8f, 2.4f})
                view.project(place("beacon_top") + view.camera.getRight() * x + cVector3(0, y, 0), box);
        return box;
    };
    {
        StillView view(game);
        const Box bowl = view.seen(thing("beacon_top"));
        EXPECT_GT(bowl.count, 3000) << "the bowl and its wood: " << bowl;
        EXPECT_EQ(view.seen(thing("flame_beacon")), Box{}) << "no fire yet";
        EXPECT_LT(flames(game.picture(), aboveTheBowl(view)), 50);
    }
    game.hold(CMD_USE, 2);
    game.frames(14);
    ASSERT_EQ(game.app.state(), STATE_GAME) << "the last scene has not begun";
    {
        StillView view(game);
        const Box above = aboveTheBowl(view);
        EXPECT_TRUE(above.within(0, 0, 799, 599)) << above;
        const Picture dark = view.without(thing("flame_beacon"));
        EXPECT_LT(flames(dark, above), 50);
        EXPECT_GT(flames(game.picture(), above), 3000);
    }
    game.frames(60);
    ASSERT_EQ(game.app.state(), STATE_CINEMATIC);
    EXPECT_GT(flames(game.picture(), {0, 0, 799, 599}), 3000) << "as the last scene shows it";
}
