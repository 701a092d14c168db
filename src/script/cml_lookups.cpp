#include "script/cml_lookups.h"

#include "audio/audio_mgr.h"
#include "world/world.h"

CmlLookups cmlLookups() {
    CmlLookups lookups;
    lookups.globalIndex = [](const std::string& name) {
        return cWorld::instance().globals.globalIndex(name);
    };
    lookups.findItem = [](const std::string&) { return -1; }; // there are no item definitions yet
    lookups.itemAt = [](int32_t) { return nullptr; };
    lookups.preloadSound = [](const std::string& name) { cAudioMgr::instance().getSound(name, true, false); };
    return lookups;
}
