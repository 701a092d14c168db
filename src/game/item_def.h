#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <string>

/// A kind of thing that the hero can carry.
struct cItemDef {
    std::string name;
    int32_t weaponType = 0; ///< 0 no weapon, 1 ballistic, 2 projectile, 3 close range
    int32_t attackLength = 0, fireFrame = 0; ///< updates
    bool charge = false;
};
