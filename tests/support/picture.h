#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// A picture as the game writes it (PNG).
struct Picture {
    int width = 0, height = 0;
    std::vector<uint8_t> rgb; ///< top row first

    static Picture read(const std::string& path); ///< empty when it cannot be read
    uint32_t at(int x, int y) const;              ///< 0xRRGGBB; y from the bottom, as the game counts
};

/// Pixels lo ≤ x, y ≤ hi, y from the bottom; nothing where hiX < loX.
struct Box {
    int loX = 1 << 20, loY = 1 << 20, hiX = -1, hiY = -1;
    int count = 0; ///< pixels that are meant

    void add(int x, int y);
    bool within(int x0, int y0, int x1, int y1) const; ///< true also for nothing
    bool operator==(const Box&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Box& box);

/// Where a picture has this colour.
Box whereIs(const Picture& picture, uint32_t colour);
/// Whether two colours differ clearly: more than 24 of 255 in a channel.
bool differs(uint32_t a, uint32_t b);
/// Where two pictures of one size differ clearly, right of and above a corner.
Box changed(const Picture& a, const Picture& b, int fromX = 0, int fromY = 0);
