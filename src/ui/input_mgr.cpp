#include "ui/input_mgr.h"

#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "platform/console_streams.h"
#include "platform/ending_signals.h"
#include "render/renderer.h"
#include "ui/command_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <cstdarg>
#include <cstdio>

namespace {
constexpr int kRepeatDelayMs = 500, kRepeatIntervalMs = 30;
constexpr int kResumeCode = 0;
constexpr char kReturn = 13;
constexpr char kBackspace = 8;
constexpr unsigned char kFirstLetter = 32;
constexpr unsigned char kLastLetter = 126; ///< of those that the font shows

cInputMgr* g_instance = nullptr;

int32_t inputSetting(const char* key) {
    return cConfigMgr::instance().getInt(key, "input");
}
} // namespace

cInputMgr& cInputMgr::instance() {
    if (!g_instance) g_instance = new cInputMgr;
    return *g_instance;
}

void cInputMgr::destroy() {
    delete g_instance;
    g_instance = nullptr;
}

cInputMgr::cInputMgr() {
    if (loadSettings(kLatest) != 0) {
        const std::vector<std::string> unread = unread_;
        if (loadSettings(kDefault) != 0) applySettings(); // the built-in ones
        unread_ = unread;
        settingsName.clear(); // what the player changes is not saved over the defaults
    }
    names.load();
}

cInputMgr::~cInputMgr() {
    if (saveOnExit && !keepSettings(kLatest))
        platform::tellTerminal("The settings could not be saved; " + cLogMgr::instance().whereToRead() +
                               " says why.");
}

void cInputMgr::print(const char* format, ...) {
    char text[5000];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    console.print(text);
}

void cInputMgr::firstPump() {
    int count = 0;
    Uint8* keys = SDL_GetKeyState(&count);
    bindings.setKeyState(count >= kKeyCount ? keys : nullptr);
    SDL_EnableKeyRepeat(kRepeatDelayMs, kRepeatIntervalMs);
    SDL_EnableUNICODE(1);
    pumped_ = true;
}

void cInputMgr::pump(uint32_t elapsedMs, GameState* state) {
    mouseDX = mouseDY = 0;
    if (!active) return;
    bindings.forgetTaps();
    wasAway_ = !hasFocus();
    if (!pumped_) {
        firstPump();
    } else {
        SDL_PumpEvents();
        bindings.setKey(SDL_BUTTON_WHEELUP, false);
        bindings.setKey(SDL_BUTTON_WHEELDOWN, false);
    }
    if (centerY_ == 0) {
        centerX_ = static_cast<int>(cRenderer::instance().getWidth()) / 2;
        centerY_ = static_cast<int>(cRenderer::instance().getHeight()) / 2;
    }
    SDL_Event event;
    while (SDL_PollEvent(&event)) handle(event, state);
    if (platform::isEndingAsked()) *state = STATE_QUIT;
    if (wasAway_) mouseDX = mouseDY = 0; // from where the pointer was to where it is now
    if (*state == STATE_GAME && hasFocus() && cRenderer::instance().hasScreen()) {
        SDL_WarpMouse(static_cast<Uint16>(centerX_), static_cast<Uint16>(centerY_));
    }
    bindings.countDown(elapsedMs);
    scrollConsole();
}

void cInputMgr::handle(const SDL_Event& event, GameState* state) {
    switch (event.type) {
    case SDL_KEYDOWN:
        // SDL has set the entry already, but for events that were pushed by a program.
        if (isTyping() && event.key.keysym.unicode >= kFirstLetter) {
            bindings.setKey(event.key.keysym.sym, true); // a typed letter is not lost
        } else {
            bindings.press(event.key.keysym.sym);
        }
        keyPressed(event.key.keysym.sym, event.key.keysym.unicode, (event.key.keysym.mod & KMOD_SHIFT) != 0,
                   state);
        break;
    case SDL_KEYUP:
        bindings.release(event.key.keysym.sym);
        break;
    case SDL_MOUSEMOTION:
        mouseMoved(event.motion.x, event.motion.y, event.motion.xrel, event.motion.yrel, *state);
        break;
    case SDL_MOUSEBUTTONDOWN:
        buttonPressed(event.button.button, event.button.x, event.button.y, state);
        break;
    case SDL_MOUSEBUTTONUP:
        // A step of the wheel is up again at once: it counts until the next pump.
        if (event.button.button <= SDL_BUTTON_RIGHT) bindings.release(event.button.button);
        break;
    case SDL_ACTIVEEVENT:
        focusChanged(event.active.state, event.active.gain != 0);
        break;
    case SDL_QUIT:
        *state = STATE_QUIT;
        break;
    case SDL_USEREVENT:
        if (event.user.code == kResumeCode) resume(state);
        break;
    default:
        break;
    }
}

void cInputMgr::keyPressed(int key, uint16_t unicode, bool shift, GameState* state) {
    if (!hasFocus() || bindings.isDistrusted(key)) return;
    if (*state == STATE_INTRO) *state = STATE_MENU;
    const bool typing = isTyping();
    // OUR OWN RULE: the inventory's key is a letter like others where one types.
    if (!typing && key == bindings.getBinding(CMD_INVENTORY) &&
        (*state == STATE_GAME || *state == STATE_INVENTORY)) {
        cInventory& inventory = cWorld::instance().inventory;
        inventory.toggle();
        if (*state != STATE_INVENTORY) returnState = *state;
        *state = inventory.isOpen() ? STATE_INVENTORY : STATE_GAME;
    }
    if (key == SDLK_ESCAPE && *state != STATE_MENU) {
        openMenu();
        returnState = *state;
        *state = STATE_MENU;
    }
    if (!typing) {
        const int32_t showConsole = inputSetting("CMD_SHOWCONSOLE");
        // Without the setting every key that has no character would open the console.
        if (showConsole == 0 || unicode != showConsole) return;
    }
    if (key != SDLK_LSHIFT) textInput(static_cast<char>(unicode & 0xFF), shift);
}

/// Only what is told counts: SDL knows of no focus at the start, nor where there is no window manager.
void cInputMgr::focusChanged(int what, bool gained) {
    const int lost = what & (SDL_APPINPUTFOCUS | SDL_APPACTIVE);
    const bool had = hasFocus();
    focusLost_ = gained ? focusLost_ & ~lost : focusLost_ | lost;
    if (gained && (what & SDL_APPINPUTFOCUS) != 0) focusLost_ = 0; // what has the keys is not minimised
    wasAway_ = wasAway_ || !hasFocus();
    if (!had && hasFocus()) bindings.distrustHeld();
}

void cInputMgr::mouseMoved(int x, int y, int dx, int dy, GameState state) {
    if (!hasFocus()) return;
    mouseX = x;
    mouseY = static_cast<int>(cRenderer::instance().getHeight()) - y - 1;
    if (state == STATE_GAME) {
        // The pointer is put back to the centre every frame.
        mouseDX = x - centerX_;
        mouseDY = mouseY - centerY_ + 1;
    } else {
        mouseDX = dx;
        mouseDY = dy;
    }
}

void cInputMgr::buttonPressed(int button, int x, int y, GameState* state) {
    if (button >= SDL_BUTTON_LEFT && button <= SDL_BUTTON_RIGHT) bindings.press(button);
    if (button == SDL_BUTTON_WHEELUP || button == SDL_BUTTON_WHEELDOWN) bindings.setKey(button, true);
    if (wasAway_) { // the click that brings the focus comes behind it as well
        bindings.distrust(button);
        return;
    }
    if (*state == STATE_INTRO) *state = STATE_MENU;
    if (*state == STATE_INVENTORY) cWorld::instance().inventory.clickCell(x, y);
}

void cInputMgr::resume(GameState* state) {
    *state = returnState;
    if (*state != STATE_LOADING) return;
    *state = STATE_GAME;
    cRenderer::instance().drawLoadingScreen();
}

void cInputMgr::textInput(char character, bool shift) {
    // Keys without a character never are the console key, also when the setting is missing.
    if (character != 0 && static_cast<unsigned char>(character) == inputSetting("CMD_SHOWCONSOLE")) {
        console.visible = !console.visible;
    } else if (character == kReturn) {
        if (promptActive) {
            promptConfirmed = true;
        } else {
            const std::string line = console.line;
            console.line.clear();
            cCommandMgr::instance().execute(line, console);
        }
    } else if (static_cast<unsigned char>(character) < kFirstLetter && character != kBackspace) {
        return; // OUR OWN RULE: control characters are not text
    } else if (!promptActive) {
        typeCharacter(console.line, maxTextLength, character, shift);
    } else if (static_cast<unsigned char>(character) <= kLastLetter) {
        typeCharacter(promptText, maxTextLength, character, shift);
    }
}

void cInputMgr::scrollConsole() {
    const int32_t up = inputSetting("CMD_SCROLLUP"), down = inputSetting("CMD_SCROLLDOWN");
    const int32_t height = inputSetting("CONSOLE_HEIGHT"), speed = inputSetting("CONSOLE_SCROLL_SPEED");
    if (bindings.isKeyDown(up)) {
        console.scrollUp(height, speed);
    } else if (bindings.isKeyDown(down)) {
        console.scrollDown(speed);
    }
}

void pushResumeEvent() {
    SDL_Event event{};
    event.type = SDL_USEREVENT;
    event.user.code = kResumeCode;
    SDL_PushEvent(&event);
}

void pushQuitEvent() {
    SDL_Event event{};
    event.type = SDL_QUIT;
    SDL_PushEvent(&event);
}
