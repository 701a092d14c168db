#include "ui/input_settings.h"

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
    sensitivity = finiteOr(in.f32(), 0.004f);
    if (std::fabs(sensitivity) > kWildestSensitivity) sensitivity = 0.004f;
    options = in.u8();
    crosshairType = in.u8();
    for (uint8_t& channel : crosshairColour) channel = in.u8();
    soundVolume = finiteOr(in.f32(), 1);
    musicVolume = finiteOr(in.f32(), 1);
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
