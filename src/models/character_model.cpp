#include "models/character_model.h"

#include "models/cff.h"
#include "models/md3.h"
#include "platform/files.h"
#include "render/shadow_volume.h"

#include <SDL.h>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string_view>

namespace {
/// The order in which bodies are read.
constexpr struct {
    CharacterPart part;
    const char *title, *suffix;
} kBodies[] = {
    {kHeadPart, "Head", "_head"}, {kUpperPart, "Upper", "_upper"}, {kLowerPart, "Lower", "_lower"}};

/// The order in which skins are read.
constexpr struct {
    CharacterPart part;
    const char *title, *file;
} kSkins[] = {{kLowerPart, "Lower", "lower_default.skin"},
              {kUpperPart, "Upper", "upper_default.skin"},
              {kHeadPart, "Head", "head_default.skin"}};

constexpr size_t kMostAnimations = 32;
constexpr size_t kLongestAnimationName = 259;
// The legs' frames in a part of their own follow the shared ones: the torso's frames, which lie between entry
// 7 and entry 14 of the table, fall out.
constexpr size_t kFirstTorsoEntry = 7, kFirstLegsEntry = 14;

int32_t wrapped(int64_t value) {
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

/// Blank-separated words of a text file.
class cWords {
public:
    explicit cWords(std::string_view text) : text_(text) {}
    bool next(std::string& word) {
        while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
        const size_t start = at_;
        while (at_ < text_.size() && !isBlank(text_[at_])) ++at_;
        word.assign(text_.substr(start, at_ - start));
        return !word.empty();
    }
    int32_t nextInt() {
        std::string word;
        next(word);
        return wrapped(std::strtoll(word.c_str(), nullptr, 10));
    }
    void skipLine() { at_ = std::min(text_.find('\n', at_), text_.size()); }

private:
    static bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
    std::string_view text_;
    size_t at_ = 0;
};

bool contains(const cAnimation& a, const char* word) {
    return a.name.find(word) != std::string::npos;
}

std::string joined(const std::string& directory, const std::string& file) {
    return directory + "\\" + file;
}
} // namespace

bool cCharacterModel::loadCff(const std::string& directory, const std::string& name) {
    if (!loadBodies(directory, name, ".cff", &readCff)) return false;
    attachBodies();
    return true;
}

bool cCharacterModel::loadCffRaw(const std::string& directory, const std::string& name) {
    if (!loadBodies(directory, name, ".cff", &readCffRaw)) return false;
    attachBodies();
    return true;
}

bool cCharacterModel::loadMd3(const std::string& directory, const std::string& name) {
    if (!loadBodies(directory, name, ".md3", &::loadMd3) || !loadSkins(directory)) return false;
    const std::string table = joined(directory, "animation.cfg");
    if (!readAnimations(table)) {
        SDL_SetError("Cannot load the animation table \"%s\"", table.c_str());
        return false;
    }
    attachBodies();
    return true;
}

bool cCharacterModel::loadWeapon(const std::string& directory, const std::string& name) {
    const std::string path = joined(directory, name + ".md3"), shader = joined(directory, name + ".shader");
    if (!::loadMd3(parts[kWeaponPart], path)) {
        SDL_SetError("Cannot load the Weapon model: \"%s\"", path.c_str());
        return false;
    }
    ++partCount;
    if (!loadShader(parts[kWeaponPart], directory, shader)) {
        SDL_SetError("Cannot load the shader file for model: \"%s\"", shader.c_str());
        return false;
    }
    attach(kUpperPart, kWeaponPart, "tag_weapon");
    return true;
}

bool cCharacterModel::loadBodies(const std::string& directory, const std::string& name, const char* extension,
                                 Reader reader) {
    for (const auto& body : kBodies) {
        const std::string path = joined(directory, name + body.suffix + extension);
        if (!reader(parts[body.part], path)) {
            SDL_SetError("Cannot load the %s model: \"%s\"", body.title, path.c_str());
            return false;
        }
        ++partCount;
    }
    return true;
}

bool cCharacterModel::loadSkins(const std::string& directory) {
    for (const auto& skin : kSkins) {
        const std::string path = joined(directory, skin.file);
        if (loadSkin(parts[skin.part], directory, path)) continue;
        SDL_SetError("Cannot load the %s skin: \"%s\"", skin.title, path.c_str());
        return false;
    }
    return true;
}

void cCharacterModel::attachBodies() {
    attach(kLowerPart, kUpperPart, "tag_torso");
    attach(kUpperPart, kHeadPart, "tag_head");
}

void cCharacterModel::attach(CharacterPart parent, CharacterPart child, const char* tagName) {
    const int32_t tag = parts[parent].findTag(tagName);
    if (tag >= 0) parts[parent].attachments[static_cast<size_t>(tag)] = child;
}

bool cCharacterModel::readAnimations(const std::string& fileName) {
    platform::Bytes bytes;
    if (!platform::readFile(fileName, bytes)) return false;
    cWords words({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    std::vector<cAnimation> entries;
    int32_t shift = 0;
    bool shiftKnown = false;
    std::string word;
    while (entries.size() < kMostAnimations && words.next(word)) {
        if (!std::isdigit(static_cast<unsigned char>(word[0]))) {
            words.skipLine();
            continue;
        }
        cAnimation a;
        a.firstFrame = wrapped(std::strtoll(word.c_str(), nullptr, 10));
        a.endFrame = wrapped(int64_t{a.firstFrame} + words.nextInt());
        a.loopFrames = words.nextInt();
        a.fps = words.nextInt();
        words.next(word); // a comment mark
        words.next(word);
        a.name = word.substr(0, kLongestAnimationName);
        entries.push_back(a);
        if (contains(a, "BOTH")) parts[kLowerPart].animations.push_back(a);
        if (contains(a, "BOTH") || contains(a, "TORSO")) parts[kUpperPart].animations.push_back(a);
        if (contains(a, "BOTH") || contains(a, "TORSO") || !contains(a, "LEGS")) continue;
        if (!shiftKnown && entries.size() >= kFirstLegsEntry) {
            shift = wrapped(int64_t{entries[kFirstLegsEntry - 1].firstFrame} -
                            entries[kFirstTorsoEntry - 1].firstFrame);
        }
        shiftKnown = true; // legs that come too early stay where they are
        a.firstFrame = wrapped(int64_t{a.firstFrame} - shift);
        a.endFrame = wrapped(int64_t{a.endFrame} - shift);
        parts[kLowerPart].animations.push_back(a);
    }
    return true;
}

bool cCharacterModel::writeCff(const std::string& baseName) const {
    for (const auto& body : kBodies) {
        if (parts[body.part].meshes.empty()) return false;
    }
    bool ok = ::writeCff(parts[kHeadPart], baseName + "_head.cff");
    ok = ::writeCff(parts[kLowerPart], baseName + "_lower.cff") && ok;
    ok = ::writeCff(parts[kUpperPart], baseName + "_upper.cff") && ok;
    if (!parts[kWeaponPart].meshes.empty())
        ok = ::writeCff(parts[kWeaponPart], baseName + "_weapon.cff") && ok;
    return ok;
}

void cCharacterModel::scale(float factor) {
    for (cAnimModel& part : parts) part.scale(factor);
}

void cCharacterModel::prepareShadowData() {
    for (cAnimModel& part : parts) {
        for (cAnimMesh& mesh : part.meshes) {
            shadowVolume::computeNeighbours(mesh);
            shadowVolume::computeFacePlanes(mesh);
        }
    }
}

bool cCharacterModel::carriesOnFirstTag(CharacterPart part) const {
    const std::vector<int>& attachments = parts[part].attachments;
    return !attachments.empty() && attachments[0] != cAnimModel::kNothing;
}

std::pair<std::string, std::string> splitCharacterName(const std::string& written) {
    const size_t separator = platform::lastSeparator(written);
    if (separator == std::string::npos) return {".\\", written};
    return {written.substr(0, separator), written.substr(separator + 1)};
}
