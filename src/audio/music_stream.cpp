#include "audio/music_stream.h"

#include "audio/vorbis_headers.h"
#include "core/log_mgr.h"

#include <AL/al.h>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vorbis/vorbisfile.h>

namespace {
constexpr int kMostChannels = 2;
/// Encoders make books of some 100,000 cells in all.
constexpr uint64_t kMostTableCells = 1 << 20;
} // namespace

/// The file and where the decoder stands in it.
struct cMusicStream::Decoder {
    platform::Bytes data;
    size_t position = 0;
    OggVorbis_File file{};
    bool isOpen = false;
    ALenum format = AL_FORMAT_STEREO16;
    ALsizei rate = 0; ///< samples a second

    ~Decoder() {
        if (isOpen) ov_clear(&file);
    }
    static size_t read(void* to, size_t size, size_t count, void* source) {
        auto& d = *static_cast<Decoder*>(source);
        const size_t bytes = std::min(size * count, d.data.size() - d.position);
        if (bytes > 0) std::memcpy(to, d.data.data() + d.position, bytes);
        d.position += bytes;
        return bytes;
    }
    /// Always succeeds, as the decoder's reader expects of a file in memory; positions are kept inside it.
    static int seek(void* source, ogg_int64_t offset, int origin) {
        auto& d = *static_cast<Decoder*>(source);
        const auto size = static_cast<ogg_int64_t>(d.data.size()), at = static_cast<ogg_int64_t>(d.position);
        switch (origin) {
        case SEEK_SET:
            d.position = static_cast<size_t>(std::clamp<ogg_int64_t>(offset, 0, size));
            break;
        case SEEK_CUR:
            d.position = static_cast<size_t>(at + std::clamp<ogg_int64_t>(offset, -at, size - at));
            break;
        case SEEK_END:
            d.position = d.data.size();
            break;
        default:
            std::printf("Unknown seek command in VorbisSeek\n");
        }
        return 0;
    }
    static int close(void*) { return 1; }
    static long tell(void* source) { return static_cast<long>(static_cast<Decoder*>(source)->position); }
};

cMusicStream::cMusicStream() = default;

cMusicStream::~cMusicStream() {
    close();
}

bool cMusicStream::failed() const {
    if (alGetError() == AL_NO_ERROR) return false;
    cLogMgr::instance().error("OpenAL raised en error for stream %s", name_.c_str());
    return true;
}

bool cMusicStream::open(const std::string& fileName) {
    name_ = fileName;
    decoder_ = std::make_unique<Decoder>();
    Decoder& d = *decoder_;
    if (!platform::readFile(fileName, d.data)) {
        cLogMgr::instance().error("Audio System: Error loading %s", fileName.c_str());
        return false;
    }
    const VorbisDemands demands = readVorbisDemands(d.data);
    if (demands.channels > kMostChannels || demands.tableCells > kMostTableCells) {
        cLogMgr::instance().error("Error loading sound file: %s %s", fileName.c_str(),
                                  demands.channels > kMostChannels ? "has more than two channels"
                                                                   : "asks for too large tables");
        return false;
    }
    const ov_callbacks callbacks{&Decoder::read, &Decoder::seek, &Decoder::close, &Decoder::tell};
    d.isOpen = ov_open_callbacks(&d, &d.file, nullptr, 0, callbacks) == 0;
    const vorbis_info* info = d.isOpen ? ov_info(&d.file, -1) : nullptr;
    if (!info) {
        cLogMgr::instance().error("Error loading sound file: %s", fileName.c_str());
        return false;
    }
    d.format = info->channels == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16;
    d.rate = static_cast<ALsizei>(info->rate);
    alGetError();
    alGenBuffers(2, buffers_.data());
    if (failed()) return false;
    alGenSources(1, &source_);
    if (failed()) return false;
    // Music has no place in the world.
    for (const ALenum vector : {AL_POSITION, AL_VELOCITY, AL_DIRECTION}) alSource3f(source_, vector, 0, 0, 0);
    alSourcef(source_, AL_ROLLOFF_FACTOR, 0);
    alSourcei(source_, AL_SOURCE_RELATIVE, AL_TRUE);
    return !failed();
}

bool cMusicStream::decode(std::vector<char>& block) {
    block.resize(kBlockBytes);
    size_t filled = 0;
    int section = 0;
    while (filled < kBlockBytes) {
        const long got = ov_read(&decoder_->file, block.data() + filled,
                                 static_cast<int>(kBlockBytes - filled), 0, 2, 1, &section);
        if (got < 0) return false;
        if (got == 0) break;
        filled += static_cast<size_t>(got);
    }
    block.resize(filled);
    return true;
}

bool cMusicStream::fill(uint32_t buffer) {
    if (!decode(block_)) return false;
    if (block_.empty() && repeats_ && ov_pcm_seek(&decoder_->file, 0) == 0 && !decode(block_)) return false;
    if (block_.empty()) return false;
    alBufferData(buffer, decoder_->format, block_.data(), static_cast<ALsizei>(block_.size()),
                 decoder_->rate);
    return !failed();
}

bool cMusicStream::isPlaying() const {
    ALint state = AL_STOPPED;
    alGetSourcei(source_, AL_SOURCE_STATE, &state);
    return state == AL_PLAYING;
}

bool cMusicStream::start() {
    if (isPlaying()) return true;
    // After a pause longer than both buffers one is queued again already, and the other still lies there.
    alSourceStop(source_);
    alSourcei(source_, AL_BUFFER, 0);
    for (const uint32_t buffer : buffers_)
        if (!fill(buffer)) return false;
    alSourceQueueBuffers(source_, 2, buffers_.data());
    alSourcePlay(source_);
    return !failed();
}

bool cMusicStream::refill() {
    ALint processed = 0;
    alGetSourcei(source_, AL_BUFFERS_PROCESSED, &processed);
    if (processed < 1) return true;
    ALuint buffer = 0;
    alSourceUnqueueBuffers(source_, 1, &buffer);
    if (failed() || !fill(buffer)) return false;
    alSourceQueueBuffers(source_, 1, &buffer);
    return !failed();
}

void cMusicStream::setPaused(bool paused) const {
    ALint state = AL_STOPPED;
    alGetSourcei(source_, AL_SOURCE_STATE, &state);
    if (paused && state == AL_PLAYING) alSourcePause(source_);
    if (!paused && state == AL_PAUSED) alSourcePlay(source_);
}

void cMusicStream::setGain(float gain) const {
    if (source_ != 0) alSourcef(source_, AL_GAIN, gain);
}

void cMusicStream::close() {
    if (source_ != 0) {
        alSourceStop(source_);
        alSourcei(source_, AL_BUFFER, 0); // takes every queued buffer off
        alDeleteSources(1, &source_);
    }
    if (buffers_[0] != 0) alDeleteBuffers(2, buffers_.data());
    source_ = 0;
    buffers_ = {};
    decoder_.reset();
}
