#pragma once
#include "platform/files.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

/// An Ogg Vorbis file in memory, decoded piece by piece into two buffers that take turns on one source.
class cMusicStream {
public:
    cMusicStream();
    ~cMusicStream(); ///< stops and frees everything

    /// False, with a row in the log, when the file cannot be read or decoded, or OpenAL refuses.
    bool open(const std::string& fileName);
    /// Fills both buffers, whatever they held, and plays; true at once when it plays already.
    bool start();
    bool isPlaying() const;
    /// Refills at most one buffer that was played. False when there was one and nothing is left to fill it
    /// with.
    bool refill();
    void setRepeats(bool on) { repeats_ = on; } ///< behind the end comes the beginning
    void setPaused(bool paused) const;
    void setGain(float gain) const;
    void close();

    /// Decoding alone: the next block of 16-bit samples, empty at the end. False when the data is damaged.
    bool decode(std::vector<char>& block);

    static constexpr size_t kBlockBytes = 0x20000;

private:
    struct Decoder;
    bool fill(uint32_t buffer);
    bool failed() const; ///< logs an error of OpenAL's

    std::unique_ptr<Decoder> decoder_;
    std::string name_;
    bool repeats_ = false;
    uint32_t source_ = 0;
    std::array<uint32_t, 2> buffers_{};
    std::vector<char> block_;
};
