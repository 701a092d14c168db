// "objects.xml": the hero is given some of every kind, and what flies is thrown.
#include "audio/audio_mgr.h"
#include "core/application.h"
#include "data/xml_node.h"
#include "game/hud.h"
#include "game/inventory.h"
#include "game/weapons.h"
#include "render/renderer.h"
#include "script/event_mgr.h"
#include "support.h"
#include "world/object_mgr.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int kFrames = 4;
constexpr uint32_t kFrameMs = 100;
constexpr int32_t kMostThrown = 20;

void addTo(fuzz::cDigest& digest, const cItemDef& item) {
    digest.add(item.name).add(item.subobjectName).add(item.description).add(item.article);
    digest.add(item.pluralSuffix).addValue(item.atlasU).addValue(item.atlasV).addValue(item.weaponType);
    digest.addValue(item.allowGrouping).addValue(item.usageConsumes).addValue(item.differentSubobjects);
    digest.addValue(item.useSound).addValue(item.hitSound).addValue(item.attackLength);
    digest.addValue(item.fireFrame).addValue(item.damage).addValue(item.radius).addValue(item.acceleration);
    digest.addValue(item.maxSpeed).addValue(item.duration).addValue(item.damageRadius);
    digest.addValue(item.damageFalloff).addValue(item.charge).addValue(item.explodes).addValue(item.range);
    digest.addValue(item.gravityOrOffset);
    if (item.projectileModel) digest.addValue(item.projectileModel->extent());
    fuzz::require(item.article == "a" || item.article == "an", "an article is one of two");
    fuzz::require(std::isfinite(item.radius) && std::isfinite(item.maxSpeed), "numbers are numbers");
}

/// Every kind is picked up, picked up again and used up.
void carry(const cItemDefs& defs, fuzz::cDigest& digest) {
    cHud hud;
    cInventory inventory(hud);
    for (int32_t id = 0; id < defs.count(); ++id) {
        inventory.give(id, 1);
        inventory.give(id, 3);
        inventory.giveParts(id, 2);
        inventory.selectItem(id);
        digest.addValue(inventory.selectedCount());
        inventory.consume(2);
    }
    for (int32_t id = 0; id < defs.count(); id += 2) inventory.removeAll(id);
    for (const auto& entry : inventory.entries()) digest.addValue(entry);
    fuzz::require(inventory.entries().empty() || inventory.selectedItem(), "something is selected");
}

void throwAll(const cItemDefs& defs, fuzz::cDigest& digest) {
    cObjectMgr& objects = cObjectMgr::instance();
    GameState state = STATE_GAME;
    for (int32_t id = 0; id < std::min(defs.count(), kMostThrown); ++id)
        launchProjectile(*defs.at(id), {static_cast<float>(id), 1, 0}, {0, 0.1f, defs.at(id)->maxSpeed});
    for (int frame = 0; frame < kFrames; ++frame) {
        objects.update(kFrameMs, &state);
        cEventMgr::instance().process(kFrameMs, &state);
        cRenderer::instance().endFrame();
        digest.addValue(objects.count());
    }
    for (size_t i = 0; i < objects.count(); ++i) digest.addValue(objects.get(i)->getPosition());
}
} // namespace

FUZZ_TARGET(items) {
    cApplication::destroyGame(); // another target may have read other definitions
    fuzz::putFile("objects.xml", fuzz::text(data, size));
    fuzz::putFile("thing.cpm", fuzz::tetrahedron().model);
    cRenderer::instance(); // outlives the run; it seeds the random generator
    cItemDefs& defs = cItemDefs::instance();
    defs.loadItemDefs();
    cXmlNode document;
    const bool whole = document.load("objects.xml") == 0;
    fuzz::require(static_cast<size_t>(defs.count()) == (whole ? document.children.size() : 0),
                  "every element keeps its place");
    fuzz::cDigest digest;
    for (int32_t id = 0; id < defs.count(); ++id) {
        const cItemDef& item = *defs.at(id);
        addTo(digest, item);
        const std::string& name = document.children[static_cast<size_t>(id)]->getAttribute("name");
        fuzz::require(item.name == name && defs.findItem(name) <= id, "scripts find it by its name");
    }
    carry(defs, digest);
    throwAll(defs, digest);
    const bool any = defs.count() > 0;
    cApplication::destroyGame();
    cAudioMgr::instance().shutdown(); // it keeps the names of sounds
    return any ? digest.value() : 0;
}
