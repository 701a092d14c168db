#include "forge/skeleton.h"

#include <algorithm>
#include <cmath>

namespace forge {
namespace {
constexpr float kDegree = 0.0174532925f;
constexpr float kTurn = 6.28318531f;
} // namespace

Joint Joint::child(const cVector3& at, const Joint& turn) const {
    Joint result = *this * turn;
    result.origin = point(at);
    return result;
}

Joint turnX(float degrees) {
    const float c = std::cos(degrees * kDegree), s = std::sin(degrees * kDegree);
    return {{1, 0, 0}, {0, c, s}, {0, -s, c}, {}};
}

Joint turnY(float degrees) {
    const float c = std::cos(degrees * kDegree), s = std::sin(degrees * kDegree);
    return {{c, 0, -s}, {0, 1, 0}, {s, 0, c}, {}};
}

Joint turnZ(float degrees) {
    const float c = std::cos(degrees * kDegree), s = std::sin(degrees * kDegree);
    return {{c, s, 0}, {-s, c, 0}, {0, 0, 1}, {}};
}

Joint operator*(const Joint& a, const Joint& b) {
    return {a.direction(b.x), a.direction(b.y), a.direction(b.z), a.origin};
}

static Joint bone(const cVector3& top, const cVector3& bottom, const cVector3& sideways) {
    Joint j;
    j.y = (top - bottom).normalized();
    j.z = sideways.cross(j.y).normalized();
    j.x = j.y.cross(j.z);
    j.origin = top;
    return j;
}

LimbBend reach(const cVector3& from, const cVector3& to, float upperLength, float lowerLength,
               const cVector3& bend, const cVector3& sideways) {
    const cVector3 way = to - from;
    const float length = std::clamp(way.length(), 0.2f * upperLength, 0.999f * (upperLength + lowerLength));
    const cVector3 ahead = way.normalized();
    const float along =
        (upperLength * upperLength - lowerLength * lowerLength + length * length) / (2 * length);
    const float off = std::sqrt(std::max(0.0f, upperLength * upperLength - along * along));
    const cVector3 out = (bend - ahead * bend.dot(ahead)).normalized();
    const cVector3 middle = from + ahead * along + out * off, end = from + ahead * length;
    return {bone(from, middle, sideways), bone(middle, end, sideways), end};
}

uint32_t Skin::addVertex(const cVector3& p, const TexCoord& t, const Ring& ring) {
    weights_.push_back({ring.bone, ring.otherBone, ring.otherWeight});
    return mesh_.addVertex(p, t.u, t.v);
}

void Skin::addBody(const std::vector<Ring>& rings, int segments, const TexCoord& low, const TexCoord& high,
                   Along along, float startCap, float endCap) {
    const cVector3 right(1, 0, 0), back = along == Along::kUp ? cVector3(0, 0, 1) : cVector3(0, 1, 0);
    const cVector3 ahead = back.cross(right);
    const auto row = static_cast<uint32_t>(segments + 1);
    const auto base = static_cast<uint32_t>(mesh_.positions.size());
    const auto at = [&](float u, float v) {
        // A little inside its part, so that neighbours do not bleed in.
        constexpr float kInset = 0.007f;
        return TexCoord{low.u + kInset + (high.u - low.u - 2 * kInset) * u,
                        low.v + kInset + (high.v - low.v - 2 * kInset) * v};
    };
    for (size_t j = 0; j < rings.size(); ++j)
        for (int i = 0; i <= segments; ++i) {
            const float angle = kTurn * static_cast<float>(i % segments) / static_cast<float>(segments);
            const Ring& r = rings[j];
            addVertex(r.centre + right * (r.right * std::sin(angle)) + back * (r.back * std::cos(angle)),
                      at(static_cast<float>(i) / static_cast<float>(segments),
                         static_cast<float>(j) / static_cast<float>(rings.size() - 1)),
                      r);
        }
    mesh_.addGrid(base, rings.size(), row);
    const auto last = base + static_cast<uint32_t>(rings.size() - 1) * row;
    const uint32_t first = addVertex(rings.front().centre - ahead * startCap, at(0.5f, 0), rings.front());
    const uint32_t end = addVertex(rings.back().centre + ahead * endCap, at(0.5f, 1), rings.back());
    for (uint32_t i = 0; i + 1 < row; ++i) {
        mesh_.addTriangle(first, base + i + 1, base + i);
        mesh_.addTriangle(end, last + i, last + i + 1);
    }
}

void Skin::addPiece(const Mesh& mesh, int bone) {
    mesh_.append(mesh);
    weights_.resize(mesh_.positions.size(), {bone, bone, 0});
}

std::vector<cVector3> Skin::posed(const std::vector<cVector3>& rest, const std::vector<Joint>& joints) const {
    std::vector<cVector3> result(mesh_.positions.size());
    for (size_t i = 0; i < result.size(); ++i) {
        const Weight& w = weights_[i];
        const auto moved = [&](int b) {
            const auto k = static_cast<size_t>(b);
            return joints[k].point(mesh_.positions[i] - rest[k]);
        };
        result[i] = lerp(moved(w.bone), moved(w.other), w.otherWeight);
    }
    return result;
}
} // namespace forge
