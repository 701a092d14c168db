#pragma once
#include "script/cml_check.h"

/// Warns of animations that are set and never played. Follows an animated object through its actions, with
/// what its animation may be doing by then; objects whose animation others change are left out, and an action
/// that others set is taken to begin while something plays.
/// `source` is the same element as it was read. To be called when all calls have been seen.
void checkAnimations(cCmlCheck& check, const cCmlElement& object, const cXmlNode& source);
