#pragma once
#include "forge/output.h"

namespace forge {
/// Reports what the ear would: effects that are silent, clipped, cut off or off balance, files that the
/// loader would refuse, names that the game could not tell apart, and sounds that scripts name but nobody
/// makes.
void checkSounds(Output& out);
} // namespace forge
