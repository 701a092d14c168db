#pragma once
#include "core/vector3.h"
#include "data/xml_node.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class cCmlElement;
class cCmlObject;
struct cItemDef;

/// What an element of a level document is; the order of cml_vocabulary.h's table.
enum CmlKind : int32_t {
    kCmlLevel,
    kCmlFiles,
    kCmlObjectElement,
    kCmlAppearance,
    kCmlModel,
    kCmlPhysics,
    kCmlBoundingVolume,
    kCmlAction,
    kCmlReaction,
    kCmlRequirement,
    kCmlDialogue,
    kCmlItem,
    kCmlPlayer,
    kCmlEnvironment,
    kCmlCinematic,
    kCmlCamera,
    kCmlFrame,
    kCmlPlayerCin,
    kCmlFilter,
    kCmlFog,
};

/// Indices of an action's reaction slots.
enum CmlTrigger : int32_t {
    kTriggerTimer,
    kTriggerDistanceExceeds,
    kTriggerDistanceFallsBelow,
    kTriggerCollisionChr,
    kTriggerCollisionMesh,
    kTriggerContext,
    kTriggerAnimationEnd,
    kTriggerBallisticHit,
    kTriggerProjectileHit,
    kTriggerMeleeHit,
    kTriggerCount,
};

/// What the distance of a reaction is measured from.
enum CmlPoint : int32_t { kPointOrigin, kPointSelf, kPointPlayer };

using CmlProcedure = void (*)(cCmlObject& self, int argCount, const int32_t* args);
using CmlFunction = bool (*)(cCmlObject& self, int argCount, const int32_t* args);

/// One compiled call. `args` always has at least three entries, so a handler may read what was not written as
/// 0.
struct cCmlCall {
    CmlProcedure procedure = nullptr; ///< of a procedure list; null: skipped at run time
    CmlFunction function = nullptr;   ///< of a test list
    std::vector<int32_t> args;
    uint8_t argCount = 0; ///< as written
    int32_t objectId = 0; ///< name hash of the object prefix, 0 without one
};

/// Look-ups that compilation needs of other parts of the game.
struct CmlLookups {
    std::function<int32_t(const std::string& name)> globalIndex; ///< created at first use
    std::function<int32_t(const std::string& name)> findItem;    ///< −1 when there is none
    std::function<const cItemDef*(int32_t id)> itemAt;
    std::function<void(const std::string& baseName)> preloadSound; ///< positional effect
};

/// What compilation found. Rows also go to the log unless `quiet`.
struct CmlReport {
    struct Row {
        int line;
        std::string message;
    };
    std::vector<Row> rows;
    bool quiet = false;

    void add(int line, const std::string& message);
};

/// An element of a level document with its compiled behaviour.
class cCmlElement : public cXmlNode {
public:
    cCmlElement() : cXmlNode(kCml) {}

    /// Parses, classifies and compiles a document into this empty root. Negative on a file that cannot be
    /// read or holds an unknown element. Implemented in cml_compiler.cpp.
    int load(const std::string& fileName, const CmlLookups& lookups, CmlReport& report);
    void clear();

    cCmlElement* childAt(int32_t position) const; ///< null outside of the children
    int32_t childCount() const { return static_cast<int32_t>(children.size()); }
    cCmlElement* findChild(CmlKind kind) const;
    cCmlElement* findChildWith(CmlKind kind, const std::string& attribute, const std::string& value) const;
    /// Position among all children, −1 when there is none.
    int32_t childIndex(CmlKind kind, const std::string& attribute, const std::string& value) const;

    // Implemented in cml_runtime.cpp.
    void runCalls(cCmlObject& self) const;
    void runCall(cCmlObject& self, int32_t position) const;
    bool testAll(cCmlObject& self) const;

    CmlKind elementKind = kCmlLevel;
    cCmlElement* parent = nullptr;
    int32_t key = 0;                              ///< name hash of the key attribute, 0 without one
    const cCmlElement* slots[kTriggerCount] = {}; ///< an action's reactions; a cinematic's tracks
    std::vector<cCmlCall> calls;
    std::vector<cCmlCall> tests;
    std::map<std::string, int32_t> localNames; ///< of an object
    std::vector<int32_t> localValues;

    CmlPoint point = kPointOrigin; ///< reaction
    float distance = 0;            ///< reaction, world units
    float fov = 0;                 ///< object: cosine of the angle
    int32_t length = 0;            ///< cinematic, frames
    int32_t number = 0;            ///< frame
    int32_t frame = 0;             ///< filter
    float speed = 0;               ///< frame, units per frame; kNoSpeed when not given, less counts as that
    float alpha = 0;               ///< filter
    int32_t upperAnim = 0;         ///< frame: name hashes
    int32_t lowerAnim = 0;
    int32_t skill = 0;              ///< item
    const cItemDef* item = nullptr; ///< item: null when the item file has none of that name
    cVector3 vectors[3];            ///< frame: position, target, up; filter: colour

    static constexpr float kNoSpeed = -256;
    static constexpr size_t kCameraTrack = 0, kHeroTrack = 1; ///< slots of a cinematic

protected:
    std::unique_ptr<cXmlNode> makeChild() const override { return std::make_unique<cCmlElement>(); }
};

/// Children by kind and name. Those of an element are collected at the first question: a document may ask as
/// often as it has calls.
class cCmlChildNames {
public:
    /// Position among all children of the first of that kind and name, −1 when there is none.
    int32_t find(const cCmlElement& parent, CmlKind kind, const std::string& name);

private:
    std::map<std::pair<const cCmlElement*, CmlKind>, std::unordered_map<std::string, int32_t>> positions_;
};
