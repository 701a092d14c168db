#include "game/camera.h"

#include "core/config_mgr.h"
#include "game/physics_world.h"
#include "platform/gl_api.h"
#include "ui/bindings.h"

#include <utility>

namespace {
constexpr float kOrbitDegrees = 25; ///< per unit of look input
constexpr cVector3 kUp(0, 1, 0);

float setting(const char* key) {
    return cConfigMgr::instance().getFloat(key, "camera");
}
} // namespace

void cCamera::basis(cVector3& eye, cVector3& direction, cVector3& up, cVector3& right) {
    if (!target_) {
        eye = offset_;
        direction = view_;
    } else if (firstPerson_) {
        eye = target_->getPosition() + offset_;
        direction = (target_->getDirection() + view_).normalized();
    } else {
        eye = target_->getPosition() + offset_ + view_;
        direction = (-view_).normalized();
    }
    // A view without direction, or one straight up or down, keeps the last frame.
    if (direction.lengthSq() == 0) direction = forward_.lengthSq() > 0 ? forward_ : cVector3(0, 0, -1);
    right = direction.cross(kUp).normalized();
    if (right.lengthSq() == 0) right = right_.lengthSq() > 0 ? right_ : cVector3(1, 0, 0);
    up = right.cross(direction).normalized();
    forward_ = direction;
    right_ = right;
}

void cCamera::computeFrame(cVector3& direction, cVector3& up, cVector3& right) {
    basis(eye_, direction, up, right);
    if (!target_ || firstPerson_) return;
    const cVector3 lookAt = target_->getPosition() + offset_;
    eye_ = lookAt + (eye_ - lookAt) * cPhysicsWorld::instance().octree().trace(lookAt, eye_);
}

void cCamera::loadMatrix(const cVector3& direction, const cVector3& up, const cVector3& right) const {
    if (!platform::hasGlContext()) return;
    const cVector3 back = -direction;
    const float rows[16] = {right.x, up.x, back.x, 0, right.y, up.y, back.y, 0,
                            right.z, up.z, back.z, 0, 0,       0,    0,      1};
    glMultMatrixf(rows);
    glTranslatef(-eye_.x, -eye_.y, -eye_.z);
}

void cCamera::apply() {
    cVector3 direction, up, right;
    computeFrame(direction, up, right);
    loadMatrix(direction, up, right);
}

void cCamera::place() {
    cVector3 direction, up, right;
    computeFrame(direction, up, right);
}

void cCamera::applyLookAt(const cVector3& position, const cVector3& lookAt, const cVector3& up) {
    eye_ = position;
    cVector3 direction = (lookAt - position).normalized();
    if (direction.lengthSq() == 0) direction = {0, 0, -1};
    cVector3 right = direction.cross(up).normalized();
    if (right.lengthSq() == 0) right = direction.cross(kUp).normalized();
    if (right.lengthSq() == 0) right = {1, 0, 0};
    loadMatrix(direction, right.cross(direction), right);
}

void cCamera::rotate(float dx, float dy) {
    if (!target_) {
        view_ += view_.cross(kUp).normalized() * dx;
        view_.y += dy;
        view_ = view_.normalized();
    } else if (firstPerson_) {
        view_.y += dy;
    } else {
        // The matrix helper negates its angles: passing the positive angle turns right-handedly by −25 · d.
        const cVector3 side = forward_.cross(kUp).normalized();
        const cVector3& axis = side.lengthSq() > 0 ? side : right_; // straight up or down there is no side
        if (axis.lengthSq() > 0)
            view_ = cMatrix4::rotation(axis, kOrbitDegrees * dy).transformDirection(view_);
        view_ = cMatrix4::rotationY(kOrbitDegrees * dx).transformDirection(view_);
    }
}

void cCamera::freeMove(cBindings& bindings) {
    const float step = setting("FREE_SPEED");
    const cVector3 side = view_.cross(kUp);
    const auto pressed = [&](int command) {
        return bindings.isCommandTriggered(command + kFirstPersonCommands);
    };
    if (pressed(CMD_FORWARD)) offset_ += view_ * step;
    if (pressed(CMD_BACK)) offset_ -= view_ * step;
    if (pressed(CMD_RIGHT)) offset_ += side * step;
    if (pressed(CMD_LEFT)) offset_ -= side * step;
}

void cCamera::zoom(float delta) {
    if (!target_ || firstPerson_) return;
    float d = view_.length() + delta;
    const float farthest = setting("MAX_DISTANCE"), nearest = setting("MIN_DISTANCE");
    if (d > farthest) d = farthest;
    if (d < nearest) d = nearest;
    view_ = view_.normalized() * d;
}

bool cCamera::toggleView() {
    std::swap(view_, stored_);
    firstPerson_ = !firstPerson_;
    return firstPerson_;
}

void cCamera::setFirstPerson(bool flag) {
    if (flag != firstPerson_) toggleView();
}

void cCamera::detach() {
    if (!target_) return;
    cVector3 direction, up, right;
    computeFrame(direction, up, right);
    offset_ = eye_;
    view_ = direction;
    target_ = nullptr;
}

void cCamera::forget(const cObject* object) {
    if (target_ == object) detach();
}
