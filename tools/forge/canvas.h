#pragma once
#include "platform/files.h"

#include <functional>
#include <vector>

namespace forge {
/// Red, green, blue and alpha, 0..1, alpha not multiplied in.
struct Colour {
    float r = 0, g = 0, b = 0, a = 1;
};
/// Colour from 0xRRGGBB.
Colour rgb(unsigned hex, float alpha = 1);
Colour mix(const Colour& a, const Colour& b, float t);
Colour shaded(const Colour& c, float factor); ///< brightness times factor, alpha kept

/// A region of a picture: signed distance in pixels, negative inside, and a box outside of which nothing
/// lies. x to the right, y downwards, pixel centres at .5.
struct Shape {
    std::function<float(float x, float y)> distance;
    float left, top, right, bottom;
};
Shape disc(float x, float y, float radius);
Shape ellipse(float x, float y, float rx, float ry);
Shape rectangle(float left, float top, float width, float height, float cornerRadius = 0);
Shape stroke(float x0, float y0, float x1, float y1, float thickness);
Shape polyline(const std::vector<std::pair<float, float>>& points, float thickness);
Shape polygon(const std::vector<std::pair<float, float>>& points);
Shape outline(const Shape& shape, float thickness); ///< a band along the edge
Shape grown(const Shape& shape, float by);
Shape minus(const Shape& a, const Shape& b);
Shape both(const Shape& a, const Shape& b); ///< intersection

using Paint = std::function<Colour(float x, float y)>;

/// A picture in the making; row 0 is the top row.
class Canvas {
public:
    Canvas(int width, int height, Colour background = {0, 0, 0, 0});

    int width() const { return width_; }
    int height() const { return height_; }
    Colour& at(int x, int y) { return pixels_[static_cast<size_t>(y * width_ + x)]; }
    const Colour& at(int x, int y) const { return pixels_[static_cast<size_t>(y * width_ + x)]; }

    void fill(const Shape& shape, const Colour& colour);
    void fill(const Shape& shape, const Paint& paint);
    /// Every pixel becomes paint(x, y), without blending.
    void cover(const Paint& paint);
    /// Soft coverage: 1 inside, fading over `softness` pixels outside.
    void glow(const Shape& shape, const Colour& colour, float softness);
    /// Puts `colour` over one pixel.
    void over(int x, int y, const Colour& colour, float coverage);

    platform::Bytes tga(int bitsPerPixel) const;
    platform::Bytes bmp24() const;
    /// Palette picture; the top left pixel's colour takes the place of transparent pixels.
    platform::Bytes bmp8(const Colour& transparent) const;

private:
    int width_, height_;
    std::vector<Colour> pixels_;
};
} // namespace forge
