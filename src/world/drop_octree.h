#pragma once
#include <string>
#include <vector>

constexpr const char* kDropOctreeUsage =
    "usage: dropoctree <input> |eInput| <output> <minFaces> <maxGenerations> "
    "<size> <triangle detection>";

struct DropOctreeResult {
    bool done = false;
    std::string message; ///< for the console
};

/// Builds an octree file from a model file and an optional second one that gives the second texture layer.
/// Each input is centred and scaled to `size` on its own.
DropOctreeResult dropOctree(const std::vector<std::string>& params);
