#include "world/model_store.h"

#include "core/log_mgr.h"
#include "render/shadow_volume.h"

#include <SDL.h>

cModel* cStaticModelStore::load(const std::string& fileName, bool shadows) {
    auto model = std::make_unique<cModel>();
    if (model->load(fileName, true) < 0) {
        cLogMgr::instance().error("Unable to load model %s", fileName.c_str());
        return nullptr;
    }
    if (shadows) shadowVolume::prepare(model->objects);
    cModel* made = model.get();
    models_.emplace(made, std::move(model));
    return made;
}

void cStaticModelStore::release(const cModel* model) {
    models_.erase(model);
}

std::shared_ptr<cCharacterModel> cAnimatedModelStore::load(const std::string& directory,
                                                           const std::string& name, bool converting,
                                                           bool shadows) {
    if (const auto it = models_.find(name); it != models_.end()) return it->second;
    auto model = std::make_shared<cCharacterModel>();
    if (!(converting ? model->loadCff(directory, name) : model->loadCffRaw(directory, name))) {
        cLogMgr::instance().error("Unable to load the animated model %s", name.c_str());
        cLogMgr::instance().error("%s", SDL_GetError());
    }
    if (shadows) model->prepareShadowData();
    models_[name] = model;
    return model;
}

void cAnimatedModelStore::release(std::shared_ptr<const cCharacterModel>& model) {
    model.reset();
    std::erase_if(models_, [](const auto& entry) { return entry.second.use_count() == 1; });
}
