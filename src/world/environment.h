#pragma once
#include "models/model.h"

#include <string>

/// Sky and water of a level, its light and its death height.
class cEnvironment {
public:
    /// Replaces the content. False, with a row in the log, when the file is missing (what was loaded stays)
    /// or damaged (nothing is left).
    bool load(const std::string& fileName);
    void clear();
    /// Second sky model, first, water; the second drifts a little with every call.
    void draw();

    const cVector3& lightPosition() const { return light_; }
    float deathHeight() const { return deathHeight_; }
    bool hasWater() const { return hasWater_; }
    float waterHeight() const { return waterHeight_; } ///< of the still surface
    bool isLoaded() const { return loaded_; }

private:
    bool read(class cBinaryReader& in);
    void waveWater();

    bool loaded_ = false;
    cVector3 light_;
    float spare_ = 0; ///< stored by the format, used by nothing
    float deathHeight_ = 0;
    bool hasWater_ = false;
    float waterScale_ = 0, waterHeight_ = 0; ///< factor on the waves; height of the still surface
    uint8_t interval_ = 10, countdown_ = 10; ///< frames between two steps of the waves
    uint32_t phaseUp_ = 0, phaseDown_ = 0;   ///< into the wave tables
    cModel sky1_, sky2_, water_;
    std::vector<std::vector<cVector3>> stillWater_; ///< positions as read, one list an object
};
