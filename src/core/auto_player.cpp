#include "core/auto_player.h"

#include "render/renderer.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <algorithm>
#include <cctype>

namespace {
constexpr float kDegreesPerLook = 25; ///< of the third-person camera
constexpr float kWalkWithin = 50;     ///< degrees off the course at which walking still pays
constexpr float kFacing = 2;          ///< degrees
constexpr float kFastestTurn = 5;     ///< degrees a frame
constexpr float kRadiansToDegrees = 57.29578f;

void pushKey(int key, bool down, char character = 0) {
    SDL_Event event{};
    if (key >= 1 && key <= 5) {
        event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        event.button.button = static_cast<Uint8>(key);
    } else {
        event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.sym = static_cast<SDLKey>(key);
        event.key.keysym.unicode = static_cast<unsigned char>(character);
    }
    SDL_PushEvent(&event);
}

/// From the hero to a point; nothing without a hero.
cVector3 wayTo(const cVector3& point) {
    const cObject* hero = cObjectMgr::instance().hero();
    return hero ? point - hero->getPosition() : cVector3();
}
} // namespace

void cAutoPlayer::setHeld(int command, bool held) {
    const uint32_t bit = 1u << command;
    if (((held_ & bit) != 0) == held) return;
    held_ ^= bit;
    pushKey(cInputMgr::instance().bindings.getBinding(command), held);
}

void cAutoPlayer::press(int command) {
    setHeld(command, true);
}
void cAutoPlayer::release(int command) {
    setHeld(command, false);
}

void cAutoPlayer::setKey(int key, bool down) const {
    // What these keys type, as SDL would say.
    const bool typing = down && (key == SDLK_RETURN || key == SDLK_ESCAPE || key == SDLK_BACKSPACE);
    pushKey(key, down, typing ? static_cast<char>(key) : '\0');
}

void cAutoPlayer::type(char character) const {
    const int key = std::tolower(static_cast<unsigned char>(character));
    pushKey(key, true, character);
    pushKey(key, false);
}

void cAutoPlayer::pointAt(int x, int y) const {
    const cInputMgr& input = cInputMgr::instance();
    const int height = static_cast<int>(cRenderer::instance().getHeight());
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = static_cast<Uint16>(x);
    event.motion.y = static_cast<Uint16>(y);
    event.motion.xrel = static_cast<Sint16>(x - input.mouseX);
    event.motion.yrel = static_cast<Sint16>(y - (height - 1 - input.mouseY));
    SDL_PushEvent(&event);
}

void cAutoPlayer::look(int dx, int dy) {
    const int w = static_cast<int>(cRenderer::instance().getWidth());
    const int h = static_cast<int>(cRenderer::instance().getHeight());
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = static_cast<Uint16>(std::clamp(w / 2 + dx, 0, w - 1));
    event.motion.y = static_cast<Uint16>(std::clamp(h / 2 - dy, 0, h - 1));
    SDL_PushEvent(&event);
}

float cAutoPlayer::turn(const cVector3& way) {
    const cVector3& forward = cWorld::instance().camera.getForward();
    const float crossY = forward.z * way.x - forward.x * way.z;
    const float toTheRight = -std::atan2(crossY, forward.x * way.x + forward.z * way.z) * kRadiansToDegrees;
    const float sensitivity = cInputMgr::instance().bindings.settings.sensitivity;
    const float degrees = std::clamp(toTheRight, -kFastestTurn, kFastestTurn);
    look(static_cast<int>(degrees / kDegreesPerLook / sensitivity), 0);
    return toTheRight;
}

bool cAutoPlayer::turnTowards(const cVector3& point) {
    return std::fabs(turn(wayTo(point))) < kFacing;
}

bool cAutoPlayer::walkTowards(const cVector3& point, float reach) {
    const cVector3 way = wayTo(point);
    if (std::hypot(way.x, way.z) < reach) {
        release(CMD_FORWARD);
        return true;
    }
    setHeld(CMD_FORWARD, std::fabs(turn(way)) < kWalkWithin);
    return false;
}
