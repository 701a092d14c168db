#pragma once
#include "core/vector3.h"
#include "world/model_store.h"

#include <cstdint>
#include <string>
#include <vector>

class cXmlNode;

/// How an item attacks.
enum WeaponType : int32_t { kNoWeapon, kBallistic, kProjectileWeapon, kCloseRange };

/// A kind of thing that the hero can carry.
struct cItemDef {
    std::string name, subobjectName, description;
    std::string article = "a", pluralSuffix = "s";
    float atlasU = 0, atlasV = 0; ///< lower left corner of its picture in the atlas
    int32_t weaponType = kNoWeapon;
    bool allowGrouping = false;              ///< pickups add to the entry that is there
    bool usageConsumes = false;              ///< free for scripts
    bool differentSubobjects = false;        ///< the count is of ammunition; an empty entry stays
    int32_t useSound = 0;                    ///< hash of the sound's name, 0 for none
    int32_t attackLength = 0, fireFrame = 0; ///< updates
    int32_t damage = 0;                      ///< points of health
    cModel* projectileModel = nullptr;       ///< belongs to the definitions
    float radius = 0;                        ///< of the projectile, or of the blow
    float acceleration = 0;                  ///< read, not used in flight
    float maxSpeed = 0;                      ///< units per update, at full charge
    int32_t duration = 0;                    ///< ms of straight flight
    float damageRadius = 0;                  ///< full damage within
    float damageFalloff = 0;                 ///< beyond that, down to none along so many units
    bool charge = false;                     ///< holding the key makes it fly farther
    bool explodes = false;
    int32_t hitSound = 0;
    int32_t range = 0; ///< of shots, units
    /// Of a projectile: added to its velocity in each update. Of a blow: where it falls.
    cVector3 gravityOrOffset;
};

/// The kinds of items of the run, in the order of "objects.xml"; their position there is their id.
class cItemDefs {
public:
    static constexpr const char* kFile = "objects.xml";

    static cItemDefs& instance();
    static void destroy();

    /// Reads them at the first call. Implemented in item_loading.cpp.
    void loadItemDefs();
    /// The picture of all items; asked for again after every mode set.
    void loadAtlas();
    int32_t findItem(const std::string& name) const; ///< −1 when there is none
    const cItemDef* at(int32_t id) const;            ///< null for an id that there is not
    int32_t count() const { return static_cast<int32_t>(defs_.size()); }
    int32_t getAtlas() const { return atlas_; } ///< GL name, negative without it

private:
    void readItem(const cXmlNode& element);

    std::vector<cItemDef> defs_; ///< never grows after the load: everybody keeps pointers
    cStaticModelStore models_;
    bool loaded_ = false;
    int32_t atlas_ = -1;
};
