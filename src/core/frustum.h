#pragma once
#include "core/vector3.h"

/// The six planes of the view volume, from OpenGL's projection and modelview matrices. Valid for the matrices
/// in force at the last update.
class cFrustum {
public:
    enum Result : int { kInside = 0, kOutside = 1, kStraddles = 2 };

    static cFrustum& instance();
    static void destroy();

    /// Takes the matrices that are set in OpenGL now; does nothing without a context.
    void update();
    /// The same from given matrices, sixteen floats each in column-major order.
    void update(const float* modelview, const float* projection);
    /// Cube by centre and edge length. A corner on a plane counts as outside of it.
    Result testCube(const cVector3& centre, float size) const;
    /// True when some plane has the centre at a distance of at most −radius.
    bool isSphereOutside(const cVector3& centre, float radius) const;

    struct Plane {
        float a = 0, b = 0, c = 0, d = 1;
    };
    const Plane& plane(int index) const { return planes_[index]; } ///< right, left, bottom, top, far, near

private:
    Plane planes_[6];
};
