#include "world/hierarchy.h"

#include "support.h"

#include <algorithm>

FUZZ_TARGET(hierarchy) {
    const std::string_view text = fuzz::text(data, size);
    fuzz::putFile("hierarchy.cfl", text);
    const auto lines = static_cast<int32_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    fuzz::cDigest digest;
    for (const char* type : {"human", "beast", "", "none"}) {
        for (const char* race : {"islander", "wolf", ""}) {
            const HierarchyIndices found = lookupHierarchy(type, race, "guard");
            for (const int16_t index : {found.type, found.race, found.classIndex})
                fuzz::require(index >= -1 && index < lines, "an index is a position among the lines");
            digest.addValue(found);
        }
    }
    return digest.value();
}
