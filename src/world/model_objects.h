#pragma once
#include "models/character_pose.h"
#include "world/model_store.h"
#include "world/object.h"

/// A world object with a static mesh, which belongs to a store.
class cStaticObject : public cObject {
public:
    cStaticObject(cModel* model, cStaticModelStore* store) : cObject(kStatic), store_(store), model_(model) {}

    void drawShadow(const cVector3& light) override;
    void draw(const ViewInfo& view) override;
    void releaseModel() override;
    /// A model that is still held is dropped, with a row in the log.
    void setModel(cModel* model);
    cModel* getModel() const { return model_; }

private:
    cStaticModelStore* store_; ///< null for a model that is only borrowed
    cModel* model_;
    cVector3 shadedFor_; ///< light in model space that the shade array was made for
    bool shaded_ = false;
};

/// A world object with an animated character: shared geometry, a pose of its own.
class cAnimatedObject : public cObject {
public:
    cAnimatedObject(std::shared_ptr<const cCharacterModel> model, cAnimatedModelStore* store)
        : cObject(kAnimated), pose_(std::move(model)), store_(store) {}

    void drawShadow(const cVector3& light) override;
    void draw(const ViewInfo& view) override;
    void releaseModel() override;
    /// One animation step; the end of a one-shot animation is reported to a scripted controller.
    void advance(uint32_t nowTicks);
    cCharacterPose& pose() { return pose_; }

private:
    cCharacterPose pose_;
    cAnimatedModelStore* store_;
};
