#include "render/renderer.h"

#include "core/log_mgr.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/gl_api.h"
#include "platform/random.h"
#include "render/particles.h"
#include "render/screenshot.h"
#include "render/texture_cache.h"

#include <SDL.h>
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <ctime>

namespace {
constexpr uint32_t kLeastFrameMs = 16;
constexpr double kFieldOfView = 45;
constexpr double kNearPlane = 0.1f; ///< the single-precision value, widened
constexpr double kFarPlane = 1100;
constexpr size_t kTextBuffer = 50000;
constexpr size_t kDebugBuffer = 5000;

cRenderer* g_instance = nullptr;

std::string formatText(size_t limit, const char* format, va_list args) {
    std::string text(limit, '\0');
    const int n = std::vsnprintf(text.data(), limit, format, args);
    text.resize(n < 0 ? 0 : std::min(static_cast<size_t>(n), limit - 1));
    return text;
}
} // namespace

cRenderer& cRenderer::instance() {
    if (!g_instance) g_instance = new cRenderer;
    return *g_instance;
}

void cRenderer::destroy() {
    delete g_instance;
    g_instance = nullptr;
}

cRenderer::cRenderer() {
    sdlReady_ = SDL_Init(0) != -1 && SDL_InitSubSystem(SDL_INIT_TIMER | SDL_INIT_VIDEO) != -1;
    platform::seedRandom(static_cast<uint32_t>(std::time(nullptr)));
}

cRenderer::~cRenderer() {
    releaseResources();
    SDL_Quit();
}

void cRenderer::setCaption(const std::string& title, const std::string& iconFile) {
    if (!sdlReady_) return;
    SDL_WM_SetCaption(title.c_str(), nullptr);
    platform::Bytes bytes;
    if (iconFile.empty() || screen_ || !platform::readFile(iconFile, bytes)) return;
    SDL_Surface* icon = SDL_LoadBMP_RW(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())), 1);
    if (!icon) return;
    SDL_SetColorKey(icon, SDL_SRCCOLORKEY, *static_cast<const uint8_t*>(icon->pixels));
    SDL_WM_SetIcon(icon, nullptr);
    SDL_FreeSurface(icon);
}

int cRenderer::setVideoMode(int width, int height, bool fullscreen) {
    // Without a screen as well: the layout of pages asks for them.
    width_ = width;
    height_ = height;
    if (!sdlReady_) return -1;
    releaseResources();
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 1);
    const Uint32 flags = SDL_HWSURFACE | SDL_OPENGL | SDL_DOUBLEBUF | (fullscreen ? SDL_FULLSCREEN : 0u);
    screen_ = SDL_SetVideoMode(width, height, 32, flags);
    if (!screen_) return -1;
    platform::setGlContext(true);
    fullscreen_ = fullscreen;
    initGl();
    for (const auto listener : modeListeners_) listener();
    return 0;
}

void cRenderer::initGl() {
    glClearColor(0, 0, 0, 0);
    glClearDepth(1.0);
    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    glViewport(0, 0, width_, height_);
    platform::fetchGlExtensions();
    if (!platform::gl.hasMultitexture()) {
        cLogMgr::instance().error(
            "Could not load extensions for multi-texture support! Get a new graphics card!");
    }
    if (!platform::gl.fogCoordf) {
        cLogMgr::instance().error("Graphics card does not support volumetric fog! Get a new one!");
    }
    setProjection(false);
    SDL_ShowCursor(SDL_DISABLE);
    glEnable(GL_TEXTURE_2D);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void cRenderer::releaseResources() {
    if (!screen_) return;
    cTextureCache::instance().releaseAll();
    font_.release();
    if (loadingTexture_ != kTextureFailed) loadingTexture_ = kNoTexture;
    // The surface of SDL_SetVideoMode is SDL's own to free, at the next mode set or at SDL_Quit.
    screen_ = nullptr;
    platform::setGlContext(false);
}

void cRenderer::beginFrame() {
    if (!screen_) return;
    if (fast_) {
        const bool pictured = !screenshot_.empty();
        pictured ? glDisable(GL_RASTERIZER_DISCARD) : glEnable(GL_RASTERIZER_DISCARD);
    }
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glLoadIdentity();
}

void cRenderer::endFrame() {
    tickEffects();
    // Without a screen as well: pages turn and fades end in the overlays.
    for (const Overlay& overlay : overlays_) overlay.draw();
    if (screen_) swap();
    debugLines_.clear();
}

void cRenderer::present() {
    if (screen_) swap();
}

void cRenderer::swap() {
    if (!screenshot_.empty()) {
        if (!writeScreenshot(screenshot_, width_, height_)) {
            cLogMgr::instance().error("The picture \"%s\" cannot be written", screenshot_.c_str());
        }
        screenshot_.clear();
    }
    limitFrameRate();
    SDL_GL_SwapBuffers();
    ++framesPresented_;
    platform::framePresented();
}

void cRenderer::limitFrameRate() {
    const uint32_t elapsed = platform::ticks() - lastPresent_;
    if (elapsed < kLeastFrameMs) platform::sleepMs(kLeastFrameMs - elapsed);
    lastPresent_ = platform::ticks();
}

void cRenderer::setProjection(bool ortho) {
    if (!screen_) return;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    if (ortho) {
        glOrtho(0, width_, 0, height_, -1, 1);
    } else {
        gluPerspective(kFieldOfView, static_cast<double>(width_) / height_, kNearPlane, kFarPlane);
    }
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void cRenderer::drawLoadingScreen() {
    if (!screen_ || loadingTexture_ == kTextureFailed) return;
    if (loadingTexture_ == kNoTexture) loadingTexture_ = loadTexture("img\\loading.bmp");
    if (loadingTexture_ < 0) {
        loadingTexture_ = kTextureFailed;
        return;
    }
    glPushMatrix();
    setProjection(false);
    glPushAttrib(GL_ENABLE_BIT);
    beginFrame();
    setProjection(true);
    glColor4ub(255, 255, 255, 255);
    glDisable(GL_BLEND);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(loadingTexture_));
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_DEPTH_TEST);
    const auto cx = static_cast<float>(width_ / 2), cy = static_cast<float>(height_ / 2);
    drawRectangle(cx - 64, cy - 20, cx + 64, cy + 20, 0, 0, 1, 0.3125f);
    setProjection(false);
    present();
    glPopAttrib();
    glPopMatrix();
}

void cRenderer::print(int x, int y, float scale, uint8_t glyphSet, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const std::string text = formatText(kTextBuffer, format, args);
    va_end(args);
    font_.draw(x, y, scale, glyphSet, text);
}

void cRenderer::printWrapped(int x, int y, float scale, uint8_t glyphSet, int maxWidth, const char* format,
                             ...) {
    va_list args;
    va_start(args, format);
    const std::string text = formatText(kTextBuffer, format, args);
    va_end(args);
    font_.drawWrapped(x, y, scale, glyphSet, maxWidth, text);
}

int cRenderer::textWidth(uint8_t glyphSet, float scale, const std::string& text) const {
    return cTextFont::width(glyphSet, scale, text);
}

void cRenderer::addDebugText(const char* format, ...) {
    va_list args;
    va_start(args, format);
    debugLines_.push_back(formatText(kDebugBuffer, format, args));
    va_end(args);
}

int32_t cRenderer::loadTexture(const std::string& fileName) {
    return cTextureCache::instance().load(fileName);
}

int32_t cRenderer::createTexture(int width, int height, int bpp, const void* pixels) {
    return cTextureCache::instance().create(width, height, bpp, pixels);
}

int32_t cRenderer::createTexture1D(const void* texels, int width) {
    return cTextureCache::instance().create1D(texels, width);
}

std::string cRenderer::textureFileName(int32_t texture) const {
    return cTextureCache::instance().fileName(texture);
}

void drawRectangle(float x0, float y0, float x1, float y1) {
    drawRectangle(x0, y0, x1, y1, 0, 0, 1, 1);
}

void drawRectangle(float x0, float y0, float x1, float y1, float s0, float t0, float s1, float t1) {
    glBegin(GL_QUADS);
    glTexCoord2f(s0, t0);
    glVertex2f(x0, y0);
    glTexCoord2f(s1, t0);
    glVertex2f(x1, y0);
    glTexCoord2f(s1, t1);
    glVertex2f(x1, y1);
    glTexCoord2f(s0, t1);
    glVertex2f(x0, y1);
    glEnd();
}

void drawOverWindow(float r, float g, float b, float a) {
    if (!platform::hasGlContext()) return;
    glEnable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_TEXTURE_2D);
    glColor4f(r, g, b, a);
    const cRenderer& renderer = cRenderer::instance();
    drawRectangle(0, 0, static_cast<float>(renderer.getWidth()), static_cast<float>(renderer.getHeight()));
    glColor4ub(255, 255, 255, 255);
}
