#pragma once
#include "forge/instruments.h"

/// Who plays: every instrument that the scores name.
const std::vector<forge::Instrument>& orchestra();
