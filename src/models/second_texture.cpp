// Laying a second texture over level geometry: faces of two models are matched by their corners.
#include "core/log_mgr.h"
#include "models/model.h"

#include <cmath>
#include <unordered_map>

namespace {
/// Corners count as one within 0.001 per axis. Cells are wider, so a point's partners lie in at most eight of
/// them.
constexpr double kCell = 0.01;
constexpr double kReach = 0.002;

/// Faces by the place of their first corner, so that a match is found without trying every face.
class cFaceGrid {
public:
    explicit cFaceGrid(const cModelObject& object) : object_(object) {
        cells_.reserve(object.faces.size());
        for (uint32_t f = 0; f < object.faces.size(); ++f) {
            const cVector3& p = object.positions[object.faces[f][0]];
            cells_[key(cell(p.x), cell(p.y), cell(p.z))].push_back(f);
        }
    }

    /// The first face whose three corners each lie near some corner of the triangle; faceCount when none.
    uint32_t find(const cVector3 (&triangle)[3]) const {
        auto best = static_cast<uint32_t>(object_.faces.size());
        for (const cVector3& p : triangle) {
            for (int corner = 0; corner < 8; ++corner) {
                const auto side = [&](float c, int bit) {
                    return cell(c + (corner & bit ? kReach : -kReach));
                };
                const auto found = cells_.find(key(side(p.x, 1), side(p.y, 2), side(p.z, 4)));
                if (found == cells_.end()) continue;
                for (const uint32_t f : found->second) {
                    if (f >= best) break;
                    if (matches(f, triangle)) best = f;
                }
            }
        }
        return best;
    }

private:
    static double cell(double coordinate) { return std::floor(coordinate / kCell); }
    /// Cells may share a key: every candidate is compared corner by corner.
    static uint64_t key(double x, double y, double z) {
        const std::hash<double> h;
        return (h(x) * 31 + h(y)) * 31 + h(z);
    }
    bool matches(uint32_t f, const cVector3 (&triangle)[3]) const {
        for (const uint32_t i : object_.faces[f]) {
            const cVector3& p = object_.positions[i];
            if (!p.isNear(triangle[0]) && !p.isNear(triangle[1]) && !p.isNear(triangle[2])) return false;
        }
        return true;
    }

    const cModelObject& object_;
    std::unordered_map<uint64_t, std::vector<uint32_t>> cells_;
};

void copyCoordinates(cModelObject& a, const cModelObject& b) {
    a.vectors.clear();
    for (const TexCoord& t : b.texCoords) a.vectors.push_back({t.u, t.v, 0});
    a.faceSecond.assign(a.faces.size(), FaceIndices{});
    if (b.faceTexCoords.size() < b.faces.size()) return;
    const cFaceGrid grid(a);
    for (size_t f = 0; f < b.faces.size(); ++f) {
        const FaceIndices& bf = b.faces[f];
        const cVector3 corners[3] = {b.positions[bf[0]], b.positions[bf[1]], b.positions[bf[2]]};
        const uint32_t match = grid.find(corners);
        if (match >= a.faces.size()) continue;
        for (size_t i = 0; i < 3; ++i) {
            for (size_t j = 0; j < 3; ++j) {
                const uint32_t index = b.faceTexCoords[f][j];
                const bool near = a.positions[a.faces[match][i]].isNear(corners[j]);
                if (near && index < a.vectors.size()) a.faceSecond[match][i] = index;
            }
        }
    }
}
} // namespace

void cModel::applySecondTexture(const cModel& second) {
    for (cModelObject& a : objects) {
        const cModelObject* b = nullptr;
        for (const cModelObject& candidate : second.objects) {
            if (!b && candidate.faces.size() == a.faces.size()) b = &candidate;
        }
        if (!b) {
            cLogMgr::instance().error("Failed to apply second texture");
            continue;
        }
        if (a.texture >= 0) {
            a.mode = kModeTwoTextures;
            a.setSecondTexture(b->texture > 0 ? b->texture : 0);
        } else {
            a.mode = kModeTexture;
            a.texture = b->texture;
        }
        copyCoordinates(a, *b);
    }
}
