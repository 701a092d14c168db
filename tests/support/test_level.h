#pragma once
#include "models/model.h"

#include <random>

/// Collision geometry put together by hand. Faces keep the order of the calls: add what one stands on first.
struct TestLevel {
    cModel model;

    TestLevel() { model.objects.resize(1); }
    std::vector<FaceIndices>& faces() { return model.objects[0].faces; }

    void addTriangle(const cVector3& a, const cVector3& b, const cVector3& c) {
        auto& positions = model.objects[0].positions;
        const auto first = static_cast<uint32_t>(positions.size());
        positions.insert(positions.end(), {a, b, c});
        faces().push_back({first, first + 1, first + 2});
    }
    /// Counter-clockwise seen from the side that the normal points to.
    void addQuad(const cVector3& a, const cVector3& b, const cVector3& c, const cVector3& d) {
        addTriangle(a, b, c);
        addTriangle(a, c, d);
    }
    /// Level floor, x0 < x1 and z0 < z1, facing up.
    void addFloor(float x0, float z0, float x1, float z1, float y) {
        addQuad({x0, y, z0}, {x0, y, z1}, {x1, y, z1}, {x1, y, z0});
    }
    void addCeiling(float x0, float z0, float x1, float z1, float y) {
        addQuad({x0, y, z0}, {x1, y, z0}, {x1, y, z1}, {x0, y, z1});
    }
    /// Upright wall over the line from (x0, z0) to (x1, z1), facing to the right of that direction seen from
    /// above
    /// (+x is right of −z).
    void addWall(float x0, float z0, float x1, float z1, float low, float high) {
        addQuad({x0, low, z0}, {x1, low, z1}, {x1, high, z1}, {x0, high, z0});
    }
};

/// Random numbers that are the same in every run.
struct TestRandom {
    std::mt19937 generator{1};
    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(generator);
    }
    int index(int count) { return std::uniform_int_distribution<int>(0, count - 1)(generator); }
    cVector3 vector(float reach) {
        const float x = number(-reach, reach), y = number(-reach, reach), z = number(-reach, reach);
        return {x, y, z};
    }
};
