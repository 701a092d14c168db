#include "core/frustum.h"

#include "platform/gl_api.h"

#include <cmath>
#include <memory>

namespace {
std::unique_ptr<cFrustum> g_instance;

/// Which clip column each plane takes, and with which sign: right, left, bottom, top, far, near.
constexpr struct {
    int column;
    float sign;
} kPlaneColumns[6] = {{0, -1}, {0, 1}, {1, 1}, {1, -1}, {2, -1}, {2, 1}};
} // namespace

cFrustum& cFrustum::instance() {
    if (!g_instance) g_instance = std::make_unique<cFrustum>();
    return *g_instance;
}

void cFrustum::destroy() {
    g_instance.reset();
}

void cFrustum::update() {
    if (!platform::hasGlContext()) return;
    float modelview[16], projection[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, modelview);
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    update(modelview, projection);
}

void cFrustum::update(const float* m, const float* p) {
    float k[4][4];
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            k[i][j] = m[i * 4] * p[j] + m[i * 4 + 1] * p[4 + j] + m[i * 4 + 2] * p[8 + j] +
                      m[i * 4 + 3] * p[12 + j];
        }
    }
    for (int n = 0; n < 6; ++n) {
        const auto [column, sign] = kPlaneColumns[n];
        float v[4];
        for (int i = 0; i < 4; ++i) v[i] = k[i][3] + sign * k[i][column];
        const float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        planes_[n] = {v[0] / length, v[1] / length, v[2] / length, v[3] / length};
    }
}

cFrustum::Result cFrustum::testCube(const cVector3& c, float size) const {
    // Of the eight corners only the nearest and the farthest along the plane's normal decide.
    const float h = size / 2;
    bool straddles = false;
    for (const Plane& p : planes_) {
        float least = p.d, most = p.d;
        const float normal[3] = {p.a, p.b, p.c};
        for (int axis = 0; axis < 3; ++axis) {
            const float low = normal[axis] * (c[axis] - h), high = normal[axis] * (c[axis] + h);
            least += low < high ? low : high;
            most += low < high ? high : low;
        }
        if (!(most > 0)) return kOutside;
        if (!(least > 0)) straddles = true;
    }
    return straddles ? kStraddles : kInside;
}

bool cFrustum::isSphereOutside(const cVector3& c, float radius) const {
    for (const Plane& p : planes_) {
        if (p.a * c.x + p.b * c.y + p.c * c.z + p.d <= -radius) return true;
    }
    return false;
}
