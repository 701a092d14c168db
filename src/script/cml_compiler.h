#pragma once
#include "script/cml_element.h"

/// Sets kind, key and parent of every element. False, with one row at the first unknown tag.
bool classifyCml(cCmlElement& root, CmlReport& report);
/// Turns call lists and numbers of a classified tree into their compiled form. Never stops at a bad call.
void compileCml(cCmlElement& root, const CmlLookups& lookups, CmlReport& report);
