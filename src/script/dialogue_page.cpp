// How a page of a talking script becomes words with places: wrapping, colours, jumps, reply menus, calls.

#include "render/renderer.h"
#include "script/cml_element.h"
#include "script/cml_object.h"
#include "script/dialogue.h"
#include "world/world.h"

#include <algorithm>
#include <cstdlib>

namespace {
using Colour = cDialogue::Colour;

constexpr int kLine = 24;
constexpr int kSideMargins = 24, kTopAndBottom = 48;
constexpr Colour kWhite{255, 255, 255}, kSpeaker{192, 192, 255}, kOtherReply{128, 128, 128};
/// By the digit after ^2; digit 0 and everything beyond is white.
constexpr Colour kColours[] = {kWhite,    {64, 64, 255},  {255, 64, 64},  {64, 255, 64},
                               {0, 0, 0}, {255, 255, 64}, {64, 255, 255}, {255, 64, 255}};
constexpr int kMostJumps = 64; ///< in one layout: labels may lead to each other in a circle
constexpr size_t kTagLength = cDialogue::kTagLength;
} // namespace

/// One pass over the current page.
class cPageLayout {
public:
    explicit cPageLayout(cDialogue& dialogue)
        : dialogue_(dialogue), text_(*dialogue.text_), position_(dialogue.pageStart_),
          session_(dialogue.session_) {}

    std::vector<cDialogue::PlacedWord> run() {
        while (!done_ && position_ < text_.size()) {
            const size_t blank = text_.find(' ', position_);
            wordEnd_ = blank == std::string::npos ? text_.size() : blank + 1;
            if (!tag()) ordinary(text_.substr(position_, wordEnd_ - position_));
        }
        if (!done_) dialogue_.nextPage_ = text_.size();
        return std::move(words_);
    }

private:
    /// Acts on the tag at the position and moves past it; false when the word is an ordinary one.
    bool tag() {
        if (text_[position_] != '^' || position_ + 1 >= text_.size()) return false;
        for (const TagRow& row : kTags) {
            if (row.tag != text_[position_ + 1]) continue;
            (this->*row.act)(position_ + kTagLength < text_.size() ? text_[position_ + kTagLength] : '\0');
            return true;
        }
        return false;
    }

    void pageBreak(char) { pageEnds(std::min(position_ + kTagLength + 1, text_.size())); }
    void lineBreak(char) {
        breakLine_ = true;
        position_ = wordEnd_;
    }
    void colour(char digit) {
        colour_ = digit >= '1' && digit <= '7' ? kColours[digit - '0'] : kWhite;
        position_ = wordEnd_;
    }
    void speakerLabel(char) {
        if ((column_ > 0 || breakLine_) && !newLine()) return;
        colour_ = kSpeaker;
        place(cWorld::instance().shownHeroName() + ": ");
        position_ = wordEnd_;
    }
    void plainLine(char) {
        if (!newLine()) return;
        colour_ = kWhite;
        position_ = wordEnd_;
    }
    void ending(char) {
        done_ = true;
        dialogue_.end();
    }
    void heroName(char) {
        ordinary(cWorld::instance().shownHeroName() +
                 text_.substr(position_ + kTagLength, wordEnd_ - position_ - kTagLength));
    }

    static int widthOf(const std::string& word) { return cRenderer::instance().textWidth(0, 1.0f, word); }
    int lineWidth() const { return 2 * dialogue_.halfWidth_ - kSideMargins; }

    /// Draws what stands at the position and moves past it, unless the page is full.
    void ordinary(const std::string& word) {
        if ((breakLine_ || column_ + widthOf(word) > lineWidth()) && !newLine()) return;
        place(word);
        position_ = wordEnd_;
    }

    void place(const std::string& word) {
        words_.push_back({column_, line_, colour_, word});
        column_ += widthOf(word);
    }

    /// False when the page is full: the word at the position begins the next one.
    bool newLine() {
        breakLine_ = false;
        column_ = 0;
        line_ += kLine;
        // A box too low for a second line still shows one word a page, or nobody would get past it.
        if (line_ <= dialogue_.height_ - kTopAndBottom || position_ == dialogue_.pageStart_) return true;
        pageEnds(position_);
        return false;
    }

    void pageEnds(size_t next) {
        dialogue_.nextPage_ = next;
        done_ = true;
    }

    void jump(char label) {
        const size_t at = text_.find(std::string{'^', '6', label});
        if (++jumps_ > kMostJumps) {
            dialogue_.speaker_->reportOnce(std::string("has a dialogue that jumps in a circle at ^5") +
                                           label);
            position_ = text_.size();
        } else {
            position_ = at == std::string::npos ? text_.size() : at + kTagLength + 1;
        }
    }

    void replies(char digit) {
        done_ = true;
        const int count = digit - '0';
        size_t at = position_ + kTagLength + 1;
        if (count < cDialogue::kLeastReplies || count > cDialogue::kMostReplies) {
            dialogue_.fail("Talking script contains errors! check all ^8 tags, only 2-6 replies allowed!");
            return;
        }
        dialogue_.choice_ = (dialogue_.choice_ % count + count) % count;
        for (int i = 0; i < count; ++i) {
            const size_t end = std::min(text_.find('^', at), text_.size());
            if (end + 1 >= text_.size()) {
                dialogue_.fail(
                    "Talking script contains errors! check all ^8 tags, all answers must end with a ^ "
                    "redirection!");
                return;
            }
            dialogue_.replyTargets_[static_cast<size_t>(i)] = text_[end + 1];
            words_.push_back(
                {0, kLine * i, i == dialogue_.choice_ ? kWhite : kOtherReply, text_.substr(at, end - at)});
            at = end + kTagLength;
        }
        dialogue_.replyCount_ = count;
        dialogue_.choosing_ = true;
    }

    /// Runs once: later frames lay the page out from behind the tag.
    void call(char) {
        const int index = std::atoi(text_.c_str() + position_ + kTagLength);
        position_ = dialogue_.pageStart_ = wordEnd_;
        dialogue_.element_->runCall(*dialogue_.speaker_, index);
        // The call may have ended this conversation, or begun another one.
        done_ = done_ || dialogue_.session_ != session_;
    }

    struct TagRow {
        char tag;
        void (cPageLayout::*act)(char argument);
    };
    static const TagRow kTags[10];
    friend class cDialogue;

    cDialogue& dialogue_;
    const std::string& text_;
    size_t position_, wordEnd_ = 0;
    const uint32_t session_;
    int column_ = 0, line_ = 0; ///< pixels
    Colour colour_ = kWhite;
    bool breakLine_ = false, done_ = false;
    int jumps_ = 0;
    std::vector<cDialogue::PlacedWord> words_;
};

/// ^6 is none: text that runs into a label shows it.
constexpr cPageLayout::TagRow cPageLayout::kTags[10] = {
    {'0', &cPageLayout::pageBreak},    {'1', &cPageLayout::lineBreak}, {'2', &cPageLayout::colour},
    {'3', &cPageLayout::speakerLabel}, {'4', &cPageLayout::plainLine}, {'5', &cPageLayout::jump},
    {'7', &cPageLayout::ending},       {'8', &cPageLayout::replies},   {'9', &cPageLayout::call},
    {'A', &cPageLayout::heroName},
};

std::string cDialogue::tags() {
    std::string all;
    for (const cPageLayout::TagRow& row : cPageLayout::kTags) all += row.tag;
    return all;
}

std::vector<cDialogue::PlacedWord> cDialogue::layOutPage() {
    if (!text_) return {};
    return cPageLayout(*this).run();
}
