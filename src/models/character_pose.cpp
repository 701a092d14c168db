#include "models/character_pose.h"

#include "core/name_hash.h"
#include "platform/gl_api.h"
#include "render/mesh_draw.h"
#include "render/shadow_volume.h"

#include <algorithm>
#include <span>

namespace {
constexpr float kMsPerSecond = 1000.0f;

/// True when a one-shot animation has come to its end.
bool advancePart(cPartState& s, const std::vector<cAnimation>& animations, uint32_t now) {
    if (!s.playing) return false;
    int32_t first = 0, end = 1, fps = 0;
    if (s.current >= 0 && s.current < static_cast<int32_t>(animations.size())) {
        const cAnimation& a = animations[static_cast<size_t>(s.current)];
        first = a.firstFrame;
        end = a.endFrame;
        fps = a.fps;
    }
    bool ended = false;
    s.frameB = s.frameA < INT32_MAX ? s.frameA + 1 : s.frameA;
    if (s.frameB >= end) {
        if (s.looping) {
            s.frameB = first;
        } else {
            s.playing = false;
            ended = true;
        }
    }
    // Without a speed the frame time is infinite and t stays 0.
    const float frameTime = kMsPerSecond / static_cast<float>(fps);
    const auto elapsed = static_cast<float>(now - s.lastFrameTick);
    s.t = elapsed / frameTime;
    if (elapsed >= frameTime) {
        s.frameA = s.frameB;
        s.lastFrameTick = now;
    }
    return ended;
}

/// What is posed: a stale fraction, left over from before an animation was set, must not overshoot.
struct Blend {
    Blend(const cPartState& s, bool single)
        : a(s.frameA), b(single ? s.frameA : s.frameB),
          t(single || !(s.t > 0.0f) ? 0.0f : std::min(s.t, 1.0f)) {}
    int32_t a, b;
    float t;
};
} // namespace

struct cCharacterPose::DrawCall {
    enum Kind { kPlain, kCel, kShadow } kind;
    bool singleFrame = false;
    cVector3 light = {}; ///< in the space of the part being drawn
    bool directional = false;
    uint32_t ramp = 0;
};

void cCharacterPose::advance(uint32_t nowTicks, const EndListener& onEnd) {
    if (!model_) return;
    bool ended = false;
    for (const CharacterPart part : {kLowerPart, kUpperPart, kWeaponPart}) {
        const std::vector<cAnimation>& animations = model_->parts[part].animations;
        if (part == kWeaponPart && animations.empty()) continue;
        ended |= advancePart(states_[part], animations, nowTicks);
    }
    if (ended && onEnd) onEnd();
}

bool cCharacterPose::setAnimationByIndex(CharacterPart part, int32_t index) {
    if (!model_ || index < 0) return false;
    const std::vector<cAnimation>& animations = model_->parts[part].animations;
    if (index >= static_cast<int32_t>(animations.size())) return false;
    const cAnimation& a = animations[static_cast<size_t>(index)];
    cPartState& s = states_[part];
    s.current = index;
    s.frameA = a.firstFrame;
    s.nameCode = nameHash(a.name);
    return true;
}

bool cCharacterPose::setAnimation(CharacterPart part, std::string_view name) {
    return model_ && setAnimationByIndex(part, model_->parts[part].findAnimation(name));
}

bool cCharacterPose::setAnimationByHash(CharacterPart part, int32_t nameCode) {
    return model_ && setAnimationByIndex(part, model_->parts[part].findAnimation(nameCode));
}

bool cCharacterPose::setAnimation(std::string_view legs, std::string_view torso) {
    const bool legsSet = setAnimation(kLowerPart, legs);
    return setAnimation(kUpperPart, torso) && legsSet;
}

bool cCharacterPose::setAnimationByHash(int32_t legs, int32_t torso) {
    const bool legsSet = setAnimationByHash(kLowerPart, legs);
    return setAnimationByHash(kUpperPart, torso) && legsSet;
}

void cCharacterPose::setPlaying(bool playing) {
    states_[kLowerPart].playing = states_[kUpperPart].playing = playing;
}

void cCharacterPose::setLooping(bool looping) {
    states_[kLowerPart].looping = states_[kUpperPart].looping = looping;
}

void cCharacterPose::draw(const cMatrix4& root, bool singleFrame) {
    drawFrom(root, {.kind = DrawCall::kPlain, .singleFrame = singleFrame});
}

void cCharacterPose::drawCel(const cVector3& light, bool directional, uint32_t ramp, const cMatrix4& root) {
    drawFrom(root, {.kind = DrawCall::kCel, .light = light, .directional = directional, .ramp = ramp});
}

void cCharacterPose::drawShadowVolume(const cVector3& light, const cMatrix4& root) {
    drawFrom(root, {.kind = DrawCall::kShadow, .light = light});
}

void cCharacterPose::drawFrom(const cMatrix4& root, const DrawCall& call) {
    if (!model_ || !platform::hasGlContext()) return;
    glPushMatrix();
    glMultMatrixf(root.m);
    drawPart(kLowerPart, call);
    glPopMatrix();
}

void cCharacterPose::drawPart(CharacterPart part, const DrawCall& call) {
    const cAnimModel& model = model_->parts[part];
    for (const cAnimMesh& mesh : model.meshes) drawMesh(mesh, states_[part], call);
    const Blend blend(states_[part], call.singleFrame);
    for (size_t k = 0; k < model.attachments.size(); ++k) {
        if (model.attachments[k] == cAnimModel::kNothing) continue;
        const auto child = static_cast<CharacterPart>(model.attachments[k]);
        if (call.kind == DrawCall::kShadow && !headShadow_ && !model_->carriesOnFirstTag(child)) continue;
        const cMatrix4 place = model.tagTransform(static_cast<int32_t>(k), blend.a, blend.b, blend.t);
        DrawCall childCall = call;
        // A direction is turned like a point seen from the tag's origin.
        const cVector3 origin(place.m[12], place.m[13], place.m[14]);
        childCall.light = place.inverseTransformPoint(call.directional ? call.light + origin : call.light);
        glPushMatrix();
        glMultMatrixf(place.m);
        drawPart(child, childCall);
        glPopMatrix();
    }
}

void cCharacterPose::drawMesh(const cAnimMesh& mesh, const cPartState& state, const DrawCall& call) {
    const Blend blend(state, call.singleFrame);
    const size_t count = poseMesh(mesh, blend.a, blend.b, blend.t, positions_, normals_);
    const auto positions = std::span<const cVector3>(positions_).first(count);
    const auto normals = std::span<const cVector3>(normals_).first(count);
    switch (call.kind) {
    case DrawCall::kPlain:
        meshDraw::drawPosed(mesh, positions);
        break;
    case DrawCall::kCel:
        meshDraw::drawCelPosed(mesh, positions, normals, call.light, call.directional, call.ramp);
        break;
    case DrawCall::kShadow:
        shadowVolume::computeLitFaces(mesh, call.light, lit_);
        shadowVolume::draw(mesh, positions, lit_, call.light);
        break;
    }
}
