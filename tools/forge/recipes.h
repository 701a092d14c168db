#pragma once
#include "forge/output.h"

#include <string>
#include <vector>

/// Recipes register themselves: write `FORGE_RECIPE(name) { ... out ... }` in any file below content/.
namespace forge {
using RecipeFunction = void (*)(Output& out);
struct Recipe {
    std::string name;
    RecipeFunction make;
};
/// All recipes; main sorts them by name, so the order of linking does not matter.
std::vector<Recipe>& recipes();

struct RecipeEntry {
    RecipeEntry(const char* name, RecipeFunction make) { recipes().push_back({name, make}); }
};
} // namespace forge

#define FORGE_RECIPE(name)                                                                                   \
    static void forgeMake_##name(forge::Output& out);                                                        \
    static const forge::RecipeEntry forgeEntry_##name(#name, &forgeMake_##name);                             \
    static void forgeMake_##name(forge::Output& out)
