#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <string>

/// A kind of thing that the hero can carry.
struct cItemDef {
    std::string name;
    int32_t weaponType = 0;                  ///< 0 no weapon, 1 ballistic, 2 projectile, 3 close range
    int32_t attackLength = 0, fireFrame = 0; ///< updates
    bool charge = false;
    // Of what a projectile weapon throws. World units and updates.
    float radius = 0;
    cVector3 gravityOrOffset; ///< added to the velocity in each update
    int32_t duration = 0;     ///< ms of straight flight before that
    bool explodes = false;
    int32_t hitSound = 0; ///< hash of the sound's name, 0 for none
    int32_t damage = 0;
    float damageRadius = 0,
          damageFalloff = 0; ///< full damage within the first, down to none along the second
};
