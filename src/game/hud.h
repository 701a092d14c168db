#pragma once
#include "ui/input_settings.h"

#include <cstdint>

/// State of the heads-up display.
class cHud {
public:
    int32_t interfaceTexture = -1; ///< −1 not loaded, −2 failed
    int32_t crosshairTexture = -1;
    uint8_t crosshairStyle = 0;
    std::array<uint8_t, 4> crosshairColour{255, 255, 255, 192};
    bool crosshairOn = true;
    bool statsFading = true;
    int32_t statsTimer = 0; ///< frames left

    /// After every mode set.
    void loadHud();
    void showStats(); ///< for SHOW_TIME frames of section "inventory"
    void apply(const cInputSettings& settings);
    /// The crosshair, in the current 2D projection.
    void drawCrosshair(int width, int height) const;
};
