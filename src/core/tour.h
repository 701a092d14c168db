#pragma once
#include "core/application.h"

/// Lets the game play itself with pressed keys and mouse movements, as tour.txt of the game data tells, and
/// writes PNG pictures into `directory` (a real path). 0, or 1 with a sentence on the terminal when something
/// is missing.
int playTour(const std::string& directory, RunOptions options);
