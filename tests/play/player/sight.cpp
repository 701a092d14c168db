#include "play/player/sight.h"

#include "core/geometry.h"
#include "game/projectile.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace eyes {
namespace {
constexpr float kNear = 20;                 ///< beyond that things hide too little to matter
constexpr float kLeast = 0.98f;             ///< of the way to a point that is seen
constexpr size_t kCorners = 2;              ///< of a mesh that are looked for in a frame
constexpr size_t kScatter = 7919;           ///< a prime: any corner's turn comes
constexpr float kHead = 0.6f, kFeet = 0.9f; ///< above and below somebody's middle
constexpr float kParallel = 1e-6f;          ///< to a face, as a determinant

std::pair<cVector3, cVector3> boundsOf(const cModel& model) {
    cVector3 low(1e9f, 1e9f, 1e9f), high = -low;
    for (const cModelObject& object : model.objects)
        for (const cVector3& p : object.positions) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
    return {low, high};
}

/// Whether the line from `a` over `way` passes the box before `share` of it.
bool passes(const cVector3& a, const cVector3& way, const cVector3& low, const cVector3& high, float share) {
    float from = 0, to = share;
    const std::array<std::array<float, 4>, 3> axes{
        {{a.x, way.x, low.x, high.x}, {a.y, way.y, low.y, high.y}, {a.z, way.z, low.z, high.z}}};
    for (const auto& [start, step, least, most] : axes) {
        const float one = (least - start) / step, other = (most - start) / step;
        if (std::isnan(one) || std::isnan(other)) continue;
        from = std::max(from, std::min(one, other));
        to = std::min(to, std::max(one, other));
    }
    return from <= to;
}

/// Möller and Trumbore: where the line meets the triangle, else 2.
float meets(const cVector3& start, const cVector3& way, const cVector3& a, const cVector3& b,
            const cVector3& c) {
    const cVector3 one = b - a, other = c - a, p = way.cross(other);
    const float det = one.dot(p);
    if (std::fabs(det) < kParallel) return 2;
    const cVector3 from = start - a, q = from.cross(one);
    const float u = from.dot(p) / det, v = way.dot(q) / det;
    if (u < 0 || v < 0 || u + v > 1) return 2;
    const float t = other.dot(q) / det;
    return t < 0 ? 2 : t;
}
} // namespace

void cSight::lookFrom(const cVector3& eye) {
    eye_ = eye;
    ++frame_;
    meshes_.clear();
    cObjectMgr& objects = cObjectMgr::instance();
    for (size_t i = 1; i < objects.count(); ++i) {
        const cObject* object = objects.get(i);
        if (object->getVisualKind() != cObject::kStatic ||
            object->getController()->kind() == cController::kProjectile)
            continue;
        const auto* thing = static_cast<const cStaticObject*>(object);
        const cModel* model = thing->getModel();
        if (!model || (object->getPosition() - eye).length() > kNear + object->boundingRadius()) continue;
        const auto [row, fresh] = bounds_.try_emplace(model);
        if (fresh) row->second = boundsOf(*model);
        meshes_.push_back({thing, row->second});
    }
}

cSight::Seen cSight::look(const cVector3& from, const cVector3& to, const cObject* through) const {
    Seen seen{cWorld::instance().scenery.trace(from, to)};
    for (const Mesh& mesh : meshes_) {
        if (mesh.object == through) continue;
        const cVector3 start = mesh.object->getTransform().inverseTransformPoint(from);
        const cVector3 way = mesh.object->getTransform().inverseTransformPoint(to) - start;
        if (!passes(start, way, mesh.bounds.first, mesh.bounds.second, seen.share)) continue;
        for (const cModelObject& part : mesh.object->getModel()->objects)
            for (const FaceIndices& f : part.faces) {
                const float share =
                    meets(start, way, part.positions[f[0]], part.positions[f[1]], part.positions[f[2]]);
                if (share < seen.share) seen = {share, mesh.object};
            }
    }
    return seen;
}

bool cSight::reaches(const cVector3& point, const cObject& object) const {
    return look(eye_, point, &object).share >= kLeast;
}

bool cSight::sees(const cObject& object) const {
    if (reaches(object.getPosition(), object)) return true;
    if (object.getVisualKind() == cObject::kAnimated)
        return reaches(object.getPosition() + cVector3(0, kHead, 0), object) ||
               reaches(object.getPosition() - cVector3(0, kFeet, 0), object);
    const cModel* model = object.getVisualKind() == cObject::kStatic
                              ? static_cast<const cStaticObject&>(object).getModel()
                              : nullptr;
    for (size_t i = 0; model && !model->objects.empty() && i < kCorners; ++i) {
        const size_t glance = frame_ * kCorners + i;
        const cModelObject& part = model->objects[glance % model->objects.size()];
        if (part.positions.empty()) continue;
        const cVector3& corner = part.positions[glance * kScatter % part.positions.size()];
        if (reaches(object.getTransform().transformPoint(corner), object)) return true;
    }
    return false;
}
} // namespace eyes
