// Music: decoded to its end, then streamed to its end through a device that renders when it is asked to.
// Pages whose check sum is wrong never reach the decoder, and no input has a right one by chance: it is put
// right.
#include "audio/music_stream.h"
#include "support.h"

#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>
#include <ogg/ogg.h>
#include <vector>

namespace {
constexpr size_t kPageHead = 27, kSegmentCount = 26;
constexpr size_t kDecoderBytes = 4 << 20; ///< blocks, buffers, tables of the decoder
constexpr int kDeviceRate = 8000;
constexpr ALCsizei kRendered = 16384; ///< frames at a time
constexpr int kMostRendered = 32;     ///< times; a hostile rate would play for years

void mendCheckSums(std::string& file) {
    auto* bytes = reinterpret_cast<unsigned char*>(file.data());
    for (size_t at = file.find("OggS"); at != std::string::npos; at = file.find("OggS", at + 4)) {
        if (file.size() - at < kPageHead || file.size() - at < kPageHead + bytes[at + kSegmentCount]) return;
        const size_t head = kPageHead + bytes[at + kSegmentCount];
        size_t body = 0;
        for (size_t i = kPageHead; i < head; ++i) body += bytes[at + i];
        if (file.size() - at - head < body) return;
        ogg_page page{bytes + at, static_cast<long>(head), bytes + at + head, static_cast<long>(body)};
        ogg_page_checksum_set(&page);
    }
}

/// A device of our own, current for as long as it lives; another target may have one as well.
class Loopback {
public:
    Loopback() : before_(alcGetCurrentContext()) {
        static const ALCint kFormat[] = {ALC_FORMAT_CHANNELS_SOFT,
                                         ALC_MONO_SOFT,
                                         ALC_FORMAT_TYPE_SOFT,
                                         ALC_SHORT_SOFT,
                                         ALC_FREQUENCY,
                                         kDeviceRate,
                                         0};
        if (!g_device) {
            fuzz::allowMemory(16 << 20);
            const auto open = reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(
                alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
            g_render =
                reinterpret_cast<LPALCRENDERSAMPLESSOFT>(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
            g_device = open(nullptr);
            g_context = alcCreateContext(g_device, kFormat);
        }
        fuzz::require(alcMakeContextCurrent(g_context) == ALC_TRUE, "there is a device that renders");
    }
    ~Loopback() { alcMakeContextCurrent(before_); }
    Loopback(const Loopback&) = delete;
    Loopback& operator=(const Loopback&) = delete;
    static void render() {
        static std::vector<int16_t> samples(kRendered);
        g_render(g_device, samples.data(), kRendered);
    }

private:
    static inline ALCdevice* g_device = nullptr;
    static inline ALCcontext* g_context = nullptr;
    static inline LPALCRENDERSAMPLESSOFT g_render = nullptr;
    ALCcontext* before_;
};

bool decodeAll(fuzz::cDigest& digest) {
    cMusicStream stream;
    if (!stream.open("in.ogg")) return false;
    std::vector<char> block;
    bool intact = stream.decode(block);
    for (; intact && !block.empty(); intact = stream.decode(block)) {
        fuzz::require(block.size() <= cMusicStream::kBlockBytes, "a block has its size");
        digest.add(block.data(), block.size());
    }
    digest.addValue(intact);
    return true;
}
} // namespace

FUZZ_TARGET(ogg) {
    const Loopback device;
    fuzz::allowMemory(kDecoderBytes);
    std::string file(fuzz::text(data, size));
    mendCheckSums(file);
    fuzz::putFile("in.ogg", file);
    fuzz::cDigest digest;
    if (!decodeAll(digest)) return 0;
    cMusicStream stream;
    fuzz::require(stream.open("in.ogg"), "what was opened can be opened again");
    bool flows = stream.start();
    digest.addValue(flows);
    for (int i = 0; flows && i < kMostRendered; ++i) {
        Loopback::render();
        flows = stream.refill();
    }
    stream.close();
    return digest.value();
}
