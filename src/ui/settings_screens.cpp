#include "ui/settings_screens.h"

#include <algorithm>
#include <cstdio>

namespace {
constexpr int kModes = 4;
constexpr int kWideLeft = 170, kWideLength = 480;   ///< video sliders
constexpr int kAudioLeft = 210, kAudioLength = 440; ///< audio sliders
constexpr int kFineLeft = 230, kFineLength = 400;   ///< sensitivity
constexpr int kColourStep = 32, kTypeStep = 117, kTypeWidth = 85;
constexpr float kLeastSensitivity = 0.0001f, kMostSensitivity = 0.01f, kSensitivityStep = 0.0004f;
constexpr float kPixelsPerSensitivity = 40000;

int toByte(int n) {
    return std::clamp(n, 0, 255);
}
int placeOn(int x, int left, int length) {
    return toByte((x - left) * 256 / length);
}

// --- Sensitivity
void setSensitivity(cInputSettings& s, float value) {
    s.sensitivity = std::clamp(value, kLeastSensitivity, kMostSensitivity);
}
std::string sensitivityText(const cInputSettings& s) {
    char text[64];
    std::snprintf(text, sizeof text, "Camera sensitivity: %2.2f", static_cast<double>(s.sensitivity) * 10000);
    return text;
}
float sensitivityFraction(const cInputSettings& s) {
    return s.sensitivity * kPixelsPerSensitivity / kFineLength;
}
void stepSensitivity(cInputSettings& s, int direction) {
    setSensitivity(s, s.sensitivity + static_cast<float>(direction) * kSensitivityStep);
}
void placeSensitivity(cInputSettings& s, int x) {
    setSensitivity(s, static_cast<float>(x - kFineLeft) / kPixelsPerSensitivity);
}

// --- Crosshair
int typeNumber(const cInputSettings& s) {
    return s.crosshairType * kTypeWidth;
}
void setType(cInputSettings& s, int n) {
    s.crosshairType = static_cast<uint8_t>(toByte(n) / kTypeWidth);
}
float typeFraction(const cInputSettings& s) {
    return static_cast<float>(typeNumber(s)) / 255;
}
void stepType(cInputSettings& s, int direction) {
    setType(s, typeNumber(s) + direction * kTypeStep);
}
void placeType(cInputSettings& s, int x) {
    setType(s, placeOn(x, kWideLeft, kWideLength));
}

template <size_t Channel> float channelFraction(const cInputSettings& s) {
    return static_cast<float>(s.crosshairColour[Channel]) / 255;
}
template <size_t Channel> void stepChannel(cInputSettings& s, int direction) {
    s.crosshairColour[Channel] =
        static_cast<uint8_t>(toByte(s.crosshairColour[Channel] + direction * kColourStep));
}
template <size_t Channel> void placeChannel(cInputSettings& s, int x) {
    s.crosshairColour[Channel] = static_cast<uint8_t>(placeOn(x, kWideLeft, kWideLength));
}
template <size_t Channel>
constexpr SettingsSlider kChannelSlider{kWideLeft, kWideLeft + kWideLength, channelFraction<Channel>,
                                        stepChannel<Channel>, placeChannel<Channel>};

// --- Volumes
template <float cInputSettings::*Volume> int volumeNumber(const cInputSettings& s) {
    return static_cast<int>(std::clamp(s.*Volume, 0.0f, 1.0f) * 255);
}
template <float cInputSettings::*Volume> float volumeFraction(const cInputSettings& s) {
    return static_cast<float>(volumeNumber<Volume>(s)) / 255;
}
template <float cInputSettings::*Volume> void stepVolume(cInputSettings& s, int direction) {
    s.*Volume = static_cast<float>(toByte(volumeNumber<Volume>(s) + direction * kColourStep)) / 255;
}
template <float cInputSettings::*Volume> void placeVolume(cInputSettings& s, int x) {
    s.*Volume = static_cast<float>(placeOn(x, kAudioLeft, kAudioLength)) / 255;
}
template <float cInputSettings::*Volume>
constexpr SettingsSlider kVolumeSlider{kAudioLeft, kAudioLeft + kAudioLength, volumeFraction<Volume>,
                                       stepVolume<Volume>, placeVolume<Volume>};

// --- Switches
template <uint8_t Bit> void toggleOption(cInputSettings& s) {
    s.options = static_cast<uint8_t>(s.options ^ Bit);
}
bool has(const cInputSettings& s, uint8_t bit) {
    return (s.options & bit) != 0;
}
void nextMode(uint8_t& mode) {
    mode = static_cast<uint8_t>((mode + 1) % kModes);
}

using S = cInputSettings;
const SettingsRow kInputRows[] = {
    {[](const S& s) {
         return std::string("Third-person camera controlled by ") + controlModeName(s.controlThirdPerson);
     },
     [](S& s) { nextMode(s.controlThirdPerson); }},
    {[](const S& s) {
         return std::string("First-person camera controlled by ") + controlModeName(s.controlFirstPerson);
     },
     [](S& s) { nextMode(s.controlFirstPerson); }},
    {walkText, [](S& s) { s.walkIsDefault = s.walkIsDefault == 0; }},
    {relativeText, [](S& s) { s.moveRelativeToCamera = s.moveRelativeToCamera == 0; }},
    {sensitivityText,
     nullptr,
     {kFineLeft, kFineLeft + kFineLength, sensitivityFraction, stepSensitivity, placeSensitivity}},
};
const SettingsRow kVideoRows[] = {
    {[](const S& s) -> std::string {
         return has(s, kOptionStatFading) ? "Stat fading is enabled" : "Stat fading is disabled";
     },
     toggleOption<kOptionStatFading>},
    {[](const S& s) -> std::string {
         return has(s, kOptionShadows) ? "Raytraced shadows are enabled" : "Raytraced shadows disabled";
     },
     toggleOption<kOptionShadows>},
    {[](const S& s) -> std::string {
         return has(s, kOptionCrosshair) ? "Crosshair is enabled" : "Crosshair is disabled";
     },
     toggleOption<kOptionCrosshair>},
    {[](const S&) -> std::string { return "Crosshair type:"; },
     nullptr,
     {kWideLeft, kWideLeft + kWideLength, typeFraction, stepType, placeType}},
    {[](const S&) -> std::string { return "Crosshair R:"; }, nullptr, kChannelSlider<0>},
    {[](const S&) -> std::string { return "Crosshair G:"; }, nullptr, kChannelSlider<1>},
    {[](const S&) -> std::string { return "Crosshair B:"; }, nullptr, kChannelSlider<2>},
    {[](const S&) -> std::string { return "Crosshair A:"; }, nullptr, kChannelSlider<3>},
};
const SettingsRow kAudioRows[] = {
    {[](const S&) -> std::string { return "Sound effects volume:"; }, nullptr,
     kVolumeSlider<&S::soundVolume>},
    {[](const S&) -> std::string { return "Music volume:"; }, nullptr, kVolumeSlider<&S::musicVolume>},
};
} // namespace

int SettingsScreen::rowY(size_t row) const {
    const int at = static_cast<int>(row);
    return at < keyRows ? firstKeyY - keyStep * at : firstY - step * (at - keyRows);
}

const SettingsScreen& inputScreen() {
    static const SettingsScreen screen{kCommandCount, kInputRows, 462, 16, 206, 16, 70, 40, 500};
    return screen;
}
const SettingsScreen& videoScreen() {
    static const SettingsScreen screen{0, kVideoRows, 0, 0, 258, 18, 70, 40, 270};
    return screen;
}
const SettingsScreen& audioScreen() {
    static const SettingsScreen screen{0, kAudioRows, 0, 0, 240, 28, 150, 120, 270};
    return screen;
}

const char* controlModeName(int mode) {
    static constexpr const char* kNames[kModes] = {"mouse", "inverted mouse", "arrowkeys",
                                                   "inverted arrowkeys"};
    return mode >= 0 && mode < kModes ? kNames[mode] : "???";
}

std::string walkText(const cInputSettings& settings) {
    return settings.walkIsDefault != 0 ? "Walking is default" : "Running is default";
}

std::string relativeText(const cInputSettings& settings) {
    return settings.moveRelativeToCamera != 0 ? "Third-person movement is relative to camera"
                                              : "Third-person movement is relative to self";
}
