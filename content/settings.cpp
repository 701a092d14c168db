#include "data/binary_reader.h"
#include "forge/recipes.h"

#include <array>

namespace {
struct Command {
    int key, repeatMs; ///< SDL key code or mouse button; 0 repeats with every frame
};
// Commands 0 … 15: forward, back, left, right, run, use, jump, fire, two unused, zoom in, zoom out,
// inventory, next and previous item, view.
constexpr std::array<Command, 16> kCommands = {{{119, 0},
                                                {115, 0},
                                                {97, 0},
                                                {100, 0},
                                                {304, 0},
                                                {101, 300},
                                                {32, 200},
                                                {1, 0},
                                                {0, 0},
                                                {0, 0},
                                                {4, 0},
                                                {5, 0},
                                                {105, 250},
                                                {114, 250},
                                                {113, 250},
                                                {118, 300}}};

void writeRecord(cBinaryWriter& out) {
    for (int view = 0; view < 2; ++view)
        for (const Command& c : kCommands) out.i32(c.key);
    for (const Command& c : kCommands) out.i32(c.repeatMs);
    for (int v : {0, 0, 0, 1})
        out.u8(static_cast<uint8_t>(v)); // mouse in both views, running, relative to the camera
    out.f32(0.004f);
    out.u8(7); // crosshair, fading statistics, shadows
    out.u8(0);
    for (int v : {255, 255, 255, 192}) out.u8(static_cast<uint8_t>(v));
    out.f32(0.8f);
    out.f32(0.6f);
}
} // namespace

// The settings that a new player starts from, and the latest ones, which are the same.
FORGE_RECIPE(settings) {
    cBinaryWriter writer;
    writer.i32(2);
    writer.fixedText("\xA3"
                     "DEFAULT",
                     10);
    writer.fixedText("\xA3"
                     "LATEST",
                     10);
    writeRecord(writer);
    writeRecord(writer);
    if (writer.bytes().size() != 452) out.problem("settings.cfl has the wrong size");
    out.put("settings.cfl", writer.bytes());
}
