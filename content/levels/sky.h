#pragma once
#include "forge/recipes.h"
#include "forge/writers.h"

/// Sky, horizon and sea round a level.
namespace sky {
/// Colours as 0xRRGGBB.
struct Palette {
    unsigned below, deep;                  ///< lower half: at the horizon, straight down
    unsigned horizon, low, middle, zenith; ///< upper half, upwards
    unsigned veil;                         ///< thin clouds high up
    unsigned cloudShade, cloudTone, cloudLight;
    uint32_t cloudSeed; ///< where the heaps stand
};
struct Place {
    cVector3 light;    ///< position of the sun, units
    float deathHeight; ///< of the hero's middle
    cColour4 farLand, nearLand;
    int farCount;  ///< of the lands at the horizon
    float farTall; ///< units
};
/// env/NAME.env and its picture of the sky.
void put(forge::Output& out, const std::string& name, const Palette& palette, const Place& place);
} // namespace sky
