#pragma once
#include <cstdint>
#include <string>

/// Positions in the type/race/class tree of hierarchy.cfl; −1 for a name that is not found.
struct HierarchyIndices {
    int16_t type = -1, race = -1, classIndex = -1;
};

/// One walk down the file. Race and class counters run on into later parents when the name is missing under
/// its own.
HierarchyIndices lookupHierarchy(const std::string& type, const std::string& race,
                                 const std::string& className);
