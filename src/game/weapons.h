#pragma once
#include "core/vector3.h"
#include "game/item_def.h"

/// What the hero's weapons and those of scripted objects have in common.

/// Adds a projectile of the item to the world at the end of the update. Velocity in units per update.
void launchProjectile(const cItemDef& item, const cVector3& position, const cVector3& velocity);
