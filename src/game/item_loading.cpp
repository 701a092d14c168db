// How "objects.xml" becomes item definitions.

#include "audio/audio_mgr.h"
#include "core/log_mgr.h"
#include "core/name_hash.h"
#include "core/parse.h"
#include "data/xml_node.h"
#include "game/item_def.h"

#include <cctype>
#include <string_view>

namespace {
constexpr float kAtlasCells = 4;
constexpr std::string_view kVowelSounds = "AOUEIYH18";

const cXmlNode* childOf(const cXmlNode& element, const char* name) {
    for (const auto& child : element.children) {
        if (child->name == name) return child.get();
    }
    return nullptr;
}

bool flag(const cXmlNode& element, const char* attribute) {
    return toInt(element.getAttribute(attribute)) > 0;
}

/// Hash of the sound's name, which is made ready; 0 for names too short to be any.
int32_t soundOf(const cXmlNode& element, const char* attribute) {
    const std::string& name = element.getAttribute(attribute);
    if (name.size() > 1) cAudioMgr::instance().getSound(name, true, false);
    return nameHash(name);
}

void readGrammar(cItemDef& item) {
    if (item.name.empty()) return;
    const auto first = static_cast<char>(std::toupper(static_cast<unsigned char>(item.name.front())));
    if (kVowelSounds.find(first) != std::string_view::npos) item.article = "an";
    if (item.name.back() == 's') item.pluralSuffix.clear();
}

void readProjectile(const cXmlNode& weapon, cItemDef& item) {
    item.hitSound = soundOf(weapon, "hit_sound");
    if (const cXmlNode* physics = childOf(weapon, "physics")) {
        item.radius = toFloat(physics->getAttribute("radius"));
        item.acceleration = toFloat(physics->getAttribute("acceleration"));
        item.duration = toInt(physics->getAttribute("duration"));
        item.gravityOrOffset = toVector3(physics->getAttribute("gravity"));
        item.maxSpeed = toFloat(physics->getAttribute("max_speed"));
        item.charge = toInt(physics->getAttribute("charge")) != 0;
    }
    if (const cXmlNode* damage = childOf(weapon, "damage")) {
        item.damageRadius = toFloat(damage->getAttribute("radius"));
        item.damageFalloff = toFloat(damage->getAttribute("falloff"));
        item.damage = toInt(damage->getAttribute("amount"));
    }
}

void readWeapon(const cXmlNode& weapon, cItemDef& item) {
    const std::string& type = weapon.getAttribute("type");
    if (type == "ballistic") {
        item.weaponType = kBallistic;
        item.range = toInt(weapon.getAttribute("range"));
        item.damage = toInt(weapon.getAttribute("damage"));
    } else if (type == "projectile") {
        item.weaponType = kProjectileWeapon;
        readProjectile(weapon, item);
    } else {
        item.weaponType = kCloseRange;
        item.damage = toInt(weapon.getAttribute("damage"));
        item.gravityOrOffset = toVector3(weapon.getAttribute("offset"));
        item.radius = toFloat(weapon.getAttribute("radius"));
    }
}
} // namespace

void cItemDefs::loadItemDefs() {
    if (loaded_) return;
    loaded_ = true;
    cXmlNode root;
    if (root.load(kFile) < 0) return;
    defs_.reserve(root.children.size());
    for (const auto& child : root.children) readItem(*child);
    loadAtlas();
}

void cItemDefs::readItem(const cXmlNode& element) {
    cItemDef& item = defs_.emplace_back();
    item.name = element.getAttribute("name");
    readGrammar(item);
    item.subobjectName = element.getAttribute("subobject_name");
    item.allowGrouping = flag(element, "allow_grouping");
    item.usageConsumes = flag(element, "usage_consumes");
    item.differentSubobjects = flag(element, "different_subobjects");
    item.useSound = soundOf(element, "use_sound");
    item.description = element.text;
    const cXmlNode* image = childOf(element, "image");
    if (!image) {
        cLogMgr::instance().error("Object %s is missing image subobject!", item.name.c_str());
        return;
    }
    item.atlasU = toFloat(image->getAttribute("column")) / kAtlasCells;
    item.atlasV = (kAtlasCells - 1 - toFloat(image->getAttribute("row"))) / kAtlasCells;
    if (const cXmlNode* weapon = childOf(element, "weapon")) {
        readWeapon(*weapon, item);
        const cXmlNode* model = item.weaponType == kProjectileWeapon ? childOf(*weapon, "model") : nullptr;
        if (model) {
            if (cModel* shape = models_.load(model->getAttribute("file"), true)) {
                shape->moveToCentre();
                shape->scaleToExtent(toFloat(model->getAttribute("size")));
                item.projectileModel = shape;
            }
            item.explodes = !model->getAttribute("explosion").empty();
        }
    }
    if (const cXmlNode* animation = childOf(element, "animation")) {
        item.attackLength = toInt(animation->getAttribute("length"));
        item.fireFrame = toInt(animation->getAttribute("action"));
    }
}
