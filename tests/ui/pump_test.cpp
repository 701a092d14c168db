// What the pump makes of SDL's events: taps, focus, typing.

#include "support/test_world.h"
#include "ui/input_mgr.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {
class Pump : public ::testing::Test {
protected:
    Pump() {
        SDL_Init(SDL_INIT_VIDEO);
        pump();
    }
    ~Pump() override { SDL_Quit(); }

    void pump() { input.pump(16, &t.state); }
    static void key(int code, bool down, int unicode = 0) {
        SDL_Event event{};
        event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.sym = static_cast<SDLKey>(code);
        event.key.keysym.unicode = static_cast<Uint16>(unicode);
        SDL_PushEvent(&event);
    }
    static void button(int number, bool down) {
        SDL_Event event{};
        event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        event.button.button = static_cast<Uint8>(number);
        SDL_PushEvent(&event);
    }
    static void focus(int what, bool gained) {
        SDL_Event event{};
        event.type = SDL_ACTIVEEVENT;
        event.active.state = static_cast<Uint8>(what);
        event.active.gain = gained;
        SDL_PushEvent(&event);
    }
    static void moveTo(int x, int y) {
        SDL_Event event{};
        event.type = SDL_MOUSEMOTION;
        event.motion.x = static_cast<Uint16>(x);
        event.motion.y = static_cast<Uint16>(y);
        event.motion.xrel = event.motion.yrel = 5;
        SDL_PushEvent(&event);
    }

    TestWorld t;
    cInputMgr& input = cInputMgr::instance();
};
} // namespace

TEST_F(Pump, ATapWithinOnePumpCountsUntilTheNext) {
    for (const int code : {static_cast<int>(SDLK_w), static_cast<int>(SDLK_ESCAPE), SDL_BUTTON_LEFT}) {
        for (const int command : {+CMD_USE, CMD_USE + kFirstPersonCommands}) {
            const auto push = [code](bool down) { code <= 5 ? button(code, down) : key(code, down); };
            t.state = STATE_MENU; // where Escape does nothing else
            input.bindings.setBinding(command, code);
            input.bindings.holdOffCommand(CMD_USE, 0);
            push(true);
            push(false);
            pump();
            EXPECT_TRUE(input.bindings.isKeyDown(code)) << code;
            EXPECT_TRUE(input.bindings.isCommandDown(command)) << code;
            EXPECT_TRUE(input.bindings.isCommandTriggered(command)) << code;
            pump();
            EXPECT_FALSE(input.bindings.isKeyDown(code)) << code;
            push(true);
            pump();
            pump();
            EXPECT_TRUE(input.bindings.isKeyDown(code)) << "held";
            push(true); // repeated
            push(false);
            pump();
            EXPECT_FALSE(input.bindings.isKeyDown(code)) << "a repeated press is no new one";
        }
    }
}

TEST_F(Pump, WithoutTheFocusNoMovementIsRead) {
    for (const int lost : {SDL_APPINPUTFOCUS, SDL_APPACTIVE, SDL_APPINPUTFOCUS | SDL_APPACTIVE}) {
        for (const GameState state : {STATE_GAME, STATE_MENU}) {
            t.state = state;
            moveTo(10, 20);
            pump();
            EXPECT_EQ(input.mouseX, 10);
            EXPECT_NE(input.mouseDX, 0);
            focus(lost, false);
            moveTo(300, 200);
            pump();
            EXPECT_FALSE(input.hasFocus());
            EXPECT_EQ(input.mouseX, 10);
            EXPECT_EQ(input.mouseDX, 0);
            focus(lost, true);
            moveTo(400, 100);
            pump();
            EXPECT_TRUE(input.hasFocus());
            EXPECT_EQ(input.mouseX, 400);
            EXPECT_EQ(input.mouseDX, 0) << "from where the pointer was before";
        }
    }
    focus(SDL_APPMOUSEFOCUS, false);
    pump();
    EXPECT_TRUE(input.hasFocus()) << "the pointer alone may leave";
    focus(SDL_APPACTIVE, false);
    focus(SDL_APPINPUTFOCUS, true);
    pump();
    EXPECT_TRUE(input.hasFocus()) << "what has the keys is not minimised";
}

TEST_F(Pump, WhatWasPressedBeforeTheFocusCameBackWaitsToBePressedAnew) {
    for (const int code : {static_cast<int>(SDLK_w), static_cast<int>(SDLK_i), SDL_BUTTON_LEFT}) {
        const auto push = [code](bool down) { code <= 5 ? button(code, down) : key(code, down); };
        for (const std::string order : {"press, gain", "press, pump, gain", "gain, press", "all at once"}) {
            if (order == "gain, press" && code > 5) continue;
            SCOPED_TRACE(order + ": " + std::to_string(code));
            t.state = STATE_GAME;
            focus(SDL_APPINPUTFOCUS, false);
            if (order != "all at once") pump();
            if (order == "gain, press") focus(SDL_APPINPUTFOCUS, true);
            push(true);
            if (order == "press, pump, gain") pump();
            if (order != "gain, press") focus(SDL_APPINPUTFOCUS, true);
            for (int i = 0; i < 3; ++i) {
                pump();
                EXPECT_FALSE(input.bindings.isKeyDown(code));
                EXPECT_EQ(t.state, STATE_GAME) << "no inventory";
                push(true); // repeated
            }
            push(false);
            push(true);
            pump();
            EXPECT_TRUE(input.bindings.isKeyDown(code)) << "pressed anew";
            push(false);
            pump();
        }
    }
    focus(SDL_APPINPUTFOCUS, false);
    focus(SDL_APPINPUTFOCUS, true);
    for (const bool down : {true, false}) button(SDL_BUTTON_LEFT, down);
    pump();
    EXPECT_FALSE(input.bindings.isKeyDown(SDL_BUTTON_LEFT)) << "a click that is over already";
    focus(SDL_APPINPUTFOCUS, false);
    focus(SDL_APPINPUTFOCUS, true);
    key(SDLK_w, true);
    // SDL's array runs ahead of the events, and holds what was held already without one.
    for (const int code : {SDLK_w, SDLK_s}) SDL_GetKeyState(nullptr)[code] = 1;
    for (int i = 0; i < 2; ++i) {
        button(SDL_BUTTON_WHEELUP, true);
        pump();
        EXPECT_EQ(input.bindings.isKeyDown(SDL_BUTTON_WHEELUP), i > 0) << "a step has no end to wait for";
        EXPECT_TRUE(input.bindings.isKeyDown(SDLK_w)) << "no key brings the focus";
        EXPECT_FALSE(input.bindings.isKeyDown(SDLK_s));
    }
}

TEST_F(Pump, WhereOneTypesKeysAreLetters) {
    const auto type = [&](int code, int unicode) {
        key(code, true, unicode);
        key(code, false);
        pump();
    };
    input.console.visible = true;
    ASSERT_EQ(input.bindings.getBinding(CMD_INVENTORY), SDLK_i);
    type(SDLK_i, 'i');
    EXPECT_EQ(input.console.line, "i");
    EXPECT_EQ(t.state, STATE_GAME) << "the inventory stays closed";
    EXPECT_FALSE(input.bindings.isKeyDown(SDLK_i)) << "text alone";
    for (const int control : {0, 1, 9, 12, 27, 31}) type(SDLK_TAB, control);
    EXPECT_EQ(input.console.line, "i");
    type(SDLK_n, 'n');
    type(SDLK_BACKSPACE, 8);
    EXPECT_EQ(input.console.line, "i");
    input.console.visible = false;
    type(SDLK_i, 'i');
    EXPECT_EQ(t.state, STATE_INVENTORY);
}

TEST_F(Pump, AKeyWithoutANameIsNotTakenForOneThatIsAwaited) {
    input.names.keys[SDLK_w] = "W";
    input.names.keys[161] = cKeyNames::kNoName;
    EXPECT_EQ(input.names.shown(SDLK_w), "W");
    EXPECT_EQ(input.names.shown(161), "KEY_161");
    for (const int none : {0, -1, kKeyCount}) EXPECT_EQ(input.names.shown(none), "NONE");
}
