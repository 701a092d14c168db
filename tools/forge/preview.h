#pragma once
#include "forge/output.h"
#include "forge/shapes.h"

namespace forge {
/// What an author looks at: a picture of made meshes, drawn without the game.
struct PreviewShot {
    std::string name;
    cVector3 eye, target;
    float fieldOfView = 45; ///< degrees, vertical
    int width = 640, height = 480;
};
/// Kept aside until all recipes have run; textures are found among the made files.
void addPreview(const PreviewShot& shot, Parts parts);
/// Writes DIRECTORY/name.tga for every shot that recipes have asked for.
bool writePreviews(const Output& out, const std::string& directory);
} // namespace forge
