#pragma once
#include "models/character_model.h"

#include <functional>
#include <memory>

/// What one part of one character is playing.
struct cPartState {
    int32_t current = 0;            ///< index into the part's animations
    int32_t frameA = 0, frameB = 0; ///< the frames being blended
    float t = 0;                    ///< fraction from frameA to frameB
    uint32_t lastFrameTick = 0;     ///< when frameA last changed, ms
    bool playing = false;           ///< frames advance
    bool looping = false;           ///< at its end the animation starts again
    int32_t nameCode = 0;           ///< nameHash of the current animation's name
};

/// How one world object's character stands: the shared model and a state for each part. Times in
/// milliseconds.
class cCharacterPose {
public:
    /// Told of the end of a one-shot animation. May not destroy the pose.
    using EndListener = std::function<void()>;

    explicit cCharacterPose(std::shared_ptr<const cCharacterModel> model = nullptr)
        : model_(std::move(model)) {}

    // Each frame.
    /// Moves lower body, upper body and an animated weapon on. The end of one-shot animations is reported at
    /// most once a call, after all parts have moved.
    void advance(uint32_t nowTicks, const EndListener& onEnd = {});
    /// `root` is applied to the current matrix. With `singleFrame` each part shows frameA without blending.
    void draw(const cMatrix4& root, bool singleFrame = false);
    /// `light` in the space of `root`: a position, or a unit direction towards it when `directional`.
    void drawCel(const cVector3& light, bool directional, uint32_t ramp, const cMatrix4& root);
    /// Needs the model's shadow data.
    void drawShadowVolume(const cVector3& light, const cMatrix4& root);

    // Commands. Setting an animation changes the frame and the name, not whether it plays or loops; false,
    // without effect, when the part has none of that name. Names ignore case.
    bool setAnimation(CharacterPart part, std::string_view name);
    bool setAnimationByHash(CharacterPart part, int32_t nameCode);
    bool setAnimationByIndex(CharacterPart part, int32_t index);
    /// Legs and torso together; false when either is missing (the other is set all the same).
    bool setAnimation(std::string_view legs, std::string_view torso);
    bool setAnimationByHash(int32_t legs, int32_t torso);
    void setPlaying(CharacterPart part, bool playing) { states_[part].playing = playing; }
    void setPlaying(bool playing); ///< lower and upper body
    void setLooping(CharacterPart part, bool looping) { states_[part].looping = looping; }
    void setLooping(bool looping); ///< lower and upper body
    /// Whether parts that carry nothing, such as the head, cast a shadow.
    void setHeadShadow(bool on) { headShadow_ = on; }

    // Queries.
    bool isPlaying(CharacterPart part = kLowerPart) const { return states_[part].playing; }
    bool isLooping(CharacterPart part = kLowerPart) const { return states_[part].looping; }
    /// nameHash of the lower body's animation; 0 before the first was set.
    int32_t getCurrentAnimation() const { return states_[kLowerPart].nameCode; }
    const cPartState& getState(CharacterPart part) const { return states_[part]; }
    bool hasHeadShadow() const { return headShadow_; }
    const std::shared_ptr<const cCharacterModel>& getModel() const { return model_; }

private:
    struct DrawCall;
    void drawFrom(const cMatrix4& root, const DrawCall& call);
    void drawPart(CharacterPart part, const DrawCall& call);
    void drawMesh(const cAnimMesh& mesh, const cPartState& state, const DrawCall& call);

    std::shared_ptr<const cCharacterModel> model_;
    cPartState states_[kCharacterParts];
    bool headShadow_ = true;
    // Scratch of the mesh being drawn.
    std::vector<cVector3> positions_, normals_;
    std::vector<uint8_t> lit_;
};
