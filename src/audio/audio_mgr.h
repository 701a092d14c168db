#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <string>
#include <string_view>

/// The run's sound. There is none yet: every call is accepted and silent.
class cAudioMgr {
public:
    static cAudioMgr& instance();

    void initialise() {}
    void update() {}
    void playSound(std::string_view) {}
    void playSoundIdAt(int32_t, const cVector3&) {}
    void getSound(std::string_view, bool, bool) {}
    void playMusic(std::string_view) {}
    void stopMusic() {}
    void setEffectsVolume(float gain) { effectsVolume_ = gain; }
    void setMusicVolume(float gain) { musicVolume_ = gain; }
    float getMusicVolume() const { return musicVolume_; }
    void shutdown() {}

private:
    float effectsVolume_ = 1, musicVolume_ = 1;
};
