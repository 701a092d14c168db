#include "play/player/eyes.h"

#include "core/name_hash.h"
#include "game/item_def.h"
#include "render/renderer.h"
#include "script/dialogue.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <cmath>

namespace eyes {
namespace {
constexpr float kHalfHeight = 0.41421356f;     ///< of the picture at distance 1: a view of 45 degrees
constexpr float kAspect = 4.0f / 3;            ///< narrower than any window
constexpr float kFarThing = 40, kFarSpot = 45; ///< beyond that nobody makes out what it is
constexpr int kSpots = 80;                     ///< a view
constexpr int kBoxOpens = 40;                  ///< frames until the box of a conversation shows words
constexpr float kProbe = 0.3f;

cVector3 level(cVector3 v) {
    v.y = 0;
    return v.normalized();
}

/// Low-discrepancy places in the picture, −1 … 1.
float spread(uint64_t i, double step) {
    const double x = static_cast<double>(i) * step;
    return static_cast<float>(2 * (x - std::floor(x)) - 1);
}

Hold holdOf(const cItemDef* item) {
    if (!item) return Hold::kNothing;
    if (item->damage <= 0 || item->weaponType == kNoWeapon) return Hold::kNoWeapon;
    if (item->weaponType == kBallistic) return Hold::kShot;
    if (item->weaponType == kCloseRange) return Hold::kBlow;
    return item->charge ? Hold::kSwing : Hold::kThrow;
}

Thing describe(cObject& object) {
    Thing thing{};
    thing.id = object.getSerial();
    thing.place = object.getPosition();
    thing.facing = level(object.getDirection());
    thing.flying = object.getController()->kind() == cController::kProjectile;
    if (object.getVisualKind() == cObject::kAnimated) {
        const cCharacterPose& pose = static_cast<cAnimatedObject&>(object).pose();
        thing.look = pose.getModel().get();
        thing.alive = true;
        thing.lying = pose.getCurrentAnimation() == nameHash("BOTH_DEATH1");
    } else if (object.getVisualKind() == cObject::kStatic) {
        thing.look = static_cast<cStaticObject&>(object).getModel();
    }
    return thing;
}
} // namespace

View cEyes::look() {
    View view;
    cWorld& world = cWorld::instance();
    const cObject* hero = cObjectMgr::instance().hero();
    if (hero && hero->getSerial() != hero_) {
        hero_ = hero->getSerial();
        ++level_;
        if (levelFile_ != world.levelFile) origin_ = hero->getPosition();
        levelFile_ = world.levelFile;
        sight_.forget();
    }
    view.level = level_;
    view.dark = world.levelChangePending > 0;
    if (!hero) return view;
    const cCamera& camera = world.camera;
    view.hero = hero->getPosition() - origin_;
    view.forward = level(camera.getForward());
    view.right = level(camera.getRight());
    view.pitch = std::asin(camera.getForward().y);
    view.firstPerson = camera.isFirstPerson();
    view.falling = hero->body && hero->body->airborne;
    view.health = static_cast<float>(world.health) / static_cast<float>(world.maxHealth);
    const cItemDef* item = world.inventory.selectedItem();
    view.hold = holdOf(item);
    view.held = item;
    view.count = world.inventory.selectedCount();
    sight_.lookFrom(camera.getEye());
    lookAtThings(view);
    lookAtScenery(view);
    read(view);
    return view;
}

void cEyes::lookAtThings(View& view) const {
    const cCamera& camera = cWorld::instance().camera;
    const cVector3 eye = camera.getEye(), up = camera.getRight().cross(camera.getForward());
    cObjectMgr& objects = cObjectMgr::instance();
    for (size_t i = 1; i < objects.count(); ++i) {
        cObject& object = *objects.get(i);
        const cVector3 way = object.getPosition() - eye;
        const float ahead = way.dot(camera.getForward());
        if (ahead < 0.5f || ahead > kFarThing) continue;
        if (std::fabs(way.dot(up)) > ahead * kHalfHeight) continue;
        if (std::fabs(way.dot(camera.getRight())) > ahead * kHalfHeight * kAspect) continue;
        Thing thing = describe(object);
        if (!thing.look || !sight_.sees(object)) continue;
        thing.place -= origin_;
        view.things.push_back(thing);
    }
}

/// What lies at the end of a line of sight: ground is what a foot finds just above and below it.
void cEyes::seeSpot(View& view, const cVector3& end, float waterHeight) const {
    const cVector3 eye = cWorld::instance().camera.getEye(), way = end - eye;
    const cSight::Seen seen = sight_.look(eye, end);
    const cVector3 hit = eye + way * seen.share;
    if (eye.y > waterHeight && hit.y < waterHeight) {
        const float share = (eye.y - waterHeight) / (eye.y - end.y);
        view.spots.push_back({Spot::kWater, eye + way * share - origin_});
        return;
    }
    if (seen.share >= 1) return;
    const cVector3 before = hit - way.normalized() * 0.04f, reach(0, kProbe, 0);
    const float down = sight_.look(before + reach, before - reach).share;
    if (down > 0.02f && down < 1) {
        view.spots.push_back({Spot::kFloor, before + reach - reach * (2 * down) - origin_});
    } else {
        view.spots.push_back({seen.thing ? Spot::kThing : Spot::kWall, hit - origin_});
    }
}

void cEyes::lookAtScenery(View& view) {
    const cWorld& world = cWorld::instance();
    const cCamera& camera = world.camera;
    const cVector3 up = camera.getRight().cross(camera.getForward());
    const float water = world.environment().hasWater() ? world.environment().waterHeight() : -1e9f;
    for (int i = 0; i < kSpots; ++i, ++glance_) {
        const float x = spread(glance_, 0.7548776662466927), y = spread(glance_, 0.5698402909980532);
        const cVector3 ray =
            camera.getForward() + camera.getRight() * (x * kHalfHeight * kAspect) + up * (y * kHalfHeight);
        seeSpot(view, camera.getEye() + ray * kFarSpot, water);
    }
}

void cEyes::read(View& view) {
    for (const cHud::Message& message : cWorld::instance().hud.messages)
        view.messages.push_back(message.text);
    cDialogue& dialogue = cDialogue::instance();
    talkFrames_ = dialogue.isActive() ? talkFrames_ + 1 : 0;
    if (talkFrames_ < kBoxOpens) return;
    // The frame has laid this page out just now: doing it again changes nothing.
    const std::vector<cDialogue::PlacedWord> words = dialogue.layOutPage();
    // Replies stand one a line from the top, painted over whatever the page shows.
    size_t firstReply = words.size();
    for (size_t i = 0; dialogue.isChoosing() && i < words.size(); ++i)
        if (words[i].x == 0 && words[i].y == 0) firstReply = i;
    for (size_t i = 0; i < words.size(); ++i)
        i < firstReply ? void(view.page += words[i].text) : view.replies.push_back(words[i].text);
    view.highlighted = static_cast<size_t>(dialogue.getChoice());
}
} // namespace eyes
