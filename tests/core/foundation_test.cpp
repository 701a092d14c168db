#include "core/frustum.h"
#include "core/matrix4.h"
#include "core/name_hash.h"

#include <gtest/gtest.h>

TEST(NameHash, FollowsTheDataFormat) {
    EXPECT_EQ(nameHash("ab"), 195);
    EXPECT_EQ(nameHash("ba"), 195) << "the first two characters weigh the same";
    EXPECT_EQ(nameHash(""), 0);
    EXPECT_EQ(nameHash("sounds/hopp"), 5791);
    EXPECT_EQ(nameHash("BOTH_BODYHIT1"), 5791);
    EXPECT_EQ(nameHash("\xA3"), -93) << "characters are signed";
}

TEST(Matrix, RotationsApplyTheAngleNegated) {
    EXPECT_TRUE(cMatrix4::rotationY(-90).transformPoint({1, 0, 0}).isNear({0, 0, -1}));
    EXPECT_TRUE(cMatrix4::rotationX(-90).transformPoint({0, 1, 0}).isNear({0, 0, 1}));
    EXPECT_TRUE(cMatrix4::rotationZ(-90).transformPoint({1, 0, 0}).isNear({0, 1, 0}));
    const cMatrix4 frame = cMatrix4::basis({0, 0, 1}, {0, 1, 0}, {-1, 0, 0}, {5, 6, 7});
    const cVector3 p(1, 2, 3);
    EXPECT_TRUE(frame.inverseTransformPoint(frame.transformPoint(p)).isNear(p));
}

TEST(Frustum, CubesAgainstTheUnitVolume) {
    cFrustum frustum;
    const cMatrix4 one = cMatrix4::identity();
    frustum.update(one.m, one.m);
    EXPECT_EQ(frustum.testCube({0, 0, 0}, 1), cFrustum::kInside);
    EXPECT_EQ(frustum.testCube({0, 0, 0}, 2), cFrustum::kStraddles) << "corners on the planes are outside";
    EXPECT_EQ(frustum.testCube({2, 0, 0}, 2), cFrustum::kOutside) << "nothing but a face on the plane";
    EXPECT_TRUE(frustum.isSphereOutside({2, 0, 0}, 1));
    EXPECT_FALSE(frustum.isSphereOutside({2, 0, 0}, 1.01f));
}

TEST(Frustum, TwoCornersGiveTheAnswerOfEight) {
    cFrustum frustum;
    const cMatrix4 view = cMatrix4::rotationY(33) * cMatrix4::translation({3, -2, 7});
    frustum.update(view.m, cMatrix4::perspective(45, 1.3f, 0.1f, 100).m);
    for (int i = 0; i < 4000; ++i) {
        const cVector3 c(static_cast<float>(i % 20) * 3 - 30, static_cast<float>(i / 20 % 10) * 4 - 20,
                         static_cast<float>(i / 200) * 5 - 50);
        bool outside = false, straddles = false;
        for (int n = 0; n < 6; ++n) {
            int front = 0;
            for (int k = 0; k < 8; ++k) {
                const auto& p = frustum.plane(n);
                const cVector3 q = c + cVector3(k & 1 ? 2.f : -2.f, k & 2 ? 2.f : -2.f, k & 4 ? 2.f : -2.f);
                front += p.a * q.x + p.b * q.y + p.c * q.z + p.d > 0;
            }
            outside |= front == 0;
            straddles |= front < 8;
        }
        ASSERT_EQ(frustum.testCube(c, 4), outside ? 1 : straddles ? 2 : 0) << i;
    }
}
