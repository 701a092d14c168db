// A sound effect, loaded and played on a device that nobody hears.
#include "audio/audio_mgr.h"
#include "core/name_hash.h"
#include "support.h"

#include <AL/al.h>
#include <cstdlib>

namespace {
/// Opening the device takes longer than reading a file, and it takes only so many effects.
constexpr int kFilesADevice = 200;
constexpr size_t kDeviceBytes = 16 << 20;

void openDevice(cAudioMgr& audio, int files) {
    if (audio.isAudible() && files % kFilesADevice != 0) return;
    setenv("ALSOFT_DRIVERS", "null", 1);
    fuzz::allowMemory(kDeviceBytes);
    audio.shutdown();
    audio.initialise();
    fuzz::require(audio.isAudible(), "there is a device without a sound");
}
} // namespace

FUZZ_TARGET(wav) {
    static int files = 0;
    cAudioMgr& audio = cAudioMgr::instance();
    openDevice(audio, files);
    const std::string name = "w" + std::to_string(files++);
    fuzz::putFile(name + ".wav", fuzz::text(data, size));
    const cSound* sound = audio.getSound(name, true, false);
    audio.playSoundIdAt(nameHash(name), {1, 2, 3});
    fuzz::require(audio.pendingCount() == 1, "what can be read and what cannot is played");
    audio.update();
    fuzz::require(audio.pendingCount() == 0, "and gives way to the next");
    if (sound->buffer == 0) return 0;
    fuzz::cDigest digest;
    ALint bytes = 0;
    for (const ALenum what : {AL_FREQUENCY, AL_CHANNELS, AL_BITS, AL_SIZE}) {
        alGetBufferi(sound->buffer, what, &bytes);
        digest.addValue(bytes);
    }
    fuzz::require(bytes >= 0 && static_cast<size_t>(bytes) <= 2 * size,
                  "no more samples than the file holds");
    return bytes > 0 ? digest.value() : 0;
}
