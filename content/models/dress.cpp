#include "forge/canvas.h"
#include "forge/noise.h"
#include "models/humanoid.h"

using namespace forge;

// The pictures of people. Where each part lies in them is laid down in humanoid.cpp; the front of a body is
// in the middle of its strip, its upper end at the top.
namespace humanoid {
namespace {
/// Soft folds: darker and lighter streaks along a strip.
Colour folded(const Colour& c, float x, float y, float strength) {
    const float fold = fractalNoise(x * 0.09f, y * 0.03f, 17, 2) - 0.5f;
    return shaded(c, 1 + strength * fold);
}

void strip(Canvas& canvas, float left, float top, float width, float height, const Colour& colour,
           float folds = 0.25f) {
    canvas.fill(rectangle(left - 1, top - 1, width + 2, height + 2),
                [&](float x, float y) { return folded(colour, x, y, folds); });
}

platform::Bytes lowerPicture(const Dress& d) {
    Canvas c(256, 256, rgb(d.trousers));
    strip(c, 0, 0, 128, 128, rgb(d.trousers));
    if (d.bareShins) {
        strip(c, 0, 52, 128, 76, rgb(d.skin), 0);
        strip(c, 0, 48, 128, 6, shaded(rgb(d.trousers), 1.3f), 0.1f);
        strip(c, 0, 104, 128, 24, rgb(d.shirt), 0.1f); // socks
    } else {
        strip(c, 0, 84, 128, 44, rgb(d.boots), 0.15f);
        strip(c, 0, 84, 128, 7, shaded(rgb(d.boots), 1.35f), 0.1f);
    }
    // Knees are a little worn.
    c.glow(ellipse(64, 50, 7, 5), {1, 1, 1, 0.12f}, 10);
    strip(c, 128, 0, 128, 128, rgb(d.boots), 0.15f);
    strip(c, 178, 0, 28, 128, shaded(rgb(d.boots), 0.6f), 0); // sole
    strip(c, 0, 128, 64, 128, rgb(d.coat));
    strip(c, 0, 132, 64, 57, rgb(d.belt), 0.1f);
    strip(c, 0, 189, 64, 67, rgb(d.trousers)); // below the coat's hem
    strip(c, 64, 128, 128, 128, rgb(d.coat));
    if (d.apron) {
        // Each half of the skirt shows its part of it in front.
        strip(c, 96, 156, 64, 92, rgb(d.apron), 0.18f);
        strip(c, 96, 226, 64, 4, rgb(d.trim), 0);
        strip(c, 96, 234, 64, 4, rgb(d.trim), 0);
    }
    strip(c, 64, 240, 128, 12, rgb(d.trim), 0.1f);
    strip(c, 64, 134, 128, 24, rgb(d.belt), 0.1f);
    strip(c, 64, 133, 128, 3, shaded(rgb(d.belt), 0.6f), 0);
    strip(c, 64, 156, 128, 3, shaded(rgb(d.belt), 0.6f), 0);
    return c.tga(24);
}

platform::Bytes upperPicture(const Dress& d) {
    Canvas c(256, 256, rgb(d.coat));
    strip(c, 0, 0, 256, 128, rgb(d.coat));
    // The shirt shows in a V at the front, edged by the trim; a row of buttons below it.
    c.fill(polygon({{100, 0}, {156, 0}, {130, 78}, {126, 78}}), rgb(d.trim));
    c.fill(polygon({{106, 0}, {150, 0}, {128, 68}}), rgb(d.shirt));
    if (d.striped)
        for (float y = 22; y < 128; y += 17) strip(c, 0, y, 256, 7, rgb(d.trim), 0.1f);
    if (d.apron) {
        c.fill(polygon({{104, 52}, {152, 52}, {160, 128}, {96, 128}}),
               [&](float x, float y) { return folded(rgb(d.apron), x, y, 0.15f); });
        strip(c, 106, 54, 44, 3, rgb(d.trim), 0);
    } else if (!d.striped) {
        c.fill(stroke(128, 78, 128, 128, 2), shaded(rgb(d.coat), 0.6f));
        for (float y : {86.0f, 100.0f, 114.0f}) c.fill(disc(133, y, 2.6f), rgb(d.trim));
    }
    // Collar and neck.
    strip(c, 0, 14, 100, 5, rgb(d.trim), 0);
    strip(c, 156, 14, 100, 5, rgb(d.trim), 0);
    strip(c, 0, 0, 256, 13, rgb(d.skin), 0);
    strip(c, 0, 122, 256, 6, shaded(rgb(d.coat), 0.7f), 0);
    // Sleeves with cuffs, hands, scarf.
    strip(c, 0, 128, 128, 128, rgb(d.coat));
    if (d.striped)
        for (float y = 134; y < 226; y += 15) strip(c, 0, y, 128, 6, rgb(d.trim), 0.1f);
    strip(c, 0, 228, 128, 28, rgb(d.trim), 0.1f);
    strip(c, 0, 226, 128, 3, shaded(rgb(d.coat), 0.6f), 0);
    strip(c, 128, 128, 128, 64, rgb(d.skin), 0);
    strip(c, 128, 192, 64, 64, rgb(d.skin), 0);
    for (float x : {140.0f, 152.0f, 164.0f, 176.0f})
        c.fill(stroke(x, 238, x, 256, 1.5f), shaded(rgb(d.skin), 0.75f));
    strip(c, 192, 192, 64, 64, rgb(d.trim), 0.3f);
    for (float y : {200.0f, 250.0f}) strip(c, 192, y, 64, 3, shaded(rgb(d.trim), 1.35f), 0);
    return c.tga(24);
}

void drawEye(Canvas& c, float x, float y, float side, const Dress& d) {
    c.fill(ellipse(x, y, 17, 20), rgb(0xfdfbf4));
    c.fill(ellipse(x + side * -2, y + 2, 10.5f, 15), rgb(d.eyes));
    c.fill(ellipse(x + side * -2, y + 3, 6, 9.5f), rgb(0x14161c));
    c.fill(disc(x + 3, y - 5, 4.2f), rgb(0xffffff));
    c.fill(disc(x - 5, y + 8, 2.2f), rgb(0xffffff, 0.8f));
    // Upper lid and lashes.
    c.fill(polyline({{x - 18, y - 8}, {x - 11, y - 17}, {x, y - 20}, {x + 11, y - 17}, {x + 18, y - 8}},
                    5.5f * d.lashes),
           rgb(0x241a18));
    if (d.lashes > 1)
        for (float up : {0.0f, 6.0f})
            c.fill(stroke(x + side * 17, y - 9 - up, x + side * 25, y - 13 - 1.6f * up, 3), rgb(0x241a18));
    c.fill(polyline({{x - 11, y + 19}, {x, y + 21}, {x + 11, y + 19}}, 2), rgb(0x6d4638, 0.7f));
    // Brow.
    c.fill(polyline({{x - 18, y - 31 - side}, {x, y - 37}, {x + 18, y - 31 + side}}, 6.5f),
           shaded(rgb(d.hair), 0.75f));
}

platform::Bytes headPicture(const Build& b, const Dress& d) {
    constexpr float kUnit = 2; // the picture is twice as fine as the strips are counted
    Canvas c(512, 512, rgb(d.skin));
    for (float side : {-1.0f, 1.0f}) {
        // Rosy cheeks, then the eyes.
        c.glow(ellipse((128 + side * 24) * kUnit, 84 * kUnit, 10, 6), rgb(0xe8715f, 0.32f), 18);
        drawEye(c, (128 + side * 17) * kUnit, 64 * kUnit, side, d);
    }
    if (d.freckled)
        for (const auto& [x, y] :
             {std::pair{20.0f, 78.0f}, {26.0f, 81.0f}, {31.0f, 77.0f}, {23.0f, 85.0f}, {14.0f, 82.0f}})
            for (float side : {-1.0f, 1.0f})
                c.fill(disc((128 + side * x) * kUnit, y * kUnit, 2.4f), shaded(rgb(d.skin), 0.72f));
    c.glow(ellipse(128 * kUnit, 79 * kUnit, 8, 2), shaded(rgb(d.skin, 0.7f), 0.72f), 6);
    if (!b.beard)
        c.fill(polyline({{236, 184}, {244, 189.5f}, {256, 191.5f}, {268, 189.5f}, {276, 184}}, 4.5f),
               rgb(0x8c3b34));
    else
        c.fill(polyline({{240, 187}, {256, 190}, {272, 187}}, 4.5f), rgb(0x7a322c));
    // Hair with strands, hat with a band.
    c.fill(rectangle(0, 256, 256, 256), [&](float x, float y) {
        const float strand = fractalNoise(x * 0.12f, y * 0.012f, 23, 2);
        return shaded(rgb(d.hair), 0.78f + 0.5f * strand);
    });
    c.fill(rectangle(256, 256, 256, 256), [&](float x, float y) { return folded(rgb(d.coat), x, y, 0.2f); });
    c.fill(rectangle(256, 348, 256, 34), rgb(d.trim));
    return c.tga(24);
}
} // namespace

void paint(Output& out, const std::string& directory, const std::string& name, const Build& build,
           const Dress& dress) {
    const std::string base = directory + "/" + name;
    out.put(base + "_lower.tga", lowerPicture(dress));
    out.put(base + "_upper.tga", upperPicture(dress));
    out.put(base + "_head.tga", headPicture(build, dress));
}
} // namespace humanoid
