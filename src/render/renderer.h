#pragma once
#include "models/mesh.h"
#include "render/text.h"

#include <cstdint>
#include <string>
#include <vector>

struct SDL_Surface;

/// The window, its OpenGL context and the frame: projections, clearing, overlays, the cap of 16 ms, pictures.
/// 2D coordinates are pixels from the lower left corner.
class cRenderer {
public:
    /// One layer painted over the finished 3D picture; rows are painted in order.
    struct Overlay {
        const char* name;
        void (*draw)();
    };

    static cRenderer& instance();
    static void destroy();
    ~cRenderer();

    // Set-up.
    void setCaption(const std::string& title, const std::string& iconFile);
    /// 0, or −1 when there is no such mode; the size is stored all the same. Every texture, list and font
    /// made earlier is gone either way.
    int setVideoMode(int width, int height, bool fullscreen);
    void releaseResources();
    void setOverlays(std::vector<Overlay> overlays) { overlays_ = std::move(overlays); }
    /// Called after each mode set, so that whoever holds texture names can load them anew.
    void addModeListener(void (*listener)()) { modeListeners_.push_back(listener); }

    // Frame.
    void beginFrame();
    void endFrame();
    void present();
    /// Pixels with the origin at the lower left, or the 45 degree view; both reset the modelview matrix.
    void setProjection(bool ortho);
    void drawLoadingScreen();
    bool hasScreen() const { return screen_ != nullptr; }

    // Pictures of the run.
    /// Writes the next presented frame as PNG to a real path.
    void requestScreenshot(const std::string& path) { screenshot_ = path; }
    /// Frames that are not pictured are computed but not rasterised.
    void setFast(bool fast) { fast_ = fast; }
    uint32_t framesPresented() const { return framesPresented_; }

    // Text; see cTextFont.
    void print(int x, int y, float scale, uint8_t glyphSet, const char* format, ...)
        __attribute__((format(printf, 6, 7)));
    void printWrapped(int x, int y, float scale, uint8_t glyphSet, int maxWidth, const char* format, ...)
        __attribute__((format(printf, 7, 8)));
    int textWidth(uint8_t glyphSet, float scale, const std::string& text) const;
    /// Lines about the frame's work, dropped at its end.
    void addDebugText(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Textures; see cTextureCache.
    int32_t loadTexture(const std::string& fileName);
    int32_t createTexture(int width, int height, int bpp, const void* pixels);
    int32_t createTexture1D(const void* texels, int width);
    std::string textureFileName(int32_t texture) const;

    uint32_t getWidth() const { return static_cast<uint32_t>(width_); }
    uint32_t getHeight() const { return static_cast<uint32_t>(height_); }

private:
    cRenderer();
    void initGl();
    void limitFrameRate();
    void swap();

    int32_t loadingTexture_ = kNoTexture; ///< or kTextureFailed
    bool sdlReady_ = false;
    SDL_Surface* screen_ = nullptr;
    int32_t width_ = 0, height_ = 0;
    bool fullscreen_ = false;
    bool fast_ = false;
    uint32_t lastPresent_ = 0; ///< ticks
    uint32_t framesPresented_ = 0;
    std::string screenshot_;
    cTextFont font_;
    std::vector<Overlay> overlays_;
    std::vector<void (*)()> modeListeners_;
    std::vector<std::string> debugLines_;
};

/// Rectangle in the current 2D projection; texture coordinates (s0, t0) at (x0, y0).
void drawRectangle(float x0, float y0, float x1, float y1);
void drawRectangle(float x0, float y0, float x1, float y1, float s0, float t0, float s1, float t1);
/// Lays one colour over the whole window, components 0 … 1. Leaves the colour white, blending on, depth test
/// and texturing off.
void drawOverWindow(float r, float g, float b, float a);
