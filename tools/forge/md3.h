#pragma once
#include "forge/writers.h"

namespace forge {
/// A part as an MD3 file of one surface: z-up, clockwise, positions in steps of 1/64. Every frame has the
/// part's tags; animations are not part of the file.
platform::Bytes md3File(const CharacterPart& part);
/// Rows "first count loop fps // NAME" of an animation.cfg that goes with such files.
std::string md3AnimationFile(const std::vector<AnimationRow>& rows);
} // namespace forge
