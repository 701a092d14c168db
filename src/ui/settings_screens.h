#pragma once
#include "ui/input_settings.h"

#include <span>
#include <string>

/// The rows of the settings screens, over the copy that they edit. Pixels of the menu's panel.
struct SettingsSlider {
    int left, right;                                   ///< of the track
    float (*fraction)(const cInputSettings& settings); ///< of the track, 0 … 1
    void (*step)(cInputSettings& settings, int direction);
    void (*place)(cInputSettings& settings, int x);
};

struct SettingsRow {
    std::string (*text)(const cInputSettings& settings);
    void (*change)(cInputSettings& settings) = nullptr; ///< of a row that is activated; else a slider
    SettingsSlider slider{};
};

struct SettingsScreen {
    int keyRows; ///< rows before the others, one a command
    std::span<const SettingsRow> rows;
    int firstKeyY, keyStep; ///< of the key rows, centres
    int firstY, step;       ///< of the other rows
    int okY, cancelY;
    int contentHeight;

    size_t rowCount() const { return static_cast<size_t>(keyRows) + rows.size(); }
    int rowY(size_t row) const;
};

const SettingsScreen& inputScreen();
const SettingsScreen& videoScreen();
const SettingsScreen& audioScreen();

/// "mouse", "inverted mouse", "arrowkeys", "inverted arrowkeys"; others "???".
const char* controlModeName(int mode);
std::string walkText(const cInputSettings& settings);     ///< which gait is the default
std::string relativeText(const cInputSettings& settings); ///< what third-person movement is relative to
