#pragma once
#include "core/vector3.h"

#include <cstdint>

class cCmlObject;

/// What target arguments of script calls mean: a keyword's value or the hash of an object's name.

/// Position of player, target, origin or a named object. False when it does not exist.
bool targetPosition(const cCmlObject& self, int32_t code, cVector3& out);
/// Where to face, not normalised. False for a name that does not exist.
bool targetDirection(const cCmlObject& self, int32_t code, cVector3& out);
/// Three components from −1 to 0.998.
cVector3 randomDirection();
