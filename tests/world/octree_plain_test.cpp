// The octree's fast forms against plain ones, which follow the definition step by step: same leaves to the
// byte, same traces to the bit.
#include "data/binary_reader.h"
#include "support/test_level.h"
#include "world/octree.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <set>

namespace {
using Triangle = std::array<cVector3, 3>;

bool overlapsOn(const cVector3& axis, const Triangle& t, float half) {
    const float a = axis.dot(t[0]), b = axis.dot(t[1]), c = axis.dot(t[2]);
    const float reach = half * (std::fabs(axis.x) + std::fabs(axis.y) + std::fabs(axis.z));
    return std::min({a, b, c}) <= reach && std::max({a, b, c}) >= -reach;
}

/// All thirteen axes, whatever the first ones say.
bool touchesCube(Triangle t, const cVector3& centre, float half) {
    for (cVector3& corner : t) corner -= centre;
    const cVector3 units[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const cVector3 edges[3] = {t[1] - t[0], t[2] - t[1], t[0] - t[2]};
    bool touches = overlapsOn(edges[0].cross(edges[1]), t, half);
    for (const cVector3& axis : units) {
        touches &= overlapsOn(axis, t, half);
        for (const cVector3& edge : edges) touches &= overlapsOn(axis.cross(edge), t, half);
    }
    return touches;
}

/// The faces then count from 0 within the indices that they use.
std::vector<uint32_t> renumber(std::vector<FaceIndices>& faces) {
    std::set<uint32_t> used;
    for (const FaceIndices& f : faces) used.insert(f.begin(), f.end());
    for (FaceIndices& f : faces) {
        for (uint32_t& i : f) i = static_cast<uint32_t>(std::distance(used.begin(), used.find(i)));
    }
    return {used.begin(), used.end()};
}

template <typename Element>
std::vector<Element> taken(const std::vector<Element>& from, const std::vector<uint32_t>& used) {
    std::vector<Element> values;
    for (const uint32_t i : used)
        if (!from.empty()) values.push_back(from[i]);
    return values;
}

struct PlainBuild {
    int minFaces, generations;
    bool detect;
    float slack;
    cBinaryWriter out;
    cMaterialList materials;

    static cVector3 childCentre(const cVector3& centre, float size, int k) {
        const float q = size / 4;
        return centre + cVector3(k & 2 ? -q : q, k & 4 ? -q : q, k & 1 ? -q : q);
    }

    bool receives(const Triangle& t, const cVector3& centre, float size, int k) const {
        const cVector3 child = childCentre(centre, size, k);
        if (detect) return touchesCube(t, child, size / 4 + slack);
        return std::any_of(t.begin(), t.end(), [&](const cVector3& p) {
            return (k & 2 ? p.x <= centre.x : centre.x <= p.x) &&
                   (k & 4 ? p.y <= centre.y : centre.y <= p.y) && (k & 1 ? p.z <= centre.z : centre.z <= p.z);
        });
    }

    void split(const cModel& model, const cVector3& centre, float size, int generation) {
        const bool inner = model.totalFaces() > minFaces && generation < generations && size > 0;
        out.i32(inner ? 0 : 1);
        out.vector3(centre);
        out.f32(size);
        if (!inner) {
            out.i32(model.totalFaces());
            leaf(model).writeObjects(out, materials);
            return;
        }
        for (int k = 0; k < 8; ++k) {
            const cModel part = partOf(model, centre, size, k);
            if (part.totalFaces() == 0) {
                out.i32(2);
            } else {
                split(part, childCentre(centre, size, k), size / 2, generation + 1);
            }
        }
    }

    cModel partOf(const cModel& model, const cVector3& centre, float size, int k) const {
        cModel part;
        for (const cModelObject& from : model.objects) {
            cModelObject o = from;
            for (auto* faces : {&o.faces, &o.faceTexCoords, &o.faceSecond}) faces->clear();
            for (size_t f = 0; f < from.faces.size(); ++f) {
                const auto& [a, b, c] = from.faces[f];
                if (!receives({o.positions[a], o.positions[b], o.positions[c]}, centre, size, k)) continue;
                o.faces.push_back(from.faces[f]);
                o.faceTexCoords.push_back(from.faceTexCoords[f]);
                if (!from.faceSecond.empty()) o.faceSecond.push_back(from.faceSecond[f]);
            }
            part.add(o);
        }
        return part;
    }

    static cModel leaf(const cModel& model) {
        cModel compacted;
        for (cModelObject o : model.objects) {
            const std::vector<uint32_t> corners = renumber(o.faces);
            o.positions = taken(o.positions, corners);
            if (o.mode < kModeTwoTextures) o.vectors = taken(o.vectors, corners);
            if (!o.texCoords.empty()) o.texCoords = taken(o.texCoords, renumber(o.faceTexCoords));
            if (o.mode >= kModeTwoTextures) o.vectors = taken(o.vectors, renumber(o.faceSecond));
            compacted.add(o);
        }
        return compacted;
    }
};

cModel randomModel(TestRandom& random, int mostFaces, float edge) {
    cModel model;
    for (const uint8_t mode : {kModeColour, kModeTwoTextures, kModeTexture}) {
        cModelObject o;
        o.mode = mode;
        o.colour.g = mode; // one material a mode
        o.texture = mode == kModeColour ? kNoTexture : 7;
        const auto index = [&](size_t size) {
            return static_cast<uint32_t>(random.index(static_cast<int>(size)));
        };
        for (int i = random.index(mostFaces); i >= 0; --i) {
            const cVector3 at = random.vector(8);
            for (int k = 0; k < 3; ++k) o.positions.push_back(at + random.vector(edge));
        }
        if (random.index(3) == 0) o.positions[1] = o.positions[0]; // without area
        if (mode == kModeTwoTextures || random.index(2)) {
            for (size_t i = 0; i < o.positions.size(); ++i) o.vectors.push_back(random.vector(1));
        }
        if (random.index(2)) o.texCoords.resize(7, {0.5f, 1});
        for (uint32_t i = 0; i + 2 < o.positions.size(); i += 3) {
            const auto corner = [&] { return index(o.positions.size()); };
            o.faces.push_back({i, i + 1, random.index(9) ? i + 2 : corner()});
            o.faceTexCoords.push_back({index(7), index(7), index(7)});
            if (mode == kModeTwoTextures) o.faceSecond.push_back({corner(), corner(), corner()});
        }
        model.add(o);
    }
    return model;
}

/// Every triangle of every leaf, without boxes.
float plainTrace(const cOctree& octree, const cVector3& start, const cVector3& end) {
    cOctree::LeafList leaves;
    octree.querySegment(cSegment(start, end), leaves);
    float free = 1;
    for (const cModel* leaf : leaves) {
        for (const cModelObject& o : leaf->objects) {
            for (const FaceIndices& f : o.faces) {
                const cVector3 &a = o.positions[f[0]], &b = o.positions[f[1]], &c = o.positions[f[2]];
                const cPlane plane(a, b, c);
                const float d0 = plane.distance(start), d1 = plane.distance(end);
                if (d0 * d1 > 0 || d0 == d1) continue;
                const float t = d0 / (d0 - d1);
                if (t >= 0 && t < 1 && pointInTriangle(lerp(start, end, t), a, b, c))
                    free = std::min(free, t);
            }
        }
    }
    return free <= 0.01f ? 0 : free;
}
} // namespace

TEST(PlainOctree, BuildsTheSameBytes) {
    TestRandom random;
    for (int scene = 0; scene < 300; ++scene) {
        cModel model = randomModel(random, 60, random.number(0.05f, 4));
        for (cModelObject& o : model.objects) {
            for (cVector3& p : o.positions)
                if (scene % 3 == 0)
                    p = {std::round(p.x), std::round(p.y), std::round(p.z)}; // in dividing planes
        }
        const bool detect = scene % 4 != 0;
        const int minFaces = 1 + random.index(20), generations = 1 + random.index(4);
        PlainBuild plain{minFaces, generations, detect, 2 * model.extent() * 2e-6f, {}, {}};
        plain.materials.addFrom(model);
        plain.split(model, model.centre(), 2 * model.extent(), 0);
        cOctree octree;
        octree.build(model, minFaces, generations, detect);
        cBinaryWriter fast;
        octree.write(fast, plain.materials);
        ASSERT_EQ(fast.bytes(), plain.out.bytes()) << scene;
    }
}

TEST(PlainOctree, TracesTheSameBits) {
    TestRandom random;
    int blocked = 0, none = 0;
    for (int scene = 0; scene < 1000; ++scene) {
        cModel model = randomModel(random, 40, random.number(0.02f, 5));
        if (scene % 5 == 0) model.objects[0].positions[0].y = NAN;
        if (scene % 3 == 0) {
            const float far = random.number(1, 1000); // where rounding is coarse
            for (cModelObject& o : model.objects) {
                for (cVector3& p : o.positions) p += cVector3(far, -far, far / 2);
            }
        }
        cOctree octree;
        octree.build(model, 10, 3, true);
        const auto& corners = model.objects[1].positions;
        const auto corner = [&] { return corners[static_cast<size_t>(random.index(int(corners.size())))]; };
        for (int i = 0; i < 40; ++i) {
            // Through corners, along edges and axes, and anyhow.
            const cVector3 start = corner() + random.vector(i % 2 ? 6 : 0);
            cVector3 end = corner() + random.vector(i % 3 ? 0.02f : 0);
            if (i % 8 == 7) end = start + cVector3(0, random.number(-9, 9), 0);
            const float fast = octree.trace(start, end), plain = plainTrace(octree, start, end);
            ASSERT_EQ(std::memcmp(&fast, &plain, sizeof fast), 0) << scene << ' ' << fast << ' ' << plain;
            blocked += fast < 1;
            none += fast == 0;
        }
    }
    EXPECT_GT(blocked, 5000);
    EXPECT_GT(none, 200);
}
