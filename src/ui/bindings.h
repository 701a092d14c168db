#pragma once
#include "ui/input_settings.h"

#include <array>

/// Which keys are held, and what the bound commands make of them.
class cBindings {
public:
    cInputSettings settings;

    /// SDL's key-state array of kKeyCount entries; entries 1 to 5 are the mouse buttons. Null: nothing is
    /// held.
    void setKeyState(uint8_t* keys) { keys_ = keys; }
    void setKey(int code, bool held);
    /// Events of a key or mouse button. OUR OWN RULE: what was pressed counts as held until forgetTaps(),
    /// even when it is released before: a tap within one pump is not lost. A repeated press is no new one.
    void press(int code);
    void release(int code);
    void forgetTaps() { tapped_.fill(false); } ///< once a pump, after a frame has read them
    /// What is held now does nothing until it is pressed anew, and what was tapped nothing at all.
    void distrustHeld();
    void distrust(int code); ///< the same of one that is held
    bool isDistrusted(int code) const { return isKey(code) && stale_[static_cast<size_t>(code)]; }
    bool isKeyDown(int code) const;

    /// The key is held and the repeat timer has run out; then restarts the timer. Ask once per command and
    /// update.
    bool isCommandTriggered(int command);
    bool isCommandDown(int command) const; ///< held, timers untouched
    void holdOffCommand(int command, int32_t ms);
    void countDown(uint32_t elapsedMs);

    int32_t getBinding(int command) const; ///< 0 for a command outside of 0 … 31
    void setBinding(int command, int32_t key);

    /// Look deltas of a view (0 third person, 1 first person). False when there is none.
    bool getCameraControl(int view, int mouseDX, int mouseDY, float& dx, float& dy) const;
    int getControlMode(int view) const {
        return view == 0 ? settings.controlThirdPerson : settings.controlFirstPerson;
    }
    void setControlMode(int view, int mode);

private:
    static bool isKey(int code) { return code >= 0 && code < kKeyCount; }

    uint8_t* keys_ = nullptr;
    std::array<bool, kKeyCount> tapped_{}; ///< pressed since the last pump began
    std::array<bool, kKeyCount> held_{};   ///< by the events; SDL's array runs ahead of them
    std::array<bool, kKeyCount> stale_{};  ///< held, and distrusted until it has been up
    std::array<int32_t, kCommandCount> repeatTimers_{};
};
