#include "support.h"
#include "ui/input_mgr.h"

#include <cmath>

namespace {
void check(const cInputSettings& settings, fuzz::cDigest& digest) {
    for (const auto* keys : {&settings.keysThirdPerson, &settings.keysFirstPerson}) {
        for (const int32_t key : *keys) {
            fuzz::require(key >= 0 && key < kKeyCount, "a binding is a key");
            digest.addValue(key);
        }
    }
    fuzz::require(std::isfinite(settings.sensitivity), "the sensitivity is a number");
    for (const float volume : {settings.soundVolume, settings.musicVolume})
        fuzz::require(volume >= 0 && volume <= 1, "volumes stay in their range");
    digest.addValue(settings.repeatIntervals).addValue(settings.options).addValue(settings.sensitivity);
}
} // namespace

FUZZ_TARGET(settings) {
    cInputMgr& input = cInputMgr::instance();
    input.saveOnExit = false;
    fuzz::putFile("settings.cfl", fuzz::text(data, size));
    fuzz::cDigest digest;
    const std::vector<std::string> names = input.listSettings();
    for (const std::string& name : names) {
        fuzz::require(input.loadSettings(name) == 0, "what is listed can be loaded");
        check(input.bindings.settings, digest);
    }
    return names.empty() ? 0 : digest.value();
}
