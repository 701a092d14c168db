#include "core/matrix4.h"

namespace {
constexpr float kDegreesToRadians = 0.017453292f;
} // namespace

cMatrix4 cMatrix4::identity() {
    return {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
}

cMatrix4 cMatrix4::perspective(float fovDegrees, float aspect, float nearPlane, float farPlane) {
    const float f = 1.0f / std::tan(fovDegrees * kDegreesToRadians / 2);
    const float depth = nearPlane - farPlane;
    return {{f / aspect, 0, 0, 0, 0, f, 0, 0, 0, 0, (farPlane + nearPlane) / depth, -1, 0, 0,
             2 * farPlane * nearPlane / depth, 0}};
}

cMatrix4 cMatrix4::translation(const cVector3& v) {
    return {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, v.x, v.y, v.z, 1}};
}

cMatrix4 cMatrix4::scale(const cVector3& v) {
    return {{v.x, 0, 0, 0, 0, v.y, 0, 0, 0, 0, v.z, 0, 0, 0, 0, 1}};
}

cMatrix4 cMatrix4::rotationX(float degrees) {
    return rotation({1, 0, 0}, degrees);
}
cMatrix4 cMatrix4::rotationY(float degrees) {
    return rotation({0, 1, 0}, degrees);
}
cMatrix4 cMatrix4::rotationZ(float degrees) {
    return rotation({0, 0, 1}, degrees);
}

cMatrix4 cMatrix4::rotation(const cVector3& a, float degrees) {
    const float angle = -degrees * kDegreesToRadians;
    const float c = std::cos(angle), s = std::sin(angle), k = 1 - c;
    return {{a.x * a.x * k + c, a.y * a.x * k + a.z * s, a.x * a.z * k - a.y * s, 0, //
             a.x * a.y * k - a.z * s, a.y * a.y * k + c, a.y * a.z * k + a.x * s, 0, //
             a.x * a.z * k + a.y * s, a.y * a.z * k - a.x * s, a.z * a.z * k + c, 0, 0, 0, 0, 1}};
}

cMatrix4 cMatrix4::basis(const cVector3& r, const cVector3& u, const cVector3& b, const cVector3& o) {
    return {{r.x, r.y, r.z, 0, u.x, u.y, u.z, 0, b.x, b.y, b.z, 0, o.x, o.y, o.z, 1}};
}

cMatrix4 cMatrix4::planarShadow(const cVector3& n, float d, const cVector3& l) {
    const float dot = n.dot(l) + d;
    return {{dot - l.x * n.x, -l.y * n.x, -l.z * n.x, -n.x, -l.x * n.y, dot - l.y * n.y, -l.z * n.y, -n.y,
             -l.x * n.z, -l.y * n.z, dot - l.z * n.z, -n.z, -l.x * d, -l.y * d, -l.z * d, dot - d}};
}

cMatrix4 cMatrix4::operator*(const cMatrix4& o) const {
    cMatrix4 r;
    for (int col = 0; col < 4; ++col) {
        for (int row = 0; row < 4; ++row) {
            float sum = 0;
            for (int k = 0; k < 4; ++k) sum += m[k * 4 + row] * o.m[col * 4 + k];
            r.m[col * 4 + row] = sum;
        }
    }
    return r;
}

cVector3 cMatrix4::transformDirection(const cVector3& d) const {
    return {m[0] * d.x + m[4] * d.y + m[8] * d.z, m[1] * d.x + m[5] * d.y + m[9] * d.z,
            m[2] * d.x + m[6] * d.y + m[10] * d.z};
}

cVector3 cMatrix4::transformPoint(const cVector3& p) const {
    return transformDirection(p) + cVector3(m[12], m[13], m[14]);
}

cVector3 cMatrix4::inverseTransformPoint(const cVector3& p) const {
    const cVector3 d = p - cVector3(m[12], m[13], m[14]);
    return {m[0] * d.x + m[1] * d.y + m[2] * d.z, m[4] * d.x + m[5] * d.y + m[6] * d.z,
            m[8] * d.x + m[9] * d.y + m[10] * d.z};
}
