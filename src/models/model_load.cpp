// Loading of a cModel by the extension of its file.

#include "models/load_3ds.h"
#include "models/load_obj.h"
#include "models/model.h"
#include "platform/files.h"

#include <SDL.h>
#include <algorithm>

namespace {
constexpr size_t kLongestDirectory = 99;
constexpr size_t kLongestFilePart = 31;

bool contains(const std::string& text, const char* lower, const char* upper) {
    return text.find(lower) != std::string::npos || text.find(upper) != std::string::npos;
}
} // namespace

int cModel::load(const std::string& fileName, bool withNormals) {
    const int result = readByExtension(fileName);
    if (result >= 0 && withNormals) computeNormals();
    return result;
}

int cModel::readByExtension(const std::string& fileName) {
    clear();
    const size_t separator = platform::lastSeparator(fileName);
    const size_t start = separator == std::string::npos ? 0 : separator + 1;
    const std::string directory = fileName.substr(0, std::min(start, kLongestDirectory));
    const std::string file = fileName.substr(start, kLongestFilePart);
    if (contains(file, ".3ds", ".3DS")) return load3ds(directory, file, *this);
    if (contains(file, ".obj", ".OBJ")) return loadObj(fileName, *this);
    if (contains(file, ".cpm", ".CPM")) return loadCpm(fileName, *this);
    SDL_SetError("Unsupported file \"%s\"", fileName.c_str());
    return -1;
}
