#pragma once
#include "world/object.h"

class cBindings;

/// The one camera: orbiting the followed object, at its head, or flying free. Distances in world units.
class cCamera : public cObject {
public:
    cCamera() : cObject(kCamera) {}

    // Per frame.
    void apply();                       ///< loads the view into the modelview matrix
    void place();                       ///< the same without OpenGL
    void freeMove(cBindings& bindings); ///< keyboard flight of the detached camera
    void rotate(float dx, float dy);    ///< look input, scaled by the sensitivity
    void zoom(float delta);             ///< third person only
    /// A view set from outside (cinematics): loads it and stores the eye.
    void applyLookAt(const cVector3& position, const cVector3& lookAt, const cVector3& up);

    bool toggleView(); ///< returns the new first-person flag
    void setFirstPerson(bool flag);
    void detach();
    void setOffset(const cVector3& v) { offset_ = v; }
    void setView(const cVector3& v) { view_ = v; }
    void setStored(const cVector3& v) { stored_ = v; }
    void setTarget(cObject* target) { target_ = target; }
    void forget(const cObject* object);

    /// Camera frame before walls are considered; stores forward and right.
    void basis(cVector3& eye, cVector3& direction, cVector3& up, cVector3& right);
    const cVector3& getForward() const { return forward_; }
    const cVector3& getRight() const { return right_; }
    const cVector3& getEye() const { return eye_; }
    const cVector3& getOffset() const { return offset_; }
    const cVector3& getView() const { return view_; }
    cObject* getTarget() const { return target_; } ///< null when detached
    bool isFirstPerson() const { return firstPerson_; }

private:
    void computeFrame(cVector3& direction, cVector3& up, cVector3& right);
    void loadMatrix(const cVector3& direction, const cVector3& up, const cVector3& right) const;

    /// Following: look-at point (third person) or eye (first person) relative to the object. Detached: the
    /// eye.
    cVector3 offset_;
    cVector3 stored_; ///< `view_` of the other mode
    /// Third person: eye relative to the look-at point. First person: added to the object's direction
    /// (pitch). Detached: viewing direction.
    cVector3 view_;
    cVector3 forward_, right_, eye_;
    cObject* target_ = nullptr;
    bool firstPerson_ = false;
};
