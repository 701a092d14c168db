#pragma once
#include "core/vector3.h"

/// Sixteen 32-bit floats in OpenGL's column-major order. Angles are degrees and are applied negated, so
/// rotationY(90) turns clockwise seen from above; a right-handed turn by a is rotation(-a).
struct cMatrix4 {
    float m[16];

    static cMatrix4 identity();
    /// Same volume as gluPerspective. Vertical field of view in degrees.
    static cMatrix4 perspective(float fovDegrees, float aspect, float nearPlane, float farPlane);
    static cMatrix4 translation(const cVector3& v);
    static cMatrix4 scale(const cVector3& v);
    static cMatrix4 rotationX(float degrees);
    static cMatrix4 rotationY(float degrees);
    static cMatrix4 rotationZ(float degrees);
    /// `axis` must have unit length.
    static cMatrix4 rotation(const cVector3& axis, float degrees);
    /// Columns right, up, back and origin.
    static cMatrix4 basis(const cVector3& right, const cVector3& up, const cVector3& back,
                          const cVector3& origin);
    /// Flattens points onto the plane n·x + d = 0 along the lines from `light` (a point).
    static cMatrix4 planarShadow(const cVector3& planeNormal, float planeD, const cVector3& light);

    cMatrix4 operator*(const cMatrix4& o) const;
    cVector3 transformPoint(const cVector3& p) const;
    /// Without the translation.
    cVector3 transformDirection(const cVector3& d) const;
    /// Into the space of this matrix, which must be a rotation and a translation.
    cVector3 inverseTransformPoint(const cVector3& p) const;
};
