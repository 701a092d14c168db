#pragma once
#include "models/anim_model.h"

#include <string>
#include <utility>

/// A character's parts in the order in which poses keep their states. The lower body is the root.
enum CharacterPart : int { kLowerPart, kUpperPart, kHeadPart, kWeaponPart, kCharacterParts };

/// The geometry of an animated character, shared by everybody who looks alike: upper body on the lower body's
/// "tag_torso", head and weapon on the upper body's "tag_head" and "tag_weapon". How one of them stands is a
/// cCharacterPose. Loads return false with SDL's error text set; parts read until then stay.
class cCharacterModel {
public:
    cAnimModel parts[kCharacterParts];
    int32_t partCount = 0; ///< parts read

    /// "directory\name_head.cff", _upper and _lower, turned from z-up to y-up.
    bool loadCff(const std::string& directory, const std::string& name);
    /// The same with coordinates as stored.
    bool loadCffRaw(const std::string& directory, const std::string& name);
    /// The same parts as .md3, with lower_, upper_ and head_default.skin and animation.cfg of the directory.
    bool loadMd3(const std::string& directory, const std::string& name);
    /// "directory\name.md3" and its .shader onto the upper body's tag.
    bool loadWeapon(const std::string& directory, const std::string& name);
    /// Writes "baseName_head.cff", _lower, _upper and, when there is one, _weapon. False when one of the
    /// three bodies is empty (nothing is written then) or a file cannot be written.
    bool writeCff(const std::string& baseName) const;

    /// Fills the animation tables of upper and lower body. False when the file cannot be opened.
    bool readAnimations(const std::string& fileName);
    /// Hangs `child` on the parent's tag of that name, ignoring case; without such a tag nothing changes.
    void attach(CharacterPart parent, CharacterPart child, const char* tagName);
    void scale(float factor);
    /// Neighbours and face planes, needed before shadow volumes are drawn.
    void prepareShadowData();

    /// Whether the part's first tag carries something; a head's does not.
    bool carriesOnFirstTag(CharacterPart part) const;

private:
    using Reader = bool (*)(cAnimModel&, const std::string&);
    bool loadBodies(const std::string& directory, const std::string& name, const char* extension,
                    Reader reader);
    bool loadSkins(const std::string& directory);
    void attachBodies();
};

/// Directory and name of a character as documents write it, "directory\name"; the directory is ".\" when none
/// is written.
std::pair<std::string, std::string> splitCharacterName(const std::string& written);
