#pragma once
#include <cmath>

/// Three 32-bit floats; the y axis points up.
struct cVector3 {
    float x = 0, y = 0, z = 0;

    constexpr cVector3() = default;
    constexpr cVector3(float px, float py, float pz) : x(px), y(py), z(pz) {}

    constexpr cVector3 operator+(const cVector3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    constexpr cVector3 operator-(const cVector3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    constexpr cVector3 operator-() const { return {-x, -y, -z}; }
    constexpr cVector3 operator*(float s) const { return {x * s, y * s, z * s}; }
    constexpr cVector3 operator/(float s) const { return {x / s, y / s, z / s}; }
    constexpr cVector3& operator+=(const cVector3& o) { return *this = *this + o; }
    constexpr cVector3& operator-=(const cVector3& o) { return *this = *this - o; }
    constexpr cVector3& operator*=(float s) { return *this = *this * s; }
    /// Exact equality of all three components (−0 equals 0, NaN equals nothing).
    constexpr bool operator==(const cVector3& o) const { return x == o.x && y == o.y && z == o.z; }

    constexpr float dot(const cVector3& o) const { return x * o.x + y * o.y + z * o.z; }
    constexpr cVector3 cross(const cVector3& o) const {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }
    constexpr float lengthSq() const { return dot(*this); }
    float length() const { return std::sqrt(lengthSq()); }
    /// Unit vector; a vector without length (or with a length that is no number) gives (0, 0, 0).
    cVector3 normalized() const {
        const float l = length();
        return l > 0.0f ? *this / l : cVector3{};
    }
    /// Each component within 0.001.
    bool isNear(const cVector3& o) const {
        return std::fabs(x - o.x) < 0.001f && std::fabs(y - o.y) < 0.001f && std::fabs(z - o.z) < 0.001f;
    }
    bool isFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }

    constexpr float& operator[](int axis) { return axis == 0 ? x : axis == 1 ? y : z; }
    constexpr float operator[](int axis) const { return axis == 0 ? x : axis == 1 ? y : z; }
};

constexpr cVector3 operator*(float s, const cVector3& v) {
    return v * s;
}
inline cVector3 lerp(const cVector3& a, const cVector3& b, float t) {
    return a + (b - a) * t;
}
