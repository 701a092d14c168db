#include "audio/audio_mgr.h"

#include "audio/music_stream.h"
#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "platform/files.h"
#include "render/renderer.h"

#include <AL/al.h>
#include <AL/alut.h>
#include <algorithm>
#include <cstdlib>

namespace {
constexpr size_t kRiffHead = 12, kChunkHead = 8, kFormatBytes = 16;
constexpr ALfloat kHighestRate = 1e6f; ///< samples a second

/// Whether every chunk lies within the file and format and samples are there: the toolkit's reader trusts the
/// sizes that a file gives.
bool isWholeWav(const platform::Bytes& file) {
    cBinaryReader in(file);
    const bool head = in.fixedText(4) == "RIFF" && (in.skip(4), in.fixedText(4) == "WAVE");
    if (!head || in.size() < kRiffHead) return false;
    bool format = false;
    while (in.left() >= kChunkHead) {
        const std::string name = in.fixedText(4);
        const uint32_t size = in.u32();
        if (size > in.left()) return false;
        if (name == "fmt ") format = size >= kFormatBytes;
        if (name == "data") return format && size > 0;
        in.skip(std::min<size_t>(size + (size & 1), in.left()));
    }
    return false;
}

/// 16-bit samples of a WAV file, to be freed with free(); null with the toolkit's error.
void* decodeWav(const platform::Bytes& file, ALenum& format, ALsizei& size, ALfloat& rate, int& error) {
    error = ALUT_ERROR_CORRUPT_OR_TRUNCATED_DATA;
    if (!isWholeWav(file)) return nullptr;
    alutGetError();
    void* samples =
        alutLoadMemoryFromFileImage(file.data(), static_cast<ALsizei>(file.size()), &format, &size, &rate);
    error = static_cast<int>(alutGetError());
    if (samples && !(rate >= 1 && rate <= kHighestRate)) {
        error = ALUT_ERROR_UNSUPPORTED_FILE_SUBTYPE;
        std::free(samples);
        samples = nullptr;
    }
    return samples;
}
} // namespace

cAudioMgr& cAudioMgr::instance() {
    static cAudioMgr manager;
    return manager;
}

cAudioMgr::cAudioMgr() = default;
cAudioMgr::~cAudioMgr() = default;

void cAudioMgr::initialise() {
    if (audible_) return;
    distanceMod_ = cConfigMgr::instance().getFloat("MASTER_DISTANCE_MOD", "sound");
    audible_ = alutInit(nullptr, nullptr) == AL_TRUE;
    if (!audible_) cLogMgr::instance().info("There is no sound: %s", alutGetErrorString(alutGetError()));
}

void cAudioMgr::shutdown() {
    pending_.clear();
    byId_.clear();
    music_.reset();
    streaming_ = false;
    for (const auto& [name, sound] : byName_) {
        if (sound->source != 0) alDeleteSources(1, &sound->source);
        if (sound->buffer != 0) alDeleteBuffers(1, &sound->buffer);
    }
    byName_.clear();
    effects_ = 0;
    if (audible_) alutExit();
    audible_ = false;
}

void cAudioMgr::setListener(const Listener* listener) {
    hasListener_ = listener != nullptr;
    listener_ = listener ? *listener : Listener();
}

// --- Effects

cSound* cAudioMgr::getSound(std::string_view baseName, bool positional, bool) {
    if (const auto known = byName_.find(baseName); known != byName_.end()) return known->second.get();
    auto sound = std::make_unique<cSound>();
    sound->mode = positional ? cSound::kPositional : cSound::kFlat;
    const std::string name(baseName);
    if (audible_) loadEffect(name + ".wav", *sound);
    cSound* made = sound.get();
    byName_[name] = std::move(sound);
    const auto [sameHash, alone] = byId_.try_emplace(nameHash(name), made);
    if (!alone) cLogMgr::instance().error("The sound %s takes the place of one with its hash", name.c_str());
    sameHash->second = made;
    return made;
}

/// One buffer and one source, or none.
bool cAudioMgr::makeNames(cSound& sound) {
    alGetError();
    alGenBuffers(1, &sound.buffer);
    if (const ALenum error = alGetError(); error != AL_NO_ERROR) {
        cLogMgr::instance().error("Error generating buffer: %d", error);
        sound.buffer = 0;
        return false;
    }
    alGenSources(1, &sound.source);
    if (const ALenum error = alGetError(); error != AL_NO_ERROR) {
        cLogMgr::instance().error("Error generating buffer: %d", error);
        alDeleteBuffers(1, &sound.buffer);
        sound.buffer = sound.source = 0;
        return false;
    }
    return true;
}

void cAudioMgr::loadEffect(const std::string& fileName, cSound& sound) {
    if (effects_ >= kMostEffects) {
        cLogMgr::instance().error("More than %d sounds: %s stays silent", kMostEffects, fileName.c_str());
        return;
    }
    if (!makeNames(sound)) return;
    ++effects_;
    platform::Bytes file;
    ALenum format = 0;
    ALsizei size = 0;
    ALfloat rate = 0;
    int error = ALUT_ERROR_IO_ERROR;
    void* samples = platform::readFile(fileName, file) ? decodeWav(file, format, size, rate, error) : nullptr;
    if (!samples) {
        cLogMgr::instance().error("Failed to load : %s  OpenAL error: %d", fileName.c_str(), error);
        alDeleteBuffers(1, &sound.buffer);
        sound.buffer = 0;
        return;
    }
    alGetError();
    alBufferData(sound.buffer, format, samples, size, static_cast<ALsizei>(rate));
    std::free(samples);
    alSourcei(sound.source, AL_BUFFER, static_cast<ALint>(sound.buffer));
    if (const ALenum refused = alGetError(); refused != AL_NO_ERROR)
        cLogMgr::instance().error("Failed to load : %s  OpenAL error: %d", fileName.c_str(), refused);
    alSourcef(sound.source, AL_PITCH, 1);
    alSourcef(sound.source, AL_GAIN, 1);
    if (sound.mode == cSound::kFlat) alSourcei(sound.source, AL_SOURCE_RELATIVE, AL_TRUE);
}

void cAudioMgr::playSound(std::string_view baseName) {
    cSound* sound = getSound(baseName, false, false);
    if (audible_ && sound->mode == cSound::kFlat) queue(*sound);
}

void cAudioMgr::queue(cSound& sound) {
    if (pending_.size() < kMostPending) pending_.push_back(&sound);
}

void cAudioMgr::playSoundIdAt(int32_t id, const cVector3& position) {
    const auto known = byId_.find(id);
    if (!audible_ || known == byId_.end() || known->second->mode != cSound::kPositional) return;
    const cVector3 p = position * distanceMod_;
    alSource3f(known->second->source, AL_POSITION, p.x, p.y, p.z);
    placeListener();
    queue(*known->second);
}

void cAudioMgr::setEffectsVolume(float gain) {
    for (const auto& [name, sound] : byName_)
        if (sound->source != 0) alSourcef(sound->source, AL_GAIN, gain);
}

// --- Music

void cAudioMgr::playMusic(std::string_view baseName) {
    if (!audible_ || byName_.find(baseName) != byName_.end()) return;
    auto stream = std::make_unique<cMusicStream>();
    if (!stream->open(std::string(baseName) + ".ogg")) return;
    music_ = std::move(stream);
    music_->setGain(musicVolume_);
    streaming_ = true;
}

void cAudioMgr::stopMusic() {
    music_.reset();
    streaming_ = false;
}

void cAudioMgr::setPaused(bool paused) {
    if (streaming_) music_->setPaused(paused);
}

void cAudioMgr::setMusicVolume(float gain) {
    musicVolume_ = gain;
    if (music_) music_->setGain(gain);
}

// --- Frame

void cAudioMgr::update() {
    if (hasListener_) reportListener();
    if (!audible_) return;
    if (streaming_) feedMusic();
    repeats_ = false;
    if (!pending_.empty()) startPending();
}

void cAudioMgr::feedMusic() {
    music_->setRepeats(repeats_);
    if (!music_->refill()) {
        music_->close();
        streaming_ = false;
    }
    if (streaming_ && music_->isPlaying()) return;
    if (!streaming_ || !music_->start()) {
        cLogMgr::instance().error("Something stopped the audio playback!");
        streaming_ = false;
    }
}

void cAudioMgr::placeListener() const {
    const cVector3 p = listener_.position * distanceMod_;
    alListener3f(AL_POSITION, p.x, p.y, p.z);
}

void cAudioMgr::startPending() {
    const cVector3 &d = listener_.direction, &u = listener_.up;
    const ALfloat orientation[] = {d.x, d.y, d.z, u.x, u.y, u.z};
    alListenerfv(AL_ORIENTATION, orientation);
    placeListener();
    if (const ALuint source = pending_.front()->source; source != 0) alSourcePlay(source);
    pending_.pop_front();
}

void cAudioMgr::reportListener() const {
    const auto report = [](const char* what, const cVector3& v) {
        cRenderer::instance().addDebugText("%s: %2.2f %2.2f %2.2f", what, static_cast<double>(v.x),
                                           static_cast<double>(v.y), static_cast<double>(v.z));
    };
    report("Listener pos", listener_.position);
    report("Source dir vector", listener_.direction);
    report("Source up vector", listener_.up);
    report("Source pos", {});
}
