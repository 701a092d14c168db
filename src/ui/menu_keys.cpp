// What the menu's keys and the mouse do in a frame.

#include "platform/gl_api.h"
#include "render/renderer.h"
#include "ui/input_mgr.h"
#include "ui/menu.h"
#include "ui/settings_screens.h"

#include <SDL.h>
#include <algorithm>

namespace {
constexpr int32_t kScrollStep = 8;
constexpr int32_t kBarFoot = 41, kBarHeight = 228; ///< the way of the scroll bar's thumb
constexpr int32_t kKeepLow = 60, kKeepHigh = 240;  ///< where the selected row stays
constexpr int32_t kFullHighlight = 16;
constexpr int32_t kThirdPersonX = 200, kFirstPersonX = 400; ///< where the columns of keys begin
constexpr int kLockKeys[] = {SDLK_NUMLOCK, SDLK_CAPSLOCK, SDLK_SCROLLOCK};

/// A key acts when its counter is 0, and then again when `holdFrames` have passed.
bool acts(int32_t& counter, bool held, int32_t holdFrames) {
    if (!held) {
        counter = 0;
        return false;
    }
    if (counter > 0) {
        --counter;
        return false;
    }
    counter = holdFrames;
    return true;
}

/// Without the characters that only move a cursor; blanks alone are nothing.
std::string cleaned(std::string text) {
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; });
    return text.find_first_not_of(' ') == std::string::npos ? std::string() : text;
}

bool isKeyDown(int key) {
    return cInputMgr::instance().bindings.isKeyDown(key);
}
} // namespace

void cMenu::draw() {
    if (!visible_ && slide_ == 0) return;
    if (visible_) {
        slide_ = std::min(slide_ + 1, kFullSlide);
        handleInput();
        stepHighlights();
    } else if (--slide_ == 0) {
        pushResumeEvent();
    }
    if (platform::hasGlContext()) paint();
}

int32_t cMenu::pointerX() const {
    return cInputMgr::instance().mouseX - (static_cast<int>(cRenderer::instance().getWidth()) / 2 - kOriginX);
}
int32_t cMenu::pointerY() const {
    return cInputMgr::instance().mouseY -
           (static_cast<int>(cRenderer::instance().getHeight()) / 2 - kOriginY);
}

void cMenu::handleInput() {
    const cInputMgr& input = cInputMgr::instance();
    // The counters run on while something else has the keys. A console line is not the menu's business.
    const bool keys = !input.console.visible;
    const bool mouse = isKeyDown(SDL_BUTTON_LEFT), right = keys && isKeyDown(SDLK_RIGHT);
    const auto acted = [](int32_t& counter, bool held) { return acts(counter, held, kHoldFrames); };
    const bool up = acted(holdUp_, keys && isKeyDown(SDLK_UP));
    const bool down = acted(holdDown_, keys && isKeyDown(SDLK_DOWN));
    const bool forward = acted(holdActivate_, mouse || right || (keys && isKeyDown(SDLK_RETURN)));
    const bool left = acted(holdLeft_, keys && isKeyDown(SDLK_LEFT));
    const bool back = acted(holdBack_, isKeyDown(SDL_BUTTON_RIGHT) || (keys && isKeyDown(SDLK_ESCAPE)));
    if (input.promptActive) {
        answerPrompt(back);
        return;
    }
    if (capture_ != kNoCapture) {
        captureKey();
        return;
    }
    selectByMouse();
    if (up) moveSelection(1);
    if (down) moveSelection(-1);
    if (isKeyDown(SDL_BUTTON_WHEELUP)) scrollBy(kScrollStep);
    if (isKeyDown(SDL_BUTTON_WHEELDOWN)) scrollBy(-kScrollStep);
    dragSlider();
    if (forward) {
        if (mouse && isOverScrollBar()) {
            scrollTowardsPointer();
        } else {
            activate(right ? kRightKey : mouse ? kMouseButton : kReturnKey);
        }
    } else if (left) {
        activate(kLeftKey);
    } else if (back) {
        goBack();
    }
}

/// Names of nothing, and the program's own, are not taken: the prompt stays.
void cMenu::answerPrompt(bool back) {
    cInputMgr& input = cInputMgr::instance();
    const std::string text = cleaned(input.promptText);
    const bool taken = input.promptConfirmed && !text.empty() && text[0] != cInputMgr::kReserved;
    input.promptConfirmed = false;
    if (!taken && !back) return;
    input.promptActive = false;
    input.maxTextLength = cInputMgr::kConsoleLimit;
    if (taken) (this->*answer_)(text);
}

void cMenu::captureKey() {
    if (capture_ == kAwaitRelease) {
        if (!isKeyDown(SDL_BUTTON_LEFT) && !isKeyDown(SDLK_RETURN)) capture_ = kAwaitKey;
        return;
    }
    for (int key = 1; key < kKeyCount; ++key) {
        if (!isKeyDown(key) || std::ranges::find(kLockKeys, key) != std::end(kLockKeys)) continue;
        bindKey(key);
        return;
    }
}

void cMenu::bindKey(int key) {
    cInputSettings& edit = cInputMgr::instance().editSettings;
    const auto command = static_cast<size_t>(selected_);
    if (columns_ != kFirstPerson) edit.keysThirdPerson[command] = key;
    if (columns_ != kThirdPerson) edit.keysFirstPerson[command] = key;
    capture_ = kNoCapture;
    // The key that was given is not meant for the menu.
    holdUp_ = holdDown_ = holdActivate_ = holdBack_ = holdLeft_ = kHoldFrames;
}

void cMenu::selectByMouse() {
    const cInputMgr& input = cInputMgr::instance();
    const int32_t x = pointerX(), y = pointerY();
    if ((input.mouseDX == 0 && input.mouseDY == 0) || y < kPageFoot || y >= kPageTop) return;
    for (size_t i = 0; i < items_.size(); ++i) {
        const Item& item = items_[i];
        if (std::abs(x - item.x) > item.halfWidth || std::abs(y + scroll_ - item.y) > item.halfHeight)
            continue;
        selected_ = static_cast<int32_t>(i);
        const SettingsScreen* screen = settingsScreen(page_);
        if (!screen || selected_ >= screen->keyRows) return;
        columns_ = x < kThirdPersonX ? kBothViews : x < kFirstPersonX ? kThirdPerson : kFirstPerson;
        return;
    }
}

/// A slider follows the held button in every frame, but for a press that has only opened the page.
void cMenu::dragSlider() {
    if (!isKeyDown(SDL_BUTTON_LEFT)) dragArmed_ = true;
    const SettingsScreen* screen = settingsScreen(page_);
    if (!screen || !dragArmed_ || !isKeyDown(SDL_BUTTON_LEFT) || isOverScrollBar()) return;
    const int32_t at = selected_ - screen->keyRows;
    if (at < 0 || at >= static_cast<int32_t>(screen->rows.size())) return;
    const SettingsRow& row = screen->rows[static_cast<size_t>(at)];
    if (!row.change) row.slider.place(cInputMgr::instance().editSettings, pointerX());
}

/// +1 is upwards.
void cMenu::moveSelection(int by) {
    const auto count = static_cast<int32_t>(items_.size());
    if (count == 0) {
        scrollBy(by * kScrollStep);
        return;
    }
    selected_ = (selected_ - by + count) % count;
    keepSelectedVisible();
}

void cMenu::scrollBy(int pixels) {
    scroll_ = std::clamp(scroll_ + pixels, 0, contentHeight_ - kVisibleHeight);
}

void cMenu::keepSelectedVisible() {
    const int32_t y = items_[static_cast<size_t>(selected_)].y - scroll_;
    if (y < kKeepLow) scrollBy(y - kKeepLow);
    if (y > kKeepHigh) scrollBy(y - kKeepHigh);
}

bool cMenu::isOverScrollBar() const {
    const int32_t x = pointerX(), y = pointerY();
    return contentHeight_ > kVisibleHeight && x >= kBarLeft && x <= kBarRight && y >= kPageFoot &&
           y <= kPageTop;
}

void cMenu::scrollTowardsPointer() {
    scrollBy(pointerY() > thumbFoot() + thumbHeight() / 2 ? kScrollStep : -kScrollStep);
}

int32_t cMenu::thumbFoot() const {
    return kBarFoot + scroll_ * kBarHeight / contentHeight_;
}

int32_t cMenu::thumbHeight() const {
    return kVisibleHeight * kBarHeight / contentHeight_;
}

void cMenu::stepHighlights() {
    for (size_t i = 0; i < items_.size(); ++i) {
        const int32_t step = static_cast<int32_t>(i) == selected_ ? 1 : -1;
        items_[i].highlight = std::clamp(items_[i].highlight + step, 0, kFullHighlight);
    }
}

void cMenu::activateRow(Source source) {
    cInputSettings& edit = cInputMgr::instance().editSettings;
    const SettingsScreen& screen = *settingsScreen(page_);
    if (selected_ < screen.keyRows) {
        if (source == kRightKey || source == kLeftKey) {
            const int step = source == kRightKey ? 1 : kColumnCount - 1;
            columns_ = static_cast<Columns>((columns_ + step) % kColumnCount);
        } else {
            capture_ = kAwaitRelease;
        }
        return;
    }
    const SettingsRow& row = screen.rows[static_cast<size_t>(selected_ - screen.keyRows)];
    if (row.change) {
        row.change(edit);
    } else if (source != kMouseButton) {
        row.slider.step(edit, source == kLeftKey ? -1 : 1);
    }
}
