#include "ui/input_settings.h"

#include <algorithm>
#include <cmath>

namespace {
void readList(cBinaryReader& in, std::array<int32_t, kCommandCount>& list) {
    for (int32_t& value : list) value = in.i32();
}

void readKeys(cBinaryReader& in, std::array<int32_t, kCommandCount>& keys) {
    readList(in, keys);
    for (int32_t& key : keys) {
        if (key < 0 || key >= kKeyCount) key = 0;
    }
}

float finiteOr(float value, float otherwise) {
    return std::isfinite(value) ? value : otherwise;
}

float readVolume(cBinaryReader& in, float otherwise) {
    return std::clamp(finiteOr(in.f32(), otherwise), 0.0f, 1.0f);
}

constexpr cInputSettings kBuiltIn;
/// Beyond this a single pixel turns the view more than half around.
constexpr float kWildestSensitivity = 1;
} // namespace

void cInputSettings::read(cBinaryReader& in) {
    readKeys(in, keysThirdPerson);
    readKeys(in, keysFirstPerson);
    readList(in, repeatIntervals);
    controlThirdPerson = in.u8();
    controlFirstPerson = in.u8();
    walkIsDefault = in.u8();
    moveRelativeToCamera = in.u8();
    sensitivity = finiteOr(in.f32(), kBuiltIn.sensitivity);
    if (std::fabs(sensitivity) > kWildestSensitivity) sensitivity = kBuiltIn.sensitivity;
    options = in.u8();
    crosshairType = in.u8();
    for (uint8_t& channel : crosshairColour) channel = in.u8();
    soundVolume = readVolume(in, kBuiltIn.soundVolume);
    musicVolume = readVolume(in, kBuiltIn.musicVolume);
}

void cInputSettings::write(cBinaryWriter& out) const {
    for (const auto* list : {&keysThirdPerson, &keysFirstPerson, &repeatIntervals}) {
        for (const int32_t value : *list) out.i32(value);
    }
    out.u8(controlThirdPerson);
    out.u8(controlFirstPerson);
    out.u8(walkIsDefault);
    out.u8(moveRelativeToCamera);
    out.f32(sensitivity);
    out.u8(options);
    out.u8(crosshairType);
    for (const uint8_t channel : crosshairColour) out.u8(channel);
    out.f32(soundVolume);
    out.f32(musicVolume);
}
