#pragma once
#include "core/game_state.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class cCmlElement;
class cCmlObject;
class cController;
class cObject;

/// Plays talking scripts: the text of a dialogue element, laid out page by page in the message box. The tags
/// of the text are described in docs/dialogue.md.
class cDialogue {
public:
    struct Colour {
        uint8_t r, g, b;
    };
    /// A word of the page as it is drawn, in pixels from the text's upper left corner (y grows downwards).
    struct PlacedWord {
        int x, y;
        Colour colour;
        std::string text;
    };
    /// The two overlaid rectangles of the box, as distances from the middle of the screen.
    struct Box {
        int outer, inner; ///< half widths; an inner one of 0 or less is not drawn
        bool animating;   ///< opening or closing: no text yet
    };

    static constexpr int32_t kLeastReplies = 2, kMostReplies = 6; ///< of a menu
    static constexpr size_t kTagLength = 2;                       ///< '^' and its character
    /// Labels in the first two characters are no targets of replies.
    static constexpr size_t kRepliesFrom = 2;

    /// The game's own, created on first use for the screen of that time.
    static cDialogue& instance();
    static void destroy();
    /// For a screen of so many pixels; the rest comes from section "messages".
    explicit cDialogue(int screenWidth);

    void start(const cCmlElement& element, cCmlObject& speaker);
    void close();
    bool isActive() const { return active_; }
    /// Something is to be drawn: also while the box closes.
    bool isVisible() const { return active_ || openWidth_ > 0; }
    /// The use key: next page, or the reply that is highlighted.
    void advance(uint32_t elapsedMs, GameState* state);
    void moveChoice(int by) {
        choice_ += by;
        choiceMoved_ = choiceMoved_ || choosing_; // who walks up to somebody holds a key as well
    }
    /// A menu waits, and nobody has yet moved a choice since the program's start.
    bool wantsHint() const { return choosing_ && !choiceMoved_; }
    /// A small line at the foot of the box, as long as a menu waits.
    void setHint(std::string hint) { hint_ = std::move(hint); }
    const std::string& getHint() const { return hint_; }
    /// The speaker's object is about to go: the conversation ends.
    void forget(const cObject* object);

    /// Once a frame: a step of the opening, then box and page.
    void draw();
    // The two halves of draw, for tests and tools.
    Box stepBox();
    /// Lays the current page out; runs its ^9 calls, may end the conversation.
    std::vector<PlacedWord> layOutPage();

    /// The characters that make a word beginning with '^' a tag.
    static std::string tags();

    bool isChoosing() const { return choosing_; }
    int32_t getChoice() const { return choice_; }

private:
    friend class cPageLayout;

    void fail(const char* message);
    void end(); ///< close and tell the event manager

    int32_t margin_, top_, height_; ///< pixels; top_ from the bottom of the screen
    int32_t halfWidth_, quarterWidth_;
    int32_t openWidth_ = 0; ///< pixels, 0 when closed
    bool active_ = false;
    bool choosing_ = false;
    bool choiceMoved_ = false;
    std::string hint_;
    int32_t choice_ = 0;
    int32_t replyCount_ = 0;
    std::array<char, kMostReplies> replyTargets_{};
    const cCmlElement* element_ = nullptr;
    cCmlObject* speaker_ = nullptr;
    const std::string* text_ = nullptr; ///< the element's; null when no dialogue runs
    size_t pageStart_ = 0, nextPage_ = 0;
    uint32_t session_ = 0; ///< counts starts and closes, so that a layout notices that its page is gone
};
