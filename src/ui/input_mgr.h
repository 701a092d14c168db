#pragma once
#include "core/game_state.h"
#include "ui/bindings.h"
#include "ui/console.h"
#include "ui/key_names.h"
#include "ui/menu.h"

#include <string>
#include <vector>

union SDL_Event;

/// Where SDL's events are read: once a frame, into key state, mouse and state changes. Owns console and menu.
class cInputMgr {
public:
    static cInputMgr& instance();
    static void destroy(); ///< saves the settings in force as the latest

    void pump(uint32_t elapsedMs, GameState* state);
    /// OUR OWN RULE: while another window has the input focus, or this one is minimised, the pointer is not
    /// put back to the centre and no movement is read. What was pressed before the focus came back, as the
    /// click that brings it, does nothing until it is pressed anew.
    bool hasFocus() const { return focusLost_ == 0; }
    void openMenu() { menu.open(); }
    void print(const char* format, ...) __attribute__((format(printf, 2, 3))); ///< to the console

    bool getCameraControl(int view, float& dx, float& dy) const {
        return bindings.getCameraControl(view, mouseDX, mouseDY, dx, dy);
    }
    bool isWalkDefault() const { return bindings.settings.walkIsDefault != 0; }
    bool isMoveRelativeToCamera() const { return bindings.settings.moveRelativeToCamera != 0; }
    void setWalkDefault(bool on) { bindings.settings.walkIsDefault = on; }
    void setMoveRelativeToCamera(bool on) { bindings.settings.moveRelativeToCamera = on; }
    void setSensitivity(float value) { bindings.settings.sensitivity = value; }
    void setOption(uint8_t bit) {
        bindings.settings.options = static_cast<uint8_t>(bindings.settings.options | bit);
    }
    void clearOption(uint8_t bit) {
        bindings.settings.options = static_cast<uint8_t>(bindings.settings.options & ~bit);
    }
    float getSoundVolume() const { return bindings.settings.soundVolume; }
    float getMusicVolume() const { return bindings.settings.musicVolume; }

    // settings.cfl (settings_file.cpp). Names of at most 10 bytes; those that begin with kReserved are the
    // program's own.
    int loadSettings(const std::string& name); ///< 0, or −1 when the file does not hold it
    /// The entry was asked for when the file was there but could not be read, and nothing has been loaded
    /// since: what it holds may be there next time.
    bool isUnread(const std::string& name) const;
    /// Replaces the entry or appends it. False, with the file as it was, for an empty or too long name and
    /// when the file cannot be written.
    bool saveSettings(const std::string& name);
    /// As saveSettings, where no player has named the entry: false as well for one that is unread.
    bool keepSettings(const std::string& name) { return !isUnread(name) && saveSettings(name); }
    int findSettings(const std::string& name) const;
    std::vector<std::string> listSettings() const;
    /// What a settings screen has edited comes into force. OUR OWN RULE: it is also stored at once, under the
    /// entry of the hero whose next load brings it back, or, without one, under the latest; the defaults
    /// stay. False when that cannot be written.
    bool acceptEdited();
    /// The player has loaded or saved an entry. OUR OWN RULE: in play it is the hero's from now on; instead
    /// of the defaults, which stay, the latest. False when that cannot be written.
    bool keepChoice(const std::string& name);
    void applySettings(); ///< to HUD, shadows and volumes

    static constexpr char kReserved = '\xA3';
    static constexpr const char* kLatest = "\xA3"
                                           "LATEST";
    static constexpr const char* kDefault = "\xA3"
                                            "DEFAULT";

    cBindings bindings;
    cInputSettings editSettings; ///< copy that the settings screens edit
    cKeyNames names;
    cConsole console;
    cMenu menu;
    std::string settingsName;
    bool active = true;
    int mouseX = 0, mouseY = 0;   ///< y from the bottom
    int mouseDX = 0, mouseDY = 0; ///< of this frame
    GameState returnState = STATE_GAME;
    bool promptActive = false, promptConfirmed = false;
    std::string promptText;
    int maxTextLength = kConsoleLimit; ///< of what is typed, plus one
    bool saveOnExit = true;            ///< off in tool modes

    static constexpr int kConsoleLimit = static_cast<int>(cConsole::kLineLength) + 1; ///< of maxTextLength

private:
    cInputMgr();
    ~cInputMgr();
    void firstPump();
    void handle(const SDL_Event& event, GameState* state);
    void keyPressed(int key, uint16_t unicode, bool shift, GameState* state);
    bool isTyping() const { return console.visible || promptActive; }
    void focusChanged(int what, bool gained);
    void mouseMoved(int x, int y, int dx, int dy, GameState state);
    void buttonPressed(int button, int x, int y, GameState* state);
    void resume(GameState* state);
    void textInput(char character, bool shift);
    void scrollConsole();

    bool pumped_ = false;
    int focusLost_ = 0;               ///< SDL_APPINPUTFOCUS, SDL_APPACTIVE
    bool wasAway_ = false;            ///< without the focus at some time of this pump
    std::vector<std::string> unread_; ///< entries, see isUnread
    int centerX_ = 0, centerY_ = 0;
};

/// Ends the menu with the next pump, which returns to the remembered state.
void pushResumeEvent();
/// Ends the program with the next pump.
void pushQuitEvent();
