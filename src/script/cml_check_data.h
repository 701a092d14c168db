#pragma once
#include "script/cml_check.h"

/// The game's data as the file system has it: models, sounds, items, hierarchy, other levels. Models are read
/// once.
CmlCheckData gameCheckData();
