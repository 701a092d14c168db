#pragma once
#include "forge/output.h"

namespace forge {
/// Reports as problems what would only show while playing: files named but not made, names whose hashes
/// collide, menu pictures that overlap, bounding boxes that disagree.
void checkDataSet(Output& out);
} // namespace forge
