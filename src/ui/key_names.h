#pragma once
#include "ui/input_settings.h"

#include <array>
#include <string>

/// Names of commands and keys from keynames.cfl: 16 command words, then pairs of a word and a key code.
struct cKeyNames {
    std::array<std::string, kCommandCount> commands;
    std::array<std::string, kKeyCount> keys; ///< kNoName where none is given
    static constexpr const char* kNoName = "???";

    void load(); ///< a missing file leaves no names
    /// What the player is told that a key is called. OUR OWN RULE: one without a name goes by its number,
    /// because "???" awaits one.
    std::string shown(int32_t key) const;
};
