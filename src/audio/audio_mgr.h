#pragma once
#include "audio/sound.h"
#include "core/vector3.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>

class cMusicStream;

/// Effects and the one music stream, through OpenAL. Positions are world units; gains 0 ... 1. Without a
/// sound device everything is accepted and silent.
class cAudioMgr {
public:
    static cAudioMgr& instance();

    void initialise(); ///< opens the device; one row in the log when there is none
    void shutdown();
    bool isAudible() const { return audible_; }

    /// Where the hero is and how he stands; null when there is none. For the time until the next call.
    struct Listener {
        cVector3 position, direction, up;
    };
    void setListener(const Listener* listener);
    /// Once a frame: feeds the music and starts at most one of the waiting effects.
    void update();

    // Effects: WAV files by their name without ending.
    /// Loaded at the first request. Never null; a file that cannot be read is a silent sound.
    cSound* getSound(std::string_view baseName, bool positional, bool loop);
    void playSound(std::string_view baseName);
    /// By the hash of the name; only what was loaded as positional.
    void playSoundIdAt(int32_t id, const cVector3& position);
    void setEffectsVolume(float gain); ///< of what is loaded by now

    // Music: Ogg Vorbis files by their name without ending.
    /// A file that cannot be opened leaves the music as it is.
    void playMusic(std::string_view baseName);
    void stopMusic();
    /// In the next update music that is over begins again, instead of ending with a row.
    void repeatMusic() { repeats_ = true; }
    void setPaused(bool paused); ///< of the music, between updates; effects end by themselves
    void setMusicVolume(float gain);
    float getMusicVolume() const { return musicVolume_; }
    bool isStreaming() const { return streaming_; }
    size_t pendingCount() const { return pending_.size(); }

    static constexpr int kMostEffects = 252;
    /// One starts a frame: what asks for more than this loses its sounds, not its memory.
    static constexpr size_t kMostPending = 256;

private:
    cAudioMgr();
    ~cAudioMgr();
    void loadEffect(const std::string& fileName, cSound& sound);
    bool makeNames(cSound& sound);
    void queue(cSound& sound);
    void placeListener() const;
    void feedMusic();
    void startPending();
    void reportListener() const;

    bool audible_ = false;
    bool hasListener_ = false;
    Listener listener_;
    float distanceMod_ = 0;
    float musicVolume_ = 1;
    bool streaming_ = false;
    bool repeats_ = false; ///< asked for anew before each update
    int effects_ = 0;
    std::unique_ptr<cMusicStream> music_;
    std::map<std::string, std::unique_ptr<cSound>, std::less<>> byName_;
    std::map<int32_t, cSound*> byId_;
    std::deque<cSound*> pending_;
};
