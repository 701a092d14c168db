#pragma once
#include "models/mesh.h"
#include "ui/input_settings.h"

#include <cstdint>
#include <string>
#include <vector>

class cInventory;

/// State of the heads-up display. Timers count drawn frames.
class cHud {
public:
    int32_t interfaceTexture = kNoTexture; ///< or kTextureFailed
    int32_t crosshairTexture = kNoTexture;
    uint8_t crosshairStyle = 0; ///< bit 0: right half of the picture, bit 1: t from 0.5
    std::array<uint8_t, 4> crosshairColour{255, 255, 255, 192};
    bool crosshairOn = true;
    bool statsFading = true;
    int32_t statsTimer = 0; ///< frames left

    struct Message {
        std::string text;
        int32_t framesLeft;
    };
    std::vector<Message> messages;

    /// After every mode set.
    void loadHud();
    void showStats(); ///< for SHOW_TIME frames of section "inventory"
    /// Shows a line in the upper left corner.
    void message(int32_t frames, const char* format, ...) __attribute__((format(printf, 3, 4)));
    void apply(const cInputSettings& settings);

    // Drawing, in the current 2D projection of the given size; counts the frame.
    void drawCrosshair(int width, int height) const;
    /// Health bar and selected item. Implemented in hud_panel.cpp.
    void drawStats(const cInventory& inventory, int32_t health, int32_t maxHealth);
    void drawMessages(int height);

    /// Of the panel in the frame to come, 0 ... 150.
    int32_t statsAlpha() const;
    /// Right end of the health bar from the panel's left edge, pixels.
    static int32_t healthBarEnd(int32_t health, int32_t maxHealth);
};
