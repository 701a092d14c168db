#include "forge/preview.h"

#include "forge/canvas.h"
#include "forge/noise.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <mutex>

namespace forge {
namespace {
constexpr float kHalfDegree = 0.00872665f; ///< radians

struct Shot {
    PreviewShot view;
    Parts parts;
};
std::vector<Shot>& shots() {
    static std::vector<Shot> all;
    return all;
}

/// A made TGA, read back only as far as our own writer goes.
struct Texture {
    const platform::Bytes* bytes = nullptr;
    int width = 0, height = 0, step = 0;

    Texture(const Output& out, const std::string& name) {
        const auto at = out.files().find(dataName(name));
        if (at == out.files().end()) return;
        bytes = &at->second;
        width = (*bytes)[12] + 256 * (*bytes)[13];
        height = (*bytes)[14] + 256 * (*bytes)[15];
        step = (*bytes)[16] / 8;
    }
    Colour sample(float u, float v) const {
        const auto wrap = [](float t, int n) {
            const int i = static_cast<int>(std::floor((t - std::floor(t)) * static_cast<float>(n)));
            return std::clamp(i, 0, n - 1);
        };
        const size_t at = 18 + static_cast<size_t>((wrap(1 - v, height) * width + wrap(u, width)) * step);
        const auto value = [&](size_t k) { return static_cast<float>((*bytes)[at + k]) / 255; };
        return {value(2), value(1), value(0), step == 4 ? value(3) : 1};
    }
};

struct Corner {
    cVector3 screen; ///< right, up and ahead of the eye; then x and y in pixels
    float u, v;
};

class Rasteriser {
public:
    explicit Rasteriser(const PreviewShot& view)
        : canvas(view.width, view.height, rgb(0x9cc4e4)),
          depth_(static_cast<size_t>(view.width * view.height), 1e9f), view_(view) {
        ahead_ = (view.target - view.eye).normalized();
        right_ = ahead_.cross({0, 1, 0}).normalized();
        up_ = right_.cross(ahead_);
        scale_ = static_cast<float>(view.height) / 2 / std::tan(view.fieldOfView * kHalfDegree);
    }

    void draw(const Part& part, const Texture& texture) {
        for (const FaceIndices& f : part.mesh.faces) {
            const cVector3& a = part.mesh.positions[f[0]];
            const cVector3 n =
                (part.mesh.positions[f[1]] - a).cross(part.mesh.positions[f[2]] - a).normalized();
            if (n.dot(view_.eye - a) <= 0) continue;
            const float light =
                0.55f + 0.45f * std::max(0.0f, n.dot(cVector3(0.5f, 0.8f, -0.35f).normalized()));
            const std::vector<Corner> corners = clipped(part.mesh, f);
            for (size_t k = 2; k < corners.size(); ++k) {
                const Corner c[3] = {project(corners[0]), project(corners[k - 1]), project(corners[k])};
                triangle(c, part, texture, light);
            }
        }
    }
    Canvas canvas;

private:
    /// The face in the eye's space, without what lies behind the near plane.
    std::vector<Corner> clipped(const Mesh& mesh, const FaceIndices& f) const {
        constexpr float kNear = 0.1f;
        std::vector<Corner> all, kept;
        for (uint32_t i : f) {
            const cVector3 d = mesh.positions[i] - view_.eye;
            all.push_back(
                {{d.dot(right_), d.dot(up_), d.dot(ahead_)}, mesh.texCoords[i].u, mesh.texCoords[i].v});
        }
        for (size_t i = 0; i < all.size(); ++i) {
            const Corner &a = all[i], &b = all[(i + 1) % all.size()];
            if (a.screen.z >= kNear) kept.push_back(a);
            if ((a.screen.z >= kNear) == (b.screen.z >= kNear)) continue;
            const float t = (kNear - a.screen.z) / (b.screen.z - a.screen.z);
            kept.push_back({lerp(a.screen, b.screen, t), mix(a.u, b.u, t), mix(a.v, b.v, t)});
        }
        return kept;
    }

    Corner project(Corner c) const {
        c.screen.x = static_cast<float>(view_.width) / 2 + c.screen.x / c.screen.z * scale_;
        c.screen.y = static_cast<float>(view_.height) / 2 - c.screen.y / c.screen.z * scale_;
        return c;
    }

    void triangle(const Corner* c, const Part& part, const Texture& texture, float light) {
        const cVector3 &a = c[0].screen, &b = c[1].screen, &d = c[2].screen;
        const float area = (b.x - a.x) * (d.y - a.y) - (d.x - a.x) * (b.y - a.y);
        if (std::fabs(area) < 1e-6f) return;
        const int x0 = std::max(0, static_cast<int>(std::min({a.x, b.x, d.x})));
        const int x1 = std::min(view_.width - 1, static_cast<int>(std::max({a.x, b.x, d.x})) + 1);
        const int y0 = std::max(0, static_cast<int>(std::min({a.y, b.y, d.y})));
        const int y1 = std::min(view_.height - 1, static_cast<int>(std::max({a.y, b.y, d.y})) + 1);
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) {
                const float px = static_cast<float>(x) + 0.5f, py = static_cast<float>(y) + 0.5f;
                const float wb = ((px - a.x) * (d.y - a.y) - (d.x - a.x) * (py - a.y)) / area;
                const float wd = ((b.x - a.x) * (py - a.y) - (px - a.x) * (b.y - a.y)) / area;
                if (wb < 0 || wd < 0 || wb + wd > 1) continue;
                const float ia = (1 - wb - wd) / a.z, ib = wb / b.z, id = wd / d.z, z = 1 / (ia + ib + id);
                float& nearest = depth_[static_cast<size_t>(y * view_.width + x)];
                if (z >= nearest) continue;
                Colour colour{static_cast<float>(part.colour.r) / 255,
                              static_cast<float>(part.colour.g) / 255,
                              static_cast<float>(part.colour.b) / 255, 1};
                if (texture.bytes)
                    colour = texture.sample((c[0].u * ia + c[1].u * ib + c[2].u * id) * z,
                                            (c[0].v * ia + c[1].v * ib + c[2].v * id) * z);
                if (colour.a > 0.9f) nearest = z;
                canvas.over(x, y, shaded(colour, light), 1);
            }
    }

    std::vector<float> depth_;
    const PreviewShot& view_;
    cVector3 ahead_, right_, up_;
    float scale_;
};
} // namespace

void addPreview(const PreviewShot& shot, Parts parts) {
    static std::mutex mutex; // recipes run side by side
    const std::lock_guard lock(mutex);
    shots().push_back({shot, std::move(parts)});
}

bool writePreviews(const Output& out, const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    for (const Shot& shot : shots()) {
        Rasteriser rasteriser(shot.view);
        for (const Part& part : shot.parts) rasteriser.draw(part, Texture(out, part.texture));
        const platform::Bytes bytes = rasteriser.canvas.tga(24);
        std::ofstream file(std::filesystem::path(directory) / (shot.view.name + ".tga"), std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) return false;
    }
    return true;
}
} // namespace forge
