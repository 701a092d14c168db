#pragma once
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>

/// OpenGL's headers and the four entry points that are looked up at run time.
namespace platform {
/// Null members when the driver's extension string does not name the extension.
struct GlExtensions {
    PFNGLACTIVETEXTUREARBPROC activeTexture = nullptr;             ///< glActiveTextureARB
    PFNGLMULTITEXCOORD2FARBPROC multiTexCoord2f = nullptr;         ///< glMultiTexCoord2fARB
    PFNGLCLIENTACTIVETEXTUREARBPROC clientActiveTexture = nullptr; ///< glClientActiveTextureARB
    PFNGLFOGCOORDFEXTPROC fogCoordf = nullptr;                     ///< glFogCoordfEXT

    bool hasMultitexture() const { return activeTexture && multiTexCoord2f && clientActiveTexture; }
};
extern GlExtensions gl;

/// Looks the entry points up. Needs a current context; an address alone proves nothing, so the extension
/// string decides.
void fetchGlExtensions();
/// True between a successful mode set and the release of its resources. Without a context GL must not be
/// called.
bool hasGlContext();
void setGlContext(bool present);
} // namespace platform
