#pragma once
#include "forge/shapes.h"

#include <vector>

namespace forge {
/// A joint's place: where its axes point and where it lies. At rest the axes are those of the space.
struct Joint {
    cVector3 x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1}, origin;

    cVector3 direction(const cVector3& d) const { return x * d.x + y * d.y + z * d.z; }
    cVector3 point(const cVector3& p) const { return origin + direction(p); }
    /// A joint at `at` of this one, turned by `turn` within it.
    Joint child(const cVector3& at, const Joint& turn) const;
};
/// Turns in degrees, seen along the axis from its tip: positive is counter-clockwise. About x, hanging limbs
/// swing forwards (−z) and upright ones lean back; about y, forwards goes to the left; about z, upright goes
/// to the left.
Joint turnX(float degrees);
Joint turnY(float degrees);
Joint turnZ(float degrees);
Joint operator*(const Joint& a, const Joint& b); ///< turns only: b first

/// Bends a limb of two bones so that it reaches from `from` to `to` (as far as it can), the joint between
/// them pointing towards `bend`. `sideways` is the x axis that both bones keep as well as they can.
struct LimbBend {
    Joint upper, lower;
    cVector3 end;
};
LimbBend reach(const cVector3& from, const cVector3& to, float upperLength, float lowerLength,
               const cVector3& bend, const cVector3& sideways);

/// One ring of a body: an ellipse around `centre`, its radii towards the right and the back, and what moves
/// it.
struct Ring {
    cVector3 centre;
    float right, back;
    int bone, otherBone;
    float otherWeight; ///< 0..1
};
enum class Along { kUp, kForwards }; ///< direction in which the rings follow each other

/// A mesh whose vertices follow up to two bones each.
class Skin {
public:
    /// A closed body through rings; texture u runs round it from the back over the right side to the front
    /// and on, v along it, within the given part of the texture. Caps close the ends, drawn out by the given
    /// lengths.
    void addBody(const std::vector<Ring>& rings, int segments, const TexCoord& low, const TexCoord& high,
                 Along along, float startCap, float endCap);
    /// A stiff piece.
    void addPiece(const Mesh& mesh, int bone);

    /// Positions with every bone moved from its rest place to its joint.
    std::vector<cVector3> posed(const std::vector<cVector3>& rest, const std::vector<Joint>& joints) const;
    const std::vector<TexCoord>& texCoords() const { return mesh_.texCoords; }
    const std::vector<FaceIndices>& faces() const { return mesh_.faces; }
    size_t vertexCount() const { return mesh_.positions.size(); }

private:
    struct Weight {
        int bone, other;
        float otherWeight;
    };
    uint32_t addVertex(const cVector3& p, const TexCoord& t, const Ring& ring);

    Mesh mesh_;
    std::vector<Weight> weights_;
};
} // namespace forge
