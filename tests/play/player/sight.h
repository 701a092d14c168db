#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

class cModel;
class cObject;
class cStaticObject;

namespace eyes {

/// How far one sees: past what is drawn, the scenery and the things that stand in it. What is only there to
/// be bumped into hides nothing and is not seen.
class cSight {
public:
    void forget() { bounds_.clear(); }  ///< another level: its meshes are others
    void lookFrom(const cVector3& eye); ///< for this frame

    struct Seen {
        float share = 1;                ///< of the way, 0 … 1, that is free
        const cObject* thing = nullptr; ///< what ends it; null for the scenery
    };
    Seen look(const cVector3& from, const cVector3& to, const cObject* through = nullptr) const;
    /// Whether its middle can be seen or, of somebody, head or feet, of a thing one of two corners of its
    /// mesh: others each frame.
    bool sees(const cObject& object) const;

private:
    using Bounds = std::pair<cVector3, cVector3>;
    struct Mesh {
        const cStaticObject* object;
        Bounds bounds; ///< in its own space
    };
    bool reaches(const cVector3& point, const cObject& object) const;

    cVector3 eye_;
    uint64_t frame_ = 0;
    std::vector<Mesh> meshes_; ///< near enough to be walls
    std::map<const cModel*, Bounds> bounds_;
};
} // namespace eyes
