#include "audio/audio_mgr.h"

cAudioMgr& cAudioMgr::instance() {
    static cAudioMgr manager;
    return manager;
}
