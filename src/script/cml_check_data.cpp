#include "script/cml_check_data.h"

#include "game/item_def.h"
#include "models/character_model.h"
#include "platform/files.h"
#include "world/hierarchy.h"

#include <optional>

namespace {
using Animations = CmlCheckData::Animations;

std::optional<Animations> readAnimations(const std::string& model) {
    const auto [directory, name] = splitCharacterName(model);
    cCharacterModel character;
    if (!character.loadCff(directory, name)) return std::nullopt;
    Animations found;
    for (const cAnimation& a : character.parts[kLowerPart].animations) found.lower.insert(a.name);
    for (const cAnimation& a : character.parts[kUpperPart].animations) found.upper.insert(a.name);
    return found;
}

/// Nothing when there are no item definitions to compare with.
std::optional<std::set<std::string>> readItemNames() {
    cXmlNode items;
    if (items.load(cItemDefs::kFile) != 0) return std::nullopt;
    std::set<std::string> names;
    for (const auto& item : items.children) names.insert(item->getAttribute("name"));
    return names;
}

bool spawnPointExists(const std::string& level, const std::string& name) {
    cXmlNode document;
    if (document.load(level) != 0) return false;
    for (const auto& e : document.children) {
        if (e->name == "player" && e->getAttribute("spawnpoint") == name) return true;
    }
    return false;
}
} // namespace

CmlCheckData gameCheckData() {
    CmlCheckData data;
    data.fileExists = platform::fileExists;
    data.animations = [models = std::make_shared<std::map<std::string, std::optional<Animations>>>()](
                          const std::string& model) -> const Animations* {
        const auto [entry, isNew] = models->try_emplace(model);
        if (isNew) entry->second = readAnimations(model);
        return entry->second ? &*entry->second : nullptr;
    };
    data.itemExists = [names = readItemNames()](const std::string& name) {
        return !names || names->count(name) != 0;
    };
    data.kindExists = [](const std::string& type, const std::string& race, const std::string& className) {
        return lookupHierarchy(type, race, className).classIndex >= 0;
    };
    data.spawnPointExists = spawnPointExists;
    return data;
}
