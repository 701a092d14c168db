#pragma once
#include "script/cml_check.h"

/// Warns of what on_set does to place, direction and radius while the level is loaded: the object is placed
/// after that.
void checkPlacing(cCmlCheck& check, const cCmlElement& object);

/// Warns of objects that the use key hardly reaches, because an earlier one stands where they do. To be
/// called when all calls have been seen: who is moved or taken away is in nobody's way for good.
void checkShadows(cCmlCheck& check);
