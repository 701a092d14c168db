#include "world/model_objects.h"

#include "core/frustum.h"
#include "core/log_mgr.h"
#include "platform/gl_api.h"
#include "render/mesh_draw.h"
#include "render/shadow_volume.h"

namespace {
constexpr float kNearSq = 625; ///< 25 units: nearer objects are cel-shaded and cast shadows

bool isNear(const cVector3& eye, const cVector3& position) {
    return (position - eye).lengthSq() < kNearSq;
}

/// Applies a matrix for as long as it lives.
class MatrixScope {
public:
    explicit MatrixScope(const cMatrix4& m) {
        if (!platform::hasGlContext()) return;
        glPushMatrix();
        glMultMatrixf(m.m);
    }
    ~MatrixScope() {
        if (platform::hasGlContext()) glPopMatrix();
    }
    MatrixScope(const MatrixScope&) = delete;
    MatrixScope& operator=(const MatrixScope&) = delete;
};
} // namespace

void cStaticObject::draw(const ViewInfo& view) {
    drawnNear_ = false;
    if (!model_ || cFrustum::instance().isSphereOutside(position_, boundingRadius_)) return;
    const MatrixScope scope(transform_);
    if (!isNear(view.eye, position_)) {
        meshDraw::draw(model_->objects);
        return;
    }
    lightInModel_ = transform_.inverseTransformPoint(view.light);
    const bool recompute = !shaded_ || !(lightInModel_ == shadedFor_);
    if (recompute) shadowDirty_ = true; // the shadow pass comes before: the next one is for this light
    meshDraw::drawCel(model_->objects, lightInModel_, false, view.celRamp, recompute);
    shadedFor_ = lightInModel_;
    shaded_ = true;
    drawnNear_ = true;
}

void cStaticObject::drawShadow(const cVector3&) {
    const bool flies = controller_ && controller_->kind() == cController::kProjectile;
    if (!drawnNear_ || !model_ || flies) return;
    if (shadowDirty_) {
        shadowVolume::computeLitFaces(model_->objects, lightInModel_);
        shadowDirty_ = false;
    }
    const MatrixScope scope(transform_);
    shadowVolume::draw(model_->objects, lightInModel_);
}

void cStaticObject::releaseModel() {
    if (store_ && model_) store_->release(model_);
    model_ = nullptr;
}

void cStaticObject::setModel(cModel* model) {
    if (model_) cLogMgr::instance().error("Model released from cStaticObject without being freed, OK?");
    model_ = model;
    shadowDirty_ = true;
    shaded_ = false;
}

void cAnimatedObject::draw(const ViewInfo& view) {
    drawnNear_ = false;
    if (!pose_.getModel() || cFrustum::instance().isSphereOutside(position_, boundingRadius_)) return;
    if (!isNear(view.eye, position_)) {
        pose_.draw(transform_);
        return;
    }
    lightInModel_ = transform_.inverseTransformPoint(view.light);
    pose_.drawCel(lightInModel_, false, view.celRamp, transform_);
    drawnNear_ = true;
}

void cAnimatedObject::drawShadow(const cVector3&) {
    if (drawnNear_) pose_.drawShadowVolume(lightInModel_, transform_);
}

void cAnimatedObject::releaseModel() {
    std::shared_ptr<const cCharacterModel> model = pose_.getModel();
    pose_ = cCharacterPose();
    if (store_) store_->release(model);
}

void cAnimatedObject::advance(uint32_t nowTicks) {
    cController* controller = controller_.get();
    const bool scripted = controller && controller->kind() == cController::kCmlObject;
    pose_.advance(nowTicks, [=] {
        if (scripted) controller->onAnimationEnd();
    });
}
