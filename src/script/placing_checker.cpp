#include "script/placing_checker.h"

#include "core/parse.h"
#include "script/cml_call_text.h"

#include <algorithm>
#include <set>

namespace {
constexpr std::string_view kPlacing[] = {"set_position", "set_direction", "turn", "level", "set_radius"};
/// Of the places from which an object could be used: the part that earlier ones may take before they are said
/// to stand in its way.
constexpr float kShadow = 0.6f;
constexpr float kHeroRadius = 1; ///< his capsule's radius and half its length, as for any object

/// What the lists do that run while an object is made: its own on_set, that of its default action, and those
/// of the actions that they set.
class cMaking {
public:
    /// `made`: the objects before it.
    cMaking(cCmlCheck& check, const cCmlElement& object, const std::set<const cCmlElement*>& made)
        : check_(check), object_(object), made_(made) {}

    void run() {
        perform(object_, object_);
        enter(object_, object_.childAt(check_.childNames.find(object_, kCmlAction,
                                                              object_.getAttribute("default_action"))));
    }

private:
    /// The list of `holder`, carried out by `self`.
    void perform(const cCmlElement& self, const cCmlElement& holder) {
        for (const std::string& piece : splitCmlList(holder.getAttribute("on_set"))) {
            const CmlCallText call(piece);
            const cCmlElement* other = call.prefixed ? check_.findObject(call.object) : &self;
            if (!other) continue;
            const bool places =
                std::find(std::begin(kPlacing), std::end(kPlacing), call.name) != std::end(kPlacing);
            if (other == &object_ && places) {
                warn(holder, piece + ": undone when the level is loaded, since the object is placed as its "
                                     "physics say after this on_set; a timer comes later");
            } else if (call.prefixed && made_.count(other) == 0) {
                warn(holder, piece + ": skipped when the level is loaded, since the object " +
                                 quoted(call.object) + " is not there yet; a timer comes later");
            } else if (call.name == "set_action") {
                enter(*other, other->childAt(check_.childNames.find(self, kCmlAction, call.arg(0))));
            }
        }
    }

    void enter(const cCmlElement& self, const cCmlElement* action) {
        if (!action || action->elementKind != kCmlAction || !entered_.insert(action).second) return;
        perform(self, *action);
    }

    void warn(const cCmlElement& holder, const std::string& message) { check_.warn(holder.line, message); }

    cCmlCheck& check_;
    const cCmlElement& object_;
    const std::set<const cCmlElement*>& made_;
    std::set<const cCmlElement*> entered_;
};

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

/// Places evenly inside a sphere.
std::vector<cVector3> placesIn(const cVector3& centre, float radius) {
    constexpr int kSteps = 6; ///< to each side
    std::vector<cVector3> places;
    for (int x = -kSteps; x <= kSteps; ++x)
        for (int y = -kSteps; y <= kSteps; ++y)
            for (int z = -kSteps; z <= kSteps; ++z)
                if (x * x + y * y + z * z < kSteps * kSteps)
                    places.push_back(centre + cVector3(static_cast<float>(x), static_cast<float>(y),
                                                       static_cast<float>(z)) *
                                                  (radius / kSteps));
    return places;
}

using Shaders = std::vector<const cCmlElement*>;

/// Who of those before it takes its place: the first who does so alone, or else all together; empty when it
/// can be used.
Shaders shadersOf(const std::vector<Standing>& all, const Standing& later) {
    Shaders together;
    const std::vector<cVector3> places = placesIn(later.centre, later.radius);
    std::vector<bool> taken(places.size());
    const auto isEnough = [&](ptrdiff_t count) {
        return static_cast<float>(count) >= kShadow * static_cast<float>(places.size());
    };
    for (const Standing* s = all.data(); s != &later; ++s) {
        if (!((s->centre - later.centre).length() < s->radius + later.radius)) continue;
        ptrdiff_t here = 0;
        for (size_t i = 0; i < places.size(); ++i) {
            if (!((places[i] - s->centre).lengthSq() < s->radius * s->radius)) continue;
            taken[i] = true;
            ++here;
        }
        if (isEnough(here)) return {s->object};
        if (here > 0) together.push_back(s->object);
    }
    return isEnough(std::count(taken.begin(), taken.end(), true)) ? together : Shaders();
}
} // namespace

void checkPlacing(cCmlCheck& check) {
    std::set<const cCmlElement*> made;
    for (int32_t i = 0; i < check.root.childCount(); ++i) {
        const cCmlElement& object = *check.root.childAt(i);
        if (object.elementKind != kCmlObjectElement) continue;
        cMaking(check, object, made).run();
        made.insert(&object);
    }
}

void checkShadows(cCmlCheck& check) {
    const std::vector<Standing> all = standing(check);
    for (const Standing& later : all) {
        if (!later.answers) continue;
        std::string names;
        const Shaders shaders = shadersOf(all, later);
        if (shaders.empty()) continue;
        for (const cCmlElement* e : shaders)
            names += (names.empty() ? "" : " and ") + quoted(e->getAttribute("name"));
        check.warn(later.object->line,
                   "the use key hardly reaches the object " + quoted(later.object->getAttribute("name")) +
                       ": " + names +
                       (shaders.size() > 1 ? " come before it and stand" : " comes before it and stands") +
                       " in the same place");
    }
}
