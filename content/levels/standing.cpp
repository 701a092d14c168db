#include "levels/standing.h"

#include "core/parse.h"
#include "data/xml_node.h"
#include "levels/parts.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace levels {
namespace {
/// Half width and half length of what is square, in parts of the volume's radius; round things have none.
struct Form {
    std::string_view model;
    float halfX = 0, halfZ = 0;
};
constexpr Form kForms[] = {{"barrel"},
                           {"beacon"},
                           {"boat", 0.8f, 1.0f},
                           {"chest", 1.1f, 0.75f},
                           {"crate", 0.9f, 0.9f},
                           {"lantern"},
                           {"lever"},
                           {"pine"},
                           {"pot"},
                           {"powder"},
                           {"signpost"},
                           {"stool"},
                           {"telescope"},
                           {"tree"},
                           {"well"}};
/// What is higher than this nobody stands on. It reaches over his head: an upper edge, which faces the sky,
/// holds whoever meets it from the side.
constexpr float kPost = 1.5f, kOverHead = 2.8f;
constexpr int kSides = 16; // fewer, and one sticks at the corners more often
/// A post's, which narrows a little towards its top: both let more of those slide off who run against it.
constexpr int kPostSides = 32;
constexpr float kPostTop = 0.8f; ///< of its radius

const cXmlNode* child(const cXmlNode& node, std::string_view name) {
    for (const auto& c : node.children)
        if (c->name == name) return c.get();
    return nullptr;
}

const Form* formOf(const cXmlNode& object) {
    const cXmlNode* appearance = child(object, "appearance");
    const cXmlNode* model = appearance ? child(*appearance, "model") : nullptr;
    if (!model) return nullptr;
    for (const Form& form : kForms)
        if (model->getAttribute("file") == "s_mdl\\" + std::string(form.model) + ".cpm") return &form;
    return nullptr;
}

Mesh solid(const Form& form, float radius, float low, float high) {
    const bool isPost = high - low > kPost;
    if (isPost) high = std::max(high, low + kOverHead);
    if (form.halfX == 0) {
        const float top = isPost ? radius * kPostTop : radius;
        return lathe({{radius, low}, {top, high}, {0, high}}, isPost ? kPostSides : kSides);
    }
    const float x = form.halfX * radius, z = form.halfZ * radius;
    return box({-x, low, -z}, {x, high, z}, 0.5f, kTop | kWalls);
}
} // namespace

void addStanding(Scenery& s, Output& out, const std::string& document) {
    cXmlNode root;
    const platform::Bytes* bytes = out.source(document);
    if (!bytes || root.parse(bytes->data(), bytes->size()) != 0) {
        out.problem(document + " cannot be read");
        return;
    }
    for (const auto& object : root.children) {
        const Form* form = formOf(*object);
        const cXmlNode* physics = form ? child(*object, "physics") : nullptr;
        const cXmlNode* volume = physics ? child(*physics, "boundingvolume") : nullptr;
        if (!volume || volume->getAttribute("solid") != "0") continue;
        const cVector3 start = toVector3(volume->getAttribute("start")),
                       end = toVector3(volume->getAttribute("end")),
                       facing = toVector3(physics->getAttribute("direction"));
        const float radius = toFloat(volume->getAttribute("radius"));
        const float turn = std::atan2(-facing.x, -facing.z) * 57.29578f;
        const float low = std::min(start.y, end.y) - radius, high = std::max(start.y, end.y) + radius;
        s.add(
            parts::kPlanks,
            solid(*form, radius, low, high).turned(turn).moved(toVector3(physics->getAttribute("position"))),
            Scenery::kSolid);
    }
}
} // namespace levels
