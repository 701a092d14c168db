#pragma once
#include "forge/output.h"
#include "forge/scenery.h"

namespace levels {
/// Puts what stands about in a level's document into its collision, where one slides along it; a solid body
/// would stop the hero dead. These are the static objects of the kinds in the table whose bounding volume has
/// solid="0"; the volume says where and how wide, shots still ask it.
void addStanding(forge::Scenery& s, forge::Output& out, const std::string& document);
} // namespace levels
