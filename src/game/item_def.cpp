#include "game/item_def.h"

#include "render/renderer.h"

#include <memory>

namespace {
std::unique_ptr<cItemDefs> g_instance;
} // namespace

cItemDefs& cItemDefs::instance() {
    if (!g_instance) g_instance = std::make_unique<cItemDefs>();
    return *g_instance;
}

void cItemDefs::destroy() {
    g_instance.reset();
}

void cItemDefs::loadAtlas() {
    atlas_ = cRenderer::instance().loadTexture("img\\objects.tga");
}

int32_t cItemDefs::findItem(const std::string& name) const {
    for (int32_t id = 0; id < count(); ++id) {
        if (defs_[static_cast<size_t>(id)].name == name) return id;
    }
    return -1;
}

const cItemDef* cItemDefs::at(int32_t id) const {
    return id >= 0 && id < count() ? &defs_[static_cast<size_t>(id)] : nullptr;
}
