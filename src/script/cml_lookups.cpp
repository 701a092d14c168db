#include "script/cml_lookups.h"

#include "audio/audio_mgr.h"
#include "game/item_def.h"
#include "world/world.h"

CmlLookups cmlLookups() {
    CmlLookups lookups;
    lookups.globalIndex = [](const std::string& name) {
        return cWorld::instance().globals.globalIndex(name);
    };
    lookups.findItem = [](const std::string& name) {
        cItemDefs::instance().loadItemDefs();
        return cItemDefs::instance().findItem(name);
    };
    lookups.itemAt = [](int32_t id) { return cItemDefs::instance().at(id); };
    lookups.preloadSound = [](const std::string& name) { cAudioMgr::instance().getSound(name, true, false); };
    return lookups;
}
