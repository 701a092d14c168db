#include "render/text.h"

#include "platform/gl_api.h"
#include "render/renderer.h"
#include "render/texture_cache.h"
#include "support/temp_game.h"

#include <gtest/gtest.h>

namespace {
constexpr int kWidth = 320, kHeight = 240;

/// A window of the renderer's own and a font whose every cell is white.
class Text : public ::testing::Test {
protected:
    TempGame game;
    cRenderer& renderer = cRenderer::instance();

    void SetUp() override {
        std::string white = std::string(1, '\0') + '\0' + '\2' + std::string(9, '\0');
        white += std::string("\x10\0\x10\0\x20\0", 6) + std::string(16 * 16 * 4, '\xFF');
        game.write("img/ALPHA.tga", white);
        ASSERT_EQ(renderer.setVideoMode(kWidth, kHeight, false), 0);
        begin();
    }
    void TearDown() override {
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        cRenderer::destroy();
    }
    void begin() {
        renderer.beginFrame();
        renderer.setProjection(true);
        glColor4ub(255, 255, 255, 255);
    }
    /// The leftmost lit pixel of a row and one past the rightmost; both 0 when it is dark.
    static std::pair<int, int> lit(int y) {
        std::vector<uint8_t> row(kWidth * 4);
        glReadPixels(0, y, kWidth, 1, GL_RGBA, GL_UNSIGNED_BYTE, row.data());
        std::pair<int, int> found{0, 0};
        for (int x = kWidth; x > 0; --x) {
            if (row[static_cast<size_t>(x - 1) * 4] > 200) found = {x - 1, found.second ? found.second : x};
        }
        return found;
    }
    static int end(int y) { return lit(y).second; }
};
} // namespace

TEST(TextWidth, FollowsTheTableAndTruncates) {
    const struct {
        uint8_t set;
        float scale;
        const char* text;
        int width;
    } rows[] = {
        {0, 1, "", 0},     {0, 1, "AZ", 13 + 12},  {0, 1, "0 |~", 11 + 10 + 2 + 11},
        {0, 0.5f, "m", 7}, {0, 1.5f, "!", 7},      {0, 1, "\x80\n", 24},
        {1, 2, "abc", 72}, {1, 1, "\x01\xFF", 24},
    };
    for (const auto& row : rows)
        EXPECT_EQ(cTextFont::width(row.set, row.scale, row.text), row.width) << row.text;
}

TEST_F(Text, AdvancesByTheDrawnWidths) {
    const struct {
        uint8_t set;
        float scale;
        const char* text;
        int end; // the last glyph is 16 units wide
    } rows[] = {
        {0, 1, "A", 16},        {0, 1, " A", 6 + 16},
        {0, 1, "||A", 4 + 16},  {0, 2, "mA", 2 * (15 + 16)},
        {1, 1, "AAA", 24 + 16}, {0, 1, "\x80 A", 12 + 6 + 16},
    };
    for (const auto& row : rows) {
        begin();
        renderer.print(20, 100, row.scale, row.set, "%s", row.text);
        const int top = 100 + static_cast<int>(16 * row.scale);
        for (const int y : {100, 108, top - 1}) EXPECT_EQ(lit(y), std::pair(20, 20 + row.end)) << row.text;
        EXPECT_EQ(end(99) + end(top), 0) << "(x, y) is the lower left corner";
    }
}

TEST_F(Text, CharactersOutsideTheFontNeverReachOtherLists) {
    renderer.print(0, 0, 1, 0, "A");
    const GLuint foreign = glGenLists(512); // follows the font's lists
    for (GLuint i = 0; i < 512; ++i) {
        glNewList(foreign + i, GL_COMPILE);
        glTranslatef(100, 0, 0);
        glEndList();
    }
    std::string all;
    for (int c = 1; c < 32; ++c) all += static_cast<char>(c);
    for (int c = 159; c < 256; ++c) {
        begin();
        renderer.print(0, 100, 1, c > 159, "%s", (all + "A").c_str());
        ASSERT_EQ(end(108), 16) << "before " << c;
        all = static_cast<char>(c + 1);
    }
    glDeleteLists(foreign, 512);
}

TEST_F(Text, WrappedLinesGoDownByTwelve) {
    const struct {
        int maxWidth;
        const char* text;
        int ends[4]; // of the lines from the top; each glyph "A" of set 1 advances 12 and is 16 wide
    } rows[] = {
        {1000, "AA AA", {64, 0, 0, 0}},
        {1,
         "AA AAA A",
         {0, 40, 64, 0}}, // even the first word goes to the next line; the last is never tested
        {80, "AA AAA A", {40, 64, 0, 0}},
    };
    for (const auto& row : rows) {
        begin();
        renderer.printWrapped(0, 200, 1, 1, row.maxWidth, "%s", row.text);
        for (int line = 0; line < 4; ++line) {
            // Neighbouring lines do not reach this row of the glyphs. The white font's blanks are lit as
            // well.
            EXPECT_EQ(end(200 - 12 * line + 6), row.ends[line]) << row.text << line;
        }
    }
    begin();
    renderer.printWrapped(0, 200, 1, 1, 1000, "%s", "100%d");
    EXPECT_EQ(end(205), 4 * 12 + 16) << "the text is not interpreted again";
}

TEST_F(Text, ASecondModeDropsTexturesAndTellsTheListeners) {
    static int told = 0;
    told = 0;
    renderer.addModeListener([] { ++told; });
    const int32_t old = renderer.loadTexture("IMG\\alpha.tga");
    EXPECT_EQ(renderer.loadTexture("img\\ALPHA.TGA"), old);
    EXPECT_EQ(renderer.textureFileName(old), "IMG\\alpha.tga");
    const uint8_t white[12] = {};
    EXPECT_EQ(renderer.textureFileName(renderer.createTexture(2, 2, 24, white)), "");
    renderer.print(0, 0, 1, 0, "A");
    ASSERT_EQ(renderer.setVideoMode(kWidth, kHeight, false), 0);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(renderer.textureFileName(old), "");
    begin();
    renderer.print(20, 100, 1, 0, "A");
    EXPECT_EQ(end(108), 36) << "the font is built anew";
}

TEST_F(Text, WithoutItsPicturesNothingIsDrawnAndTheStateIsAsBefore) {
    ASSERT_EQ(renderer.setVideoMode(kWidth, kHeight, false), 0);
    game.write("img/ALPHA.tga", "broken");
    TempGame::clearErrors();
    GLint depth = 0, after = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
    begin();
    glEnable(GL_DEPTH_TEST);
    for (int i = 0; i < 2; ++i) renderer.print(0, 100, 1, 0, "A");
    EXPECT_EQ(end(108), 0);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &after);
    EXPECT_EQ(after, depth);
    for (int i = 0; i < 2; ++i) renderer.drawLoadingScreen();
    const std::string font = "File \"IMG\\alpha.tga\" is invalid or corrupt";
    EXPECT_EQ(TempGame::errors(),
              (std::vector<std::string>{font, font, "Cannot find image \"img\\loading.bmp\""}))
        << "the font is tried again, the loading screen once";
}
