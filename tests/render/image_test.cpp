#include "render/image.h"

#include "data/binary_reader.h"
#include "support/temp_game.h"
#include "support/test_level.h"

#include <gtest/gtest.h>

namespace {
using platform::Bytes;

Bytes tga(int type, int width, int height, int bpp, const Bytes& data, const std::string& id = "",
          int descriptor = 0) {
    cBinaryWriter out;
    for (const int v : {static_cast<int>(id.size()), 0, type}) out.u8(static_cast<uint8_t>(v));
    out.fixedText("", 9);
    for (const int v : {width, height}) out.u16(static_cast<uint16_t>(v));
    for (const int v : {bpp, descriptor}) out.u8(static_cast<uint8_t>(v));
    out.raw(id.data(), id.size());
    out.raw(data.data(), data.size());
    return out.bytes();
}

/// `format`: bit count, and above it the compression. The palette maps index i to blue i, green 2i, red 3i.
Bytes bmp(int32_t width, int32_t height, uint32_t format, const Bytes& data) {
    const bool palette = (format & 0xFF) == 8;
    cBinaryWriter out;
    out.fixedText("BM", 10);
    out.u32(palette ? 54 + 1024 : 54);
    for (const int32_t v : {40, width, height}) out.i32(v);
    out.u16(1);
    out.u32(format);
    out.fixedText("", 22);
    for (int i = 0; palette && i < 256; ++i) {
        for (const int c : {i, i * 2, i * 3, 0}) out.u8(static_cast<uint8_t>(c));
    }
    out.raw(data.data(), data.size());
    return out.bytes();
}

class Image : public ::testing::Test {
protected:
    TempGame game;
    cImage image;

    int load(const std::string& name, const Bytes& bytes) {
        platform::writeFile(name, bytes);
        TempGame::clearErrors();
        return image.load(name);
    }
    void expectFailure(const std::string& name, const Bytes& bytes, const std::string& row) {
        EXPECT_EQ(load(name, bytes), -1) << row;
        EXPECT_EQ(TempGame::errors(), std::vector<std::string>{row});
        EXPECT_TRUE(image.pixels().empty());
        EXPECT_EQ(image.width(), 0);
    }
};
const std::string kCorrupt = "File \"a.tga\" is invalid or corrupt";
} // namespace

TEST_F(Image, ATgasFirstRowComesLastWhateverItsOriginBits) {
    const Bytes rows = {1, 2, 3, 4, 5, 6, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24, 25, 26};
    const Bytes packets = {1, 1, 2, 3, 4, 5, 6, 3, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24, 25, 26};
    for (const int descriptor : {0, 0x20, 0x30}) {
        for (const Bytes& file :
             {tga(2, 2, 3, 24, rows, "some id", descriptor), tga(10, 2, 3, 24, packets, "id", descriptor)}) {
            ASSERT_EQ(load("a.tga", file), 0);
            EXPECT_EQ(image.pixels(),
                      (Bytes{23, 22, 21, 26, 25, 24, 13, 12, 11, 16, 15, 14, 3, 2, 1, 6, 5, 4}));
        }
    }
    EXPECT_EQ(image.width(), 2);
    EXPECT_EQ(image.height(), 3);
    EXPECT_EQ(image.bpp(), 24);
    ASSERT_EQ(load("a.tga", tga(10, 1, 1, 24, {0x7F, 1, 2, 3})), 0);
    EXPECT_EQ(image.pixels(), (Bytes{3, 2, 1})) << "a packet of 128 pixels for one";
}

TEST_F(Image, BmpRowsStayInFileOrder) {
    ASSERT_EQ(load("a.bmp", bmp(4, 2, 24, {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                           13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24})),
              0);
    EXPECT_EQ(image.pixels(),
              (Bytes{3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 15, 14, 13, 18, 17, 16, 21, 20, 19, 24, 23, 22}));
    ASSERT_EQ(load("a.bmp", bmp(4, 1, 8, {0, 1, 20, 80})), 0);
    EXPECT_EQ(image.pixels(), (Bytes{0, 0, 0, 3, 2, 1, 60, 40, 20, 240, 160, 80}));
    EXPECT_EQ(image.bpp(), 24);
    Bytes two = bmp(8, 1, 8, {1, 0, 2, 200, 9, 9, 9, 9});
    two.erase(two.begin() + 54 + 2 * 4, two.begin() + 54 + 1024);
    two[10] = 54 + 2 * 4; // where the pixels begin
    two[11] = 0;
    ASSERT_EQ(load("a.bmp", two), 0);
    Bytes black(24);
    std::copy_n(Bytes{3, 2, 1}.begin(), 3, black.begin());
    EXPECT_EQ(image.pixels(), black) << "colours that are missing are no pixels";
}

TEST_F(Image, TheNameChoosesTheFormat) {
    const Bytes picture = bmp(1, 1, 24, {1, 2, 3});
    EXPECT_EQ(load("wall.bmp.tga", picture), 0);
    EXPECT_EQ(load("WALL.BMP", picture), 0);
    expectFailure("wall.Bmp", picture, "File \"wall.Bmp\" is invalid or corrupt");
}

TEST_F(Image, FailuresAreLoggedInTheirOwnWords) {
    const std::string depth = "\"a.bmp\": Cannot handle BMP images not using 8 or 24 bpp";
    expectFailure("a.tga", tga(3, 1, 1, 8, {1}), kCorrupt);
    expectFailure("a.tga", tga(1, 1, 1, 24, {1, 2, 3}), kCorrupt);
    expectFailure("a.tga", tga(2, 1, 1, 16, {1, 2}), "Unsupported format in file \"a.tga\"");
    expectFailure("a.tga", tga(2, 1, 2, 24, {1, 2, 3, 4, 5}), kCorrupt);
    expectFailure("a.tga", tga(10, 2, 2, 24, {0x81, 1, 2, 3}), kCorrupt);
    expectFailure("a.tga", tga(10, 64, 64, 24, {3, 1, 2, 3, 4}), "File a.tga is invalid or corrupt");
    expectFailure("a.bmp", bmp(1, 1, 16, {1, 2}), depth);
    expectFailure("a.bmp", bmp(1, 1, 0x10008, {1}), depth);
    for (const char* name : {"none.tga", "none.bmp"}) {
        TempGame::clearErrors();
        EXPECT_EQ(image.load(name), -1);
        EXPECT_EQ(TempGame::errorCount(std::string("Cannot find image \"") + name + "\""), 1);
    }
    // Sizes that the file cannot hold are not allocated.
    expectFailure("a.tga", tga(2, 65535, 65535, 32, Bytes(100)), kCorrupt);
    expectFailure("a.tga", tga(10, 65535, 65535, 32, {0xFF, 1, 2, 3, 4}), kCorrupt);
    for (const auto& [width, height] : {std::pair{0x7FFFFFFF, 0x7FFFFFFF}, {-4, 4}, {4, -4}, {0, 4}}) {
        for (const uint32_t bits : {8u, 24u}) {
            expectFailure("a.bmp", bmp(width, height, bits, Bytes(48)),
                          "File \"a.bmp\" is invalid or corrupt");
        }
    }
}

TEST_F(Image, SwappingTouchesOnlyChannelsThatExist) {
    ASSERT_EQ(load("a.tga", tga(2, 2, 1, 24, {1, 2, 3, 4, 5, 6})), 0);
    for (const auto& [a, b] : {std::pair{0, 3}, {-1, 0}, {1, 1}, {3, 0}}) image.swapChannels(a, b);
    EXPECT_EQ(image.pixels(), (Bytes{3, 2, 1, 6, 5, 4}));
    image.swapChannels(0, 1);
    EXPECT_EQ(image.pixels(), (Bytes{2, 3, 1, 5, 6, 4}));
}

namespace {
/// Random packets of `size` bytes of pixels in all, or a few more; what they mean goes to `pixels`.
Bytes randomPackets(TestRandom& random, size_t pixelBytes, size_t size, Bytes& pixels) {
    Bytes packets;
    while (pixels.size() < size) {
        const bool run = random.index(2);
        const int count = 1 + random.index(random.index(2) ? 128 : 3);
        packets.push_back(static_cast<uint8_t>((run ? 128 : 0) + count - 1));
        Bytes pixel(pixelBytes);
        for (int i = 0; i < count; ++i) {
            if (i == 0 || !run) {
                for (uint8_t& c : pixel) c = static_cast<uint8_t>(random.index(256));
                packets.insert(packets.end(), pixel.begin(), pixel.end());
            }
            pixels.insert(pixels.end(), pixel.begin(), pixel.end());
        }
    }
    return packets;
}
} // namespace

TEST_F(Image, RunsDecodeAsPixelByPixelOnRandomPackets) {
    TestRandom random;
    for (int round = 0; round < 2000; ++round) {
        const int width = 1 + random.index(40), height = 1 + random.index(12),
                  bpp = random.index(2) ? 24 : 32;
        const size_t step = static_cast<size_t>(bpp) / 8, rowBytes = static_cast<size_t>(width) * step;
        Bytes linear, expected;
        const Bytes packets = randomPackets(random, step, rowBytes * static_cast<size_t>(height), linear);
        for (int y = height - 1; y >= 0; --y) {
            for (size_t x = 0; x < rowBytes; ++x) {
                const size_t c = x % step, swapped = c == 0 ? 2 : c == 2 ? 0 : c;
                expected.push_back(linear[static_cast<size_t>(y) * rowBytes + x - c + swapped]);
            }
        }
        const Bytes file = tga(10, width, height, bpp, packets);
        game.write("runs.tga", std::string(file.begin(), file.end()));
        ASSERT_EQ(image.load("runs.tga"), 0) << round;
        ASSERT_EQ(image.pixels(), expected) << round;
    }
}
