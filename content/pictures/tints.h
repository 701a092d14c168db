#pragma once
#include "forge/shapes.h"

/// One picture of plain colours, tints.tga, for everything small: each cell gets lighter towards its top, so
/// that a blade or a petal shades from foot to tip.
namespace tints {
/// Cells of the picture, row by row from the top.
enum class Tint {
    kBlade,
    kLeaf,
    kRed,
    kYellow,
    kWhite,
    kViolet,
    kReed,
    kCabbage,
    kTeal,
    kBrick,
    kCream,
    kFlame,
    kBook,
    kIron,
    kClay,
    kStraw
};
constexpr int kAcross = 4;
/// The mesh, whose texture coordinates lie in 0..1, moved into one cell.
forge::Mesh tinted(const forge::Mesh& mesh, Tint tint);
} // namespace tints
