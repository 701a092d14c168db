#include "platform/gl_api.h"

#include <SDL.h>
#include <string_view>

namespace platform {
GlExtensions gl;

namespace {
bool g_hasContext = false;

bool hasExtension(std::string_view name) {
    const auto* text = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    std::string_view all = text ? text : "";
    for (size_t at = all.find(name); at != std::string_view::npos; at = all.find(name, at + 1)) {
        const size_t end = at + name.size();
        if ((at == 0 || all[at - 1] == ' ') && (end == all.size() || all[end] == ' ')) return true;
    }
    return false;
}

template <typename Function> void fetch(Function& target, const char* name) {
    target = reinterpret_cast<Function>(SDL_GL_GetProcAddress(name));
}
} // namespace

void fetchGlExtensions() {
    gl = {};
    if (hasExtension("GL_ARB_multitexture")) {
        fetch(gl.activeTexture, "glActiveTextureARB");
        fetch(gl.multiTexCoord2f, "glMultiTexCoord2fARB");
        fetch(gl.clientActiveTexture, "glClientActiveTextureARB");
    }
    if (hasExtension("GL_EXT_fog_coord")) fetch(gl.fogCoordf, "glFogCoordfEXT");
}

bool hasGlContext() {
    return g_hasContext;
}
void setGlContext(bool present) {
    g_hasContext = present;
}
} // namespace platform
