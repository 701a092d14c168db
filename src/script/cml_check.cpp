#include "script/cml_check.h"

#include "core/name_hash.h"

cCmlCheck::cCmlCheck(const cCmlElement& document, const CmlCheckData& gameData, CmlReport& report)
    : root(document), data(gameData), warnings_(report) {
    for (int32_t i = 0; i < root.childCount(); ++i) {
        const cCmlElement& e = *root.childAt(i);
        if (e.elementKind == kCmlObjectElement && !e.getAttribute("name").empty())
            objects_.try_emplace(e.getAttribute("name"), &e);
    }
}

const cCmlElement* cCmlCheck::findObject(const std::string& name) const {
    const auto found = objects_.find(name);
    return found == objects_.end() ? nullptr : found->second;
}

void cCmlCheck::checkAnimation(int line, const std::string& model, const std::string& name, bool lower,
                               bool upper) {
    const CmlCheckData::Animations* known = data.animations(model);
    if (!known) return;
    const auto look = [&](bool asked, const std::set<std::string>& names, const char* part) {
        if (!asked) return;
        const std::string who = "the " + std::string(part) + " body of the model " + model;
        if (names.count(name) == 0) warn(line, who + " has no animation " + quoted(name));
        for (const std::string& other : names) {
            if (names.count(name) != 0 && other != name && nameHash(other) == nameHash(name))
                warn(line, who + " has " + quoted(other) + " with the hash of " + quoted(name));
        }
    };
    look(lower, known->lower, "lower");
    look(upper, known->upper, "upper");
}

std::string quoted(std::string_view name) {
    return "\"" + std::string(name) + "\"";
}

std::string animatedModel(const cCmlElement& object) {
    const cCmlElement* appearance = object.findChild(kCmlAppearance);
    const cCmlElement* model = appearance ? appearance->findChild(kCmlModel) : nullptr;
    return model && appearance->getAttribute("type") == "animated" ? model->getAttribute("file") : "";
}
