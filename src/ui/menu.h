#pragma once
#include "core/game_state.h"

#include <cstdint>
#include <string>

/// The menu. For now a pause screen: without a game it begins one at once, in a game it offers to go on or to
/// quit.
class cMenu {
public:
    void open();
    void close() { visible_ = false; }
    bool isVisible() const { return visible_; }
    /// Draws and reads its keys, at the end of every frame; does nothing while closed.
    void draw();
    /// After every mode set.
    void loadPictures();
    int32_t texture() const { return texture_; }
    /// The mouse pointer with its tip at (x, y), y from the bottom, in the current 2D projection.
    void drawPointer(int x, int y) const;

private:
    void beginGame();
    void readKeys();

    bool visible_ = false;
    bool keysHeld_ = true; ///< keys held when the menu opened do not count
    int32_t texture_ = -1;
    int32_t pointerTexture_ = -1;
    std::string notice_; ///< why there is no game
};

/// SDL event that ends the menu: the pump returns to the remembered state.
void pushResumeEvent();
void pushQuitEvent();
