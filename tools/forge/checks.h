#pragma once
#include "forge/output.h"

namespace forge {
/// Reports as problems what would only show while playing: files named but not made, names whose hashes
/// collide, menu pictures that overlap, an opening that is too short.
void checkDataSet(Output& out);
} // namespace forge
