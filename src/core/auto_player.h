#pragma once
#include "core/vector3.h"

#include <cstdint>

/// Plays by pressing the bound keys and moving the mouse, as a person would: it sets no position and no
/// state. Everything it pushes is seen by the next pump.
class cAutoPlayer {
public:
    void press(int command);
    void release(int command);
    void look(int dx, int dy); ///< pixels, right and up
    /// Keys of the menu, by SDL code; mouse buttons 1 to 5 as well.
    void setKey(int key, bool down) const;
    /// A press and release that types a character of ASCII.
    void type(char character) const;
    void pointAt(int x, int y) const; ///< moves the mouse; pixels of the window, y from its top
    /// Once a frame: turns the camera towards the point. True when it faces it within two degrees.
    bool turnTowards(const cVector3& point);
    /// Once a frame: turns the camera and walks towards the point. True when the hero stands within `reach`
    /// of it (heights do not count) or when there is no hero; the keys are then released.
    bool walkTowards(const cVector3& point, float reach = 0.4f);

private:
    float turn(const cVector3& way); ///< returns how many degrees to the right the way lay
    void setHeld(int command, bool held);
    uint32_t held_ = 0; ///< commands, one bit each
};
