#include "forge/lettering.h"

#include <algorithm>
#include <cstdlib>

namespace forge {
namespace {
constexpr float kCellCapHeight = 11; // ink height of capitals in such a cell
constexpr int kCurveSteps = 8;

std::pair<float, float> catmullRom(const StrokePath& p, size_t i0, size_t i1, size_t i2, size_t i3, float t) {
    const auto axis = [&](float a, float b, float c, float d) {
        return 0.5f * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t +
                       (3 * b - a - 3 * c + d) * t * t * t);
    };
    return {axis(p[i0].first, p[i1].first, p[i2].first, p[i3].first),
            axis(p[i0].second, p[i1].second, p[i2].second, p[i3].second)};
}

StrokePath smooth(const StrokePath& points, bool closed) {
    const size_t n = points.size();
    if (n < 3) return points;
    StrokePath result;
    const size_t spans = closed ? n : n - 1;
    for (size_t i = 0; i < spans; ++i) {
        const size_t before = closed ? (i + n - 1) % n : (i == 0 ? 0 : i - 1);
        const size_t next = closed ? (i + 1) % n : i + 1;
        const size_t after = closed ? (i + 2) % n : std::min(i + 2, n - 1);
        for (int s = 0; s < kCurveSteps; ++s)
            result.push_back(catmullRom(points, before, i, next, after, static_cast<float>(s) / kCurveSteps));
    }
    result.push_back(closed ? result.front() : points.back());
    return result;
}

StrokePath parseStroke(std::string_view text) {
    const std::string copy(text);
    const char* at = copy.c_str();
    while (*at == ' ') ++at;
    const char kind = *at;
    if (kind == '~' || kind == '@') ++at;
    StrokePath points;
    while (*at) {
        char* end = nullptr;
        const float x = std::strtof(at, &end);
        if (end == at || *end != ',') break;
        at = end + 1;
        const float y = std::strtof(at, &end);
        at = end;
        points.emplace_back(x, y);
        while (*at == ' ') ++at;
    }
    if (kind == '~') return smooth(points, false);
    return kind == '@' ? smooth(points, true) : points;
}
} // namespace

const Glyph& glyphOf(char character) {
    const int index = static_cast<unsigned char>(character) - 32;
    return kGlyphs[index >= 0 && index < 95 ? index : 0];
}

std::vector<StrokePath> glyphPaths(const Glyph& glyph, const TextStyle& style, float inkWidth) {
    std::vector<StrokePath> result;
    std::string_view rest = glyph.strokes;
    const float inset = style.weight / 2;
    while (!rest.empty()) {
        const size_t end = rest.find(';');
        StrokePath path = parseStroke(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        for (auto& [x, y] : path) {
            const float down = y / 10 * (style.capHeight - style.weight);
            x = style.left + inset + x / 10 * std::max(0.0f, inkWidth - style.weight) +
                style.slant * (style.capHeight - down);
            y = style.capTop + inset + down;
        }
        if (!path.empty()) result.push_back(std::move(path));
    }
    return result;
}

static float inkWidthOf(const Glyph& glyph, const TextStyle& style) {
    // Relative to the cell the strokes may be heavier or lighter; only the centre lines scale.
    const float scale = style.capHeight / kCellCapHeight;
    return std::max(style.weight, static_cast<float>(glyph.width) * scale);
}

float textWidth(std::string_view text, const TextStyle& style) {
    float width = 0;
    for (char c : text) width += inkWidthOf(glyphOf(c), style) + style.spacing * style.capHeight;
    return text.empty() ? 0 : width - style.spacing * style.capHeight;
}

std::vector<Shape> textShapes(std::string_view text, const TextStyle& style) {
    std::vector<Shape> shapes;
    TextStyle at = style;
    for (char c : text) {
        const Glyph& glyph = glyphOf(c);
        const float width = inkWidthOf(glyph, style);
        std::vector<Shape> strokes;
        for (const StrokePath& path : glyphPaths(glyph, at, width))
            strokes.push_back(polyline(path, style.weight));
        if (!strokes.empty()) {
            Shape whole = strokes.front();
            for (const Shape& s : strokes) {
                whole.left = std::min(whole.left, s.left);
                whole.top = std::min(whole.top, s.top);
                whole.right = std::max(whole.right, s.right);
                whole.bottom = std::max(whole.bottom, s.bottom);
            }
            whole.distance = [strokes](float x, float y) {
                float best = 1e9f;
                for (const Shape& s : strokes) best = std::min(best, s.distance(x, y));
                return best;
            };
            shapes.push_back(std::move(whole));
        }
        at.left += width + style.spacing * style.capHeight;
    }
    return shapes;
}

void drawText(Canvas& canvas, std::string_view text, const TextStyle& style, const Paint& paint) {
    for (const Shape& shape : textShapes(text, style)) canvas.fill(shape, paint);
}

void drawText(Canvas& canvas, std::string_view text, const TextStyle& style, const Colour& colour) {
    drawText(canvas, text, style, [&](float, float) { return colour; });
}

void drawRimmedText(Canvas& canvas, std::string_view text, const TextStyle& style, const Colour& colour,
                    const Colour& rimColour, float rim) {
    const std::vector<Shape> shapes = textShapes(text, style);
    for (const Shape& shape : shapes) canvas.fill(grown(shape, rim), rimColour);
    for (const Shape& shape : shapes) canvas.fill(shape, colour);
}

TextStyle centred(std::string_view text, TextStyle style, float centreX) {
    style.left = centreX - textWidth(text, style) / 2;
    return style;
}
} // namespace forge
