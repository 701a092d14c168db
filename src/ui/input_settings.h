#pragma once
#include "data/binary_reader.h"

#include <array>
#include <cstdint>

constexpr int kCommandCount = 16; ///< commands 16 to 31 are the first-person forms of 0 to 15
constexpr int kKeyCount = 322;    ///< SDL key codes 0 to 321; 1 to 5 are mouse buttons

enum Command : int {
    CMD_FORWARD = 0,
    CMD_BACK = 1,
    CMD_LEFT = 2,
    CMD_RIGHT = 3,
    CMD_RUN = 4,
    CMD_USE = 5,
    CMD_JUMP = 6,
    CMD_FIRE = 7,
    CMD_ZOOM_IN = 10,
    CMD_ZOOM_OUT = 11,
    CMD_INVENTORY = 12,
    CMD_NEXT_ITEM = 13,
    CMD_PREV_ITEM = 14,
    CMD_TOGGLE_VIEW = 15,
};
constexpr int kFirstPersonCommands = kCommandCount; ///< added to a command for its first-person binding

enum ControlMode : uint8_t { kControlMouse, kControlInvertedMouse, kControlArrows, kControlInvertedArrows };

enum OptionBits : uint8_t { kOptionCrosshair = 1, kOptionStatFading = 2, kOptionShadows = 4 };

/// The player's input, display and sound settings: one 214-byte record of settings.cfl.
struct cInputSettings {
    std::array<int32_t, kCommandCount> keysThirdPerson{119, 115, 97, 100, 304, 101, 32,  1,
                                                       0,   0,   4,  5,   105, 114, 113, 118};
    std::array<int32_t, kCommandCount> keysFirstPerson = keysThirdPerson; ///< SDL key codes or mouse buttons
    /// Milliseconds before a held command counts again.
    std::array<int32_t, kCommandCount> repeatIntervals{0, 0, 0, 0, 0, 300, 200, 0,
                                                       0, 0, 0, 0, 0, 250, 250, 300};
    uint8_t controlThirdPerson = kControlMouse;
    uint8_t controlFirstPerson = kControlMouse;
    uint8_t walkIsDefault = 0;
    uint8_t moveRelativeToCamera = 1;
    float sensitivity = 0.004f; ///< 0.0001 … 0.01
    uint8_t options = kOptionCrosshair | kOptionStatFading | kOptionShadows;
    uint8_t crosshairType = 0;
    std::array<uint8_t, 4> crosshairColour{255, 255, 255, 192};
    float soundVolume = 0.8f, musicVolume = 0.6f; ///< 0 … 1

    static constexpr size_t kRecordBytes = 214;
    /// Key codes outside of 0 … 321 become 0, volumes stay within theirs; what is no number is as built in.
    void read(cBinaryReader& in);
    void write(cBinaryWriter& out) const;
};
