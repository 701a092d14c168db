#include "script/placing_checker.h"

#include "core/parse.h"
#include "script/cml_call_text.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr std::string_view kPlacing[] = {"set_position", "set_direction", "turn", "level", "set_radius"};
/// Of the places from which an object could be used: the part that another one may take before it is said to
/// stand in its way.
constexpr float kShadow = 0.6f;
constexpr float kHeroRadius = 1; ///< his capsule's radius and half its length, as for any object

void checkList(cCmlCheck& check, const cCmlElement& object, const cCmlElement& holder) {
    for (const std::string& piece : splitCmlList(holder.getAttribute("on_set"))) {
        const CmlCallText call(piece);
        if (call.prefixed && call.object != object.getAttribute("name")) continue;
        if (std::find(std::begin(kPlacing), std::end(kPlacing), call.name) == std::end(kPlacing)) continue;
        check.warn(holder.line, piece +
                                    ": undone when the level is loaded, since the object is placed as its "
                                    "physics say after this on_set; a timer comes later");
    }
}

/// Of an object that stays as it was placed: whoever's bounding sphere touches `sphere`, uses it.
struct Standing {
    const cCmlElement* object;
    cVector3 centre;
    float radius;
    bool answers; ///< the use key
};

bool answersUse(const cCmlElement& e) {
    for (int32_t i = 0; i < e.childCount(); ++i) {
        const cCmlElement& child = *e.childAt(i);
        if (child.elementKind == kCmlReaction && child.getAttribute("type") == "context") return true;
        if (child.elementKind == kCmlAction && answersUse(child)) return true;
    }
    return false;
}

float boundingRadius(const cCmlElement& physics) {
    const cCmlElement* volume = physics.findChild(kCmlBoundingVolume);
    if (!volume) return toFloat(physics.getAttribute("radius"));
    return (toVector3(volume->getAttribute("end")) - toVector3(volume->getAttribute("start"))).length() / 2 +
           toFloat(volume->getAttribute("radius"));
}

std::vector<Standing> standing(const cCmlCheck& check) {
    std::vector<Standing> all;
    for (int32_t i = 0; i < check.root.childCount(); ++i) {
        const cCmlElement& e = *check.root.childAt(i);
        const cCmlElement *physics = e.findChild(kCmlPhysics), *appearance = e.findChild(kCmlAppearance);
        if (e.elementKind != kCmlObjectElement || check.moved.count(&e) != 0) continue;
        if (!physics || !appearance || !appearance->findChild(kCmlModel)) continue;
        all.push_back({&e, toVector3(physics->getAttribute("position")),
                       boundingRadius(*physics) + kHeroRadius, answersUse(e)});
    }
    return all;
}

/// The part of the sphere `of` that lies in the sphere `in`, 0 ... 1.
float coveredPart(const Standing& of, const Standing& in) {
    const float d = (of.centre - in.centre).length(), r = of.radius, s = in.radius;
    if (!(d < r + s)) return 0;
    if (d <= std::fabs(r - s)) return s >= r ? 1 : s * s * s / (r * r * r);
    const float depth = r + s - d;
    return depth * depth * (d * d + 2 * d * (r + s) - 3 * (r - s) * (r - s)) / (16 * d * r * r * r);
}
} // namespace

void checkPlacing(cCmlCheck& check, const cCmlElement& object) {
    checkList(check, object, object);
    const cCmlElement* action =
        object.findChildWith(kCmlAction, "name", object.getAttribute("default_action"));
    if (action) checkList(check, object, *action);
}

void checkShadows(cCmlCheck& check) {
    const std::vector<Standing> all = standing(check);
    for (auto later = all.begin(); later != all.end(); ++later) {
        if (!later->answers) continue;
        const auto earlier = std::find_if(
            all.begin(), later, [&](const Standing& s) { return coveredPart(*later, s) >= kShadow; });
        if (earlier == later) continue;
        check.warn(later->object->line, "the use key hardly reaches the object " +
                                            quoted(later->object->getAttribute("name")) + ": " +
                                            quoted(earlier->object->getAttribute("name")) +
                                            " comes before it and stands in the same place");
    }
}
