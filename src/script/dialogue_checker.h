#pragma once
#include "script/cml_check.h"

/// Follows every way through a talking script. `source` is its element as read, before its calls became
/// indices.
void checkDialogue(cCmlCheck& check, const cXmlNode& source);
