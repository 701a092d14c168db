#include "ui/bindings.h"

namespace {
constexpr int kArrowUp = 273, kArrowDown = 274, kArrowRight = 275, kArrowLeft = 276; // SDL key codes
constexpr float kArrowFactor = 10; ///< an arrow key counts as so many pixels of mouse movement

bool isCommand(int command) {
    return command >= 0 && command < 2 * kCommandCount;
}
size_t slot(int command) {
    return static_cast<size_t>(command % kCommandCount);
}
} // namespace

void cBindings::setKey(int code, bool held) {
    if (!isKey(code)) return;
    if (keys_) keys_[code] = held ? 1 : 0;
    if (!held) stale_[static_cast<size_t>(code)] = false;
}

void cBindings::press(int code) {
    setKey(code, true);
    if (!isKey(code)) return;
    const auto key = static_cast<size_t>(code);
    stale_[key] = stale_[key] && held_[key];
    tapped_[key] = tapped_[key] || !held_[key];
    held_[key] = true;
}

void cBindings::release(int code) {
    setKey(code, false);
    if (isKey(code)) held_[static_cast<size_t>(code)] = false;
}

void cBindings::distrustHeld() {
    forgetTaps();
    for (size_t key = 0; keys_ && key < stale_.size(); ++key) stale_[key] = keys_[key] != 0;
}

void cBindings::distrust(int code) {
    if (!isKey(code)) return;
    stale_[static_cast<size_t>(code)] = true;
    tapped_[static_cast<size_t>(code)] = false; // also when it is up again within the same pump
}

bool cBindings::isKeyDown(int code) const {
    if (!keys_ || !isKey(code) || isDistrusted(code)) return false;
    return keys_[code] != 0 || tapped_[static_cast<size_t>(code)];
}

int32_t cBindings::getBinding(int command) const {
    if (!isCommand(command)) return 0;
    return command < kCommandCount ? settings.keysThirdPerson[slot(command)]
                                   : settings.keysFirstPerson[slot(command)];
}

void cBindings::setBinding(int command, int32_t key) {
    if (!isCommand(command) || key < 0 || key >= kKeyCount) return;
    (command < kCommandCount ? settings.keysThirdPerson : settings.keysFirstPerson)[slot(command)] = key;
}

bool cBindings::isCommandDown(int command) const {
    return isCommand(command) && isKeyDown(getBinding(command));
}

bool cBindings::isCommandTriggered(int command) {
    if (!isCommandDown(command) || repeatTimers_[slot(command)] > 0) return false;
    repeatTimers_[slot(command)] = settings.repeatIntervals[slot(command)];
    return true;
}

void cBindings::holdOffCommand(int command, int32_t ms) {
    if (isCommand(command)) repeatTimers_[slot(command)] = ms;
}

void cBindings::countDown(uint32_t elapsedMs) {
    for (int32_t& timer : repeatTimers_) {
        timer = timer > 0 && static_cast<uint32_t>(timer) > elapsedMs
                    ? timer - static_cast<int32_t>(elapsedMs)
                    : 0;
    }
}

void cBindings::setControlMode(int view, int mode) {
    if (mode < kControlMouse || mode > kControlInvertedArrows) return;
    (view == 0 ? settings.controlThirdPerson : settings.controlFirstPerson) = static_cast<uint8_t>(mode);
}

bool cBindings::getCameraControl(int view, int mouseDX, int mouseDY, float& dx, float& dy) const {
    const float s = settings.sensitivity;
    const int mode = getControlMode(view);
    if (mode == kControlMouse || mode == kControlInvertedMouse) {
        dx = static_cast<float>(mouseDX) * s;
        dy = static_cast<float>(mouseDY) * s;
    } else if (mode == kControlArrows || mode == kControlInvertedArrows) {
        dx = static_cast<float>(isKeyDown(kArrowRight) - isKeyDown(kArrowLeft)) * s * kArrowFactor;
        dy = static_cast<float>(isKeyDown(kArrowUp) - isKeyDown(kArrowDown)) * s * kArrowFactor;
    } else {
        return false;
    }
    if (mode == kControlInvertedMouse || mode == kControlInvertedArrows) dy = -dy;
    return dx != 0 || dy != 0;
}
