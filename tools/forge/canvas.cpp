#include "forge/canvas.h"

#include "data/binary_reader.h"
#include "forge/noise.h"

#include <algorithm>
#include <cmath>

namespace forge {
Colour rgb(unsigned hex, float alpha) {
    return {static_cast<float>(hex >> 16 & 255u) / 255, static_cast<float>(hex >> 8 & 255u) / 255,
            static_cast<float>(hex & 255u) / 255, alpha};
}

Colour mix(const Colour& a, const Colour& b, float t) {
    return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t), mix(a.a, b.a, t)};
}

Colour shaded(const Colour& c, float factor) {
    return {clamp01(c.r * factor), clamp01(c.g * factor), clamp01(c.b * factor), c.a};
}

static float segmentDistance(float px, float py, float x0, float y0, float x1, float y1) {
    const float dx = x1 - x0, dy = y1 - y0, lengthSq = dx * dx + dy * dy;
    const float t = lengthSq > 0 ? clamp01(((px - x0) * dx + (py - y0) * dy) / lengthSq) : 0.0f;
    return std::hypot(px - x0 - t * dx, py - y0 - t * dy);
}

Shape disc(float x, float y, float radius) {
    return {[=](float px, float py) { return std::hypot(px - x, py - y) - radius; }, x - radius, y - radius,
            x + radius, y + radius};
}

Shape ellipse(float x, float y, float rx, float ry) {
    // First-order distance: value over gradient length.
    const auto distance = [=](float px, float py) {
        const float u = (px - x) / rx, v = (py - y) / ry, k = std::hypot(u, v);
        if (k < 1e-4f) return -std::min(rx, ry);
        const float gradient = std::hypot(u / rx, v / ry) / k;
        return (k - 1) / gradient;
    };
    return {distance, x - rx, y - ry, x + rx, y + ry};
}

Shape rectangle(float left, float top, float width, float height, float cornerRadius) {
    const float cx = left + width / 2, cy = top + height / 2;
    const float hx = width / 2 - cornerRadius, hy = height / 2 - cornerRadius;
    const auto distance = [=](float px, float py) {
        const float qx = std::fabs(px - cx) - hx, qy = std::fabs(py - cy) - hy;
        return std::hypot(std::max(qx, 0.0f), std::max(qy, 0.0f)) + std::min(std::max(qx, qy), 0.0f) -
               cornerRadius;
    };
    return {distance, left, top, left + width, top + height};
}

Shape stroke(float x0, float y0, float x1, float y1, float thickness) {
    return polyline({{x0, y0}, {x1, y1}}, thickness);
}

static Shape boundsOf(const std::vector<std::pair<float, float>>& points, float margin) {
    Shape s{{}, 1e9f, 1e9f, -1e9f, -1e9f};
    for (const auto& [x, y] : points) {
        s.left = std::min(s.left, x - margin);
        s.top = std::min(s.top, y - margin);
        s.right = std::max(s.right, x + margin);
        s.bottom = std::max(s.bottom, y + margin);
    }
    return s;
}

Shape polyline(const std::vector<std::pair<float, float>>& points, float thickness) {
    Shape s = boundsOf(points, thickness / 2);
    s.distance = [points, thickness](float px, float py) {
        float best = 1e9f;
        for (size_t i = 0; i + 1 < points.size(); ++i)
            best = std::min(best, segmentDistance(px, py, points[i].first, points[i].second,
                                                  points[i + 1].first, points[i + 1].second));
        if (points.size() == 1) best = std::hypot(px - points[0].first, py - points[0].second);
        return best - thickness / 2;
    };
    return s;
}

Shape polygon(const std::vector<std::pair<float, float>>& points) {
    Shape s = boundsOf(points, 0);
    s.distance = [points](float px, float py) {
        float best = 1e9f;
        bool inside = false;
        for (size_t i = 0, j = points.size() - 1; i < points.size(); j = i++) {
            const auto [xi, yi] = points[i];
            const auto [xj, yj] = points[j];
            best = std::min(best, segmentDistance(px, py, xj, yj, xi, yi));
            if ((yi > py) != (yj > py) && px < (xj - xi) * (py - yi) / (yj - yi) + xi) inside = !inside;
        }
        return inside ? -best : best;
    };
    return s;
}

Shape outline(const Shape& shape, float thickness) {
    const float h = thickness / 2;
    return {[=](float x, float y) { return std::fabs(shape.distance(x, y)) - h; }, shape.left - h,
            shape.top - h, shape.right + h, shape.bottom + h};
}

Shape grown(const Shape& shape, float by) {
    return {[=](float x, float y) { return shape.distance(x, y) - by; }, shape.left - by, shape.top - by,
            shape.right + by, shape.bottom + by};
}

Shape minus(const Shape& a, const Shape& b) {
    return {[=](float x, float y) { return std::max(a.distance(x, y), -b.distance(x, y)); }, a.left, a.top,
            a.right, a.bottom};
}

Shape both(const Shape& a, const Shape& b) {
    return {[=](float x, float y) { return std::max(a.distance(x, y), b.distance(x, y)); },
            std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

Canvas::Canvas(int width, int height, Colour background)
    : width_(width), height_(height), pixels_(static_cast<size_t>(width * height), background) {}

void Canvas::over(int x, int y, const Colour& colour, float coverage) {
    const float a = colour.a * coverage;
    if (a <= 0) return;
    Colour& p = at(x, y);
    const float result = a + p.a * (1 - a);
    const float t = a / result;
    p = {mix(p.r, colour.r, t), mix(p.g, colour.g, t), mix(p.b, colour.b, t), result};
}

void Canvas::fill(const Shape& shape, const Colour& colour) {
    fill(shape, [&](float, float) { return colour; });
}

void Canvas::fill(const Shape& shape, const Paint& paint) {
    const int x0 = std::max(0, static_cast<int>(std::floor(shape.left - 1)));
    const int y0 = std::max(0, static_cast<int>(std::floor(shape.top - 1)));
    const int x1 = std::min(width_, static_cast<int>(std::ceil(shape.right + 1)));
    const int y1 = std::min(height_, static_cast<int>(std::ceil(shape.bottom + 1)));
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) {
            const float px = static_cast<float>(x) + 0.5f, py = static_cast<float>(y) + 0.5f;
            const float coverage = clamp01(0.5f - shape.distance(px, py));
            if (coverage > 0) over(x, y, paint(px, py), coverage);
        }
}

void Canvas::cover(const Paint& paint) {
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x)
            at(x, y) = paint(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
}

void Canvas::glow(const Shape& shape, const Colour& colour, float softness) {
    Shape wide = grown(shape, softness);
    wide.distance = [](float, float) { return -1.0f; };
    fill(wide, [&](float x, float y) {
        const float t = clamp01(1 - std::max(0.0f, shape.distance(x, y)) / softness);
        return Colour{colour.r, colour.g, colour.b, colour.a * t * t};
    });
}

static uint8_t byteOf(float v) {
    return static_cast<uint8_t>(std::lround(clamp01(v) * 255));
}

platform::Bytes Canvas::tga(int bitsPerPixel) const {
    cBinaryWriter out;
    const uint8_t start[12] = {0, 0, 2};
    out.raw(start, sizeof start);
    out.u16(static_cast<uint16_t>(width_));
    out.u16(static_cast<uint16_t>(height_));
    out.u8(static_cast<uint8_t>(bitsPerPixel));
    // Top row first and 8 alpha bits, said in the descriptor too, so that picture viewers show it upright.
    out.u8(bitsPerPixel == 32 ? 0x28 : 0x20);
    for (const Colour& p : pixels_) {
        const uint8_t bytes[4] = {byteOf(p.b), byteOf(p.g), byteOf(p.r), byteOf(p.a)};
        out.raw(bytes, static_cast<size_t>(bitsPerPixel / 8));
    }
    return out.bytes();
}

static void bmpHeader(cBinaryWriter& out, int width, int height, int bits, uint32_t paletteBytes) {
    const uint32_t pixelBytes = static_cast<uint32_t>(width * height * bits / 8);
    out.raw("BM", 2);
    out.u32(54 + paletteBytes + pixelBytes);
    out.u32(0);
    out.u32(54 + paletteBytes);
    out.u32(40);
    out.i32(width);
    out.i32(height);
    out.u16(1);
    out.u16(static_cast<uint16_t>(bits));
    out.u32(0); // not compressed
    out.u32(pixelBytes);
    out.u32(2835); // pixels a metre
    out.u32(2835);
    out.u32(paletteBytes / 4);
    out.u32(0);
}

platform::Bytes Canvas::bmp24() const {
    cBinaryWriter out;
    bmpHeader(out, width_, height_, 24, 0);
    for (int y = height_ - 1; y >= 0; --y)
        for (int x = 0; x < width_; ++x) {
            const Colour& p = at(x, y);
            out.u8(byteOf(p.b * p.a));
            out.u8(byteOf(p.g * p.a));
            out.u8(byteOf(p.r * p.a));
        }
    return out.bytes();
}

platform::Bytes Canvas::bmp8(const Colour& transparent) const {
    // Palette: 6 × 6 × 6 colour cube, the rest of the 256 places black except the last, the transparent
    // colour.
    constexpr int kSteps = 6, kTransparent = 255;
    cBinaryWriter out;
    bmpHeader(out, width_, height_, 8, 1024);
    for (int i = 0; i < 256; ++i) {
        Colour c{};
        if (i < kSteps * kSteps * kSteps)
            c = {static_cast<float>(i / 36) / 5, static_cast<float>(i / 6 % 6) / 5,
                 static_cast<float>(i % 6) / 5, 1};
        if (i == kTransparent) c = transparent;
        for (float v : {c.b, c.g, c.r, 0.0f}) out.u8(byteOf(v));
    }
    const auto step = [](float v) { return static_cast<int>(std::lround(clamp01(v) * 5)); };
    for (int y = height_ - 1; y >= 0; --y)
        for (int x = 0; x < width_; ++x) {
            const Colour& p = at(x, y);
            const int index = p.a < 0.5f ? kTransparent : step(p.r) * 36 + step(p.g) * 6 + step(p.b);
            out.u8(static_cast<uint8_t>(index));
        }
    return out.bytes();
}
} // namespace forge
