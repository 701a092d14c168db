#include "script/cml_element.h"

#include "core/log_mgr.h"

void CmlReport::add(int line, const std::string& message) {
    rows.push_back({line, message});
    if (!quiet) cLogMgr::instance().error(message);
}

void cCmlElement::clear() {
    children.clear();
    attributes.clear();
    text.clear();
    name.clear();
    calls.clear();
    tests.clear();
    localNames.clear();
    localValues.clear();
    hasChildren = false;
    key = 0;
    for (const cCmlElement*& slot : slots) slot = nullptr;
}

cCmlElement* cCmlElement::childAt(int32_t position) const {
    if (position < 0 || position >= childCount()) return nullptr;
    return static_cast<cCmlElement*>(children[static_cast<size_t>(position)].get());
}

cCmlElement* cCmlElement::findChild(CmlKind wanted) const {
    for (int32_t i = 0; i < childCount(); ++i) {
        if (childAt(i)->elementKind == wanted) return childAt(i);
    }
    return nullptr;
}

cCmlElement* cCmlElement::findChildWith(CmlKind wanted, const std::string& attribute,
                                        const std::string& value) const {
    return childAt(childIndex(wanted, attribute, value));
}

int32_t cCmlElement::childIndex(CmlKind wanted, const std::string& attribute,
                                const std::string& value) const {
    for (int32_t i = 0; i < childCount(); ++i) {
        if (childAt(i)->elementKind == wanted && childAt(i)->getAttribute(attribute) == value) return i;
    }
    return -1;
}

int32_t cCmlChildNames::find(const cCmlElement& parent, CmlKind kind, const std::string& name) {
    const auto [entry, isNew] = positions_.try_emplace({&parent, kind});
    auto& positions = entry->second;
    for (int32_t i = 0; isNew && i < parent.childCount(); ++i) {
        const cCmlElement& child = *parent.childAt(i);
        if (child.elementKind == kind) positions.try_emplace(child.getAttribute("name"), i);
    }
    const auto found = positions.find(name);
    return found == positions.end() ? -1 : found->second;
}
