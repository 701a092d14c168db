#include "support/gl_window.h"

#include "platform/gl_api.h"

#include <SDL.h>

void GlTest::SetUpTestSuite() {
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return; // reported by SetUp
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 16);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 1);
    if (!SDL_SetVideoMode(kSize, kSize, 24, SDL_OPENGL)) return;
    platform::setGlContext(true);
    platform::fetchGlExtensions();
}

void GlTest::TearDownTestSuite() {
    platform::setGlContext(false);
    SDL_Quit();
}

void GlTest::SetUp() {
    ASSERT_TRUE(platform::hasGlContext()) << "no window with OpenGL: " << SDL_GetError();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glViewport(0, 0, kSize, kSize);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glClearColor(0, 0, 0, 0);
    glClearStencil(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void GlTest::TearDown() {
    if (!platform::hasGlContext()) return;
    glPopAttrib();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

namespace {
GLint windowCoordinate(float clip, int size) {
    return static_cast<GLint>((clip + 1) / 2 * static_cast<float>(size));
}
} // namespace

uint32_t GlTest::pixel(float x, float y) {
    uint8_t c[4] = {};
    glReadPixels(windowCoordinate(x, kSize), windowCoordinate(y, kSize), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
    return static_cast<uint32_t>(c[0] << 16 | c[1] << 8 | c[2]);
}

int GlTest::stencil(float x, float y) {
    uint8_t value = 0;
    glReadPixels(windowCoordinate(x, kSize), windowCoordinate(y, kSize), 1, 1, GL_STENCIL_INDEX,
                 GL_UNSIGNED_BYTE, &value);
    return value;
}

#ifdef __SANITIZE_ADDRESS__
/// Drivers stay loaded to the end: the leak report can name no library that is gone, so none of its leaks
/// could be told from ours.
extern "C" __attribute__((visibility("default"))) int dlclose(void*) {
    return 0;
}
#endif
