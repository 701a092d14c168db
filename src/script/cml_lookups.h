#pragma once
#include "script/cml_element.h"

/// What compilation asks of the rest of the game: globals of the world, items, sounds.
CmlLookups cmlLookups();
