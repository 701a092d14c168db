#pragma once
#include "script/cml_check.h"

/// Warns of what the lists do in vain that run while the level is loaded: an object is placed after its own,
/// and objects that come later in the document are not there yet.
void checkPlacing(cCmlCheck& check);

/// Warns of objects that the use key hardly reaches, because earlier ones stand where they do. To be
/// called when all calls have been seen: who is moved or taken away is in nobody's way for good.
void checkShadows(cCmlCheck& check);
