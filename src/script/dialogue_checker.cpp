// A talking script is followed word by word, as the message box lays it out, but along every reply and
// without a width: what stands where, which pages nobody reaches, and from which there is no way on.

#include "script/dialogue_checker.h"

#include "script/cml_call_text.h"
#include "script/dialogue.h"

#include <algorithm>
#include <array>

namespace {
constexpr size_t kNowhere = std::string::npos;
constexpr size_t kTagLength = cDialogue::kTagLength;

/// What stands on the page so far, when a word is reached.
enum PageState : size_t { kEmpty, kStyled, kWritten, kPageStates };

class cScriptWalk {
public:
    cScriptWalk(cCmlCheck& check, const cXmlNode& source)
        : check_(check), source_(source), text_(source.text), breaks_(source.textBreaks()),
          flags_((text_.size() + 1) * kPageStates), reached_(text_.size(), false) {
        fromFirst_.fill(kNowhere);
        fromThird_.fill(kNowhere);
        for (size_t at = text_.find("^6"); at != kNowhere; at = text_.find("^6", at + 1)) {
            if (at + kTagLength == text_.size()) break;
            const auto label = static_cast<unsigned char>(text_[at + 2]);
            if (fromFirst_[label] == kNowhere) fromFirst_[label] = at;
            if (at >= cDialogue::kRepliesFrom && fromThird_[label] == kNowhere) fromThird_[label] = at;
        }
    }

    void run() {
        if (text_.find_first_not_of(' ') == kNowhere) warn(0, "it has no text");
        if (!text_.empty() && text_.back() == '>') warn(text_.size() - 1, "a > ends its text");
        reach(0, kEmpty);
        while (!open_.empty()) {
            at_ = open_.back();
            open_.pop_back();
            if (position() < text_.size()) word();
        }
        reportWarnings();
        reportLostText();
        reportCircles();
    }

private:
    /// Of a word in one page state.
    enum Flags : uint8_t { kSeen = 1, kPageEnds = 2, kLeaves = 4 };
    struct Step {
        size_t from, to;
    };

    size_t position() const { return at_ / kPageStates; }
    PageState page() const { return static_cast<PageState>(at_ % kPageStates); }
    void mark(int flags) { flags_[at_] = static_cast<uint8_t>(flags_[at_] | flags); }
    void warn(size_t position, const std::string& message) { warnings_.emplace(position, message); }

    size_t reach(size_t position, PageState state) {
        const size_t to = std::min(position, text_.size()) * kPageStates + state;
        if (flags_[to] == 0) {
            flags_[to] = position < text_.size() ? kSeen : kSeen | kPageEnds | kLeaves;
            open_.push_back(to);
        }
        return to;
    }
    void goOn(size_t position, PageState state) {
        steps_.push_back({at_, reach(position, state)});
        highlighted_.emplace(at_, steps_.back().to);
    }
    void endPage(size_t next) {
        mark(kPageEnds);
        goOn(next, kEmpty);
    }
    void cover(size_t end) {
        std::fill(reached_.begin() + static_cast<ptrdiff_t>(position()),
                  reached_.begin() + static_cast<ptrdiff_t>(std::min(end, text_.size())), true);
    }

    void word() {
        const size_t start = position(), blank = text_.find(' ', start);
        end_ = blank == kNowhere ? text_.size() : blank + 1;
        bare_ = text_.substr(start, std::min(blank, text_.size()) - start);
        if (bare_.size() >= 2 && bare_[0] == '^') {
            tag(start, bare_[1]);
        } else {
            ordinary(start);
        }
    }

    /// `tagLength`: of the hero's name at its beginning.
    void ordinary(size_t start, size_t tagLength = 0) {
        cover(end_);
        glued(start, bare_.size());
        if (const size_t caret = bare_.find('^', tagLength); caret != kNowhere) {
            warn(start + caret, caret == 0 ? "a lone ^ is shown as it stands"
                                           : "the tag " + quoted(bare_.substr(caret, kTagLength)) +
                                                 " is glued to the word before it");
        }
        goOn(end_, bare_.empty() ? page() : kWritten);
    }

    /// Where a word reaches over the end of a line, the next line's word has become part of it.
    void glued(size_t start, size_t length) {
        const auto at = std::upper_bound(breaks_.begin(), breaks_.end(), start);
        if (at != breaks_.end() && *at < start + length)
            warn(*at - 1, "a line's end is no blank: what stands before and after it is one word");
    }
    /// A tag of this length with something behind it.
    void tagGlued(size_t start, size_t length) {
        if (bare_.size() <= length) return;
        warn(start, "a blank is missing after the tag " + quoted(bare_.substr(0, length)) +
                        (isBreak(start + length) ? ", since a line's end is none" : ""));
    }
    bool isBreak(size_t at) const { return std::binary_search(breaks_.begin(), breaks_.end(), at); }

    void tag(size_t start, char kind) {
        const size_t argument = start + 2;
        switch (kind) {
        case '0':
            tagGlued(start, 2);
            if (page() != kWritten) warn(start, "the page that ends here shows nothing");
            cover(argument + 1);
            return endPage(argument + 1);
        case '2':
            if (bare_.size() < 3 || bare_[2] < '0' || bare_[2] > '7')
                warn(start, "^2 wants a colour from 0 to 7");
            tagGlued(start, 3);
            cover(end_);
            return goOn(end_, std::max(page(), kStyled));
        case '1':
        case '3':
        case '4':
            tagGlued(start, 2);
            cover(end_);
            return goOn(end_, kind == '3' ? kWritten : std::max(page(), kStyled));
        case '5':
            return jump(start, argument);
        case '6':
            warn(start, "the label " + quoted(text_.substr(start, 3)) +
                            " is run into without a jump, and shown as a word");
            cover(end_);
            return goOn(end_, kWritten);
        case '7':
            if (page() == kWritten)
                warn(start, "^7 on the same page as text: nobody sees it; write ^0 before");
            cover(argument);
            mark(kPageEnds | kLeaves);
            return;
        case '8':
            return replies(start, argument);
        case '9':
            return call(start, argument);
        case 'A':
            return ordinary(start, kTagLength);
        default:
            warn(start, "there is no tag " + quoted(bare_.substr(0, 2)));
            cover(end_);
            return goOn(end_, kWritten);
        }
    }

    void jump(size_t start, size_t argument) {
        cover(argument + 1);
        const size_t label =
            argument < text_.size() ? fromFirst_[static_cast<unsigned char>(text_[argument])] : kNowhere;
        if (label == kNowhere) {
            warn(start, "the label of the jump " + quoted(text_.substr(start, 3)) + " is not there");
            mark(kPageEnds);
        }
        goOn(label == kNowhere ? text_.size() : label + 3, page());
    }

    void replies(size_t start, size_t argument) {
        const int count = argument < text_.size() ? text_[argument] - '0' : 0;
        mark(kPageEnds);
        if (count < cDialogue::kLeastReplies || count > cDialogue::kMostReplies) {
            warn(start, "a menu has 2 to 6 replies");
            mark(kLeaves);
            return cover(end_);
        }
        if (page() == kWritten) warn(start, "the menu is drawn over the page's text; write ^0 before");
        size_t at = argument + 1;
        for (int i = 0; i < count; ++i) {
            const size_t caret = text_.find('^', at);
            if (caret == kNowhere || caret + 1 >= text_.size()) {
                warn(start, "reply " + std::to_string(i + 1) + " of the menu does not end in ^ and a label");
                mark(kLeaves);
                return cover(text_.size());
            }
            at = caret + 2;
            const size_t label = fromThird_[static_cast<unsigned char>(text_[caret + 1])];
            if (label != kNowhere) {
                goOn(label + 3, kEmpty);
            } else {
                warn(caret, "the label of the reply " + quoted(text_.substr(caret, 2)) + " is not there");
                mark(kLeaves);
            }
        }
        cover(at);
    }

    void call(size_t start, size_t argument) {
        if (page() != kEmpty) warn(start, "what stands before ^9 on its page vanishes; write ^0 before");
        const std::string written = text_.substr(argument, start + bare_.size() - argument);
        const size_t close = written.rfind(')');
        if (written.find('(') != kNowhere && close == kNowhere) {
            warn(start, "the call ends at its first blank: " + quoted(written));
        } else if (close != kNowhere && close + 1 < written.size()) {
            const bool lineEnd = isBreak(argument + close + 1);
            warn(start, lineEnd ? "a line's end is no blank: the word after ^9 is swallowed"
                                : "the word behind the call of ^9 is swallowed");
        }
        cover(end_);
        if (CmlCallText(written).name == "run_dialogue") {
            mark(kPageEnds | kLeaves); // the other conversation begins
        } else {
            goOn(end_, kEmpty);
        }
    }

    void reportWarnings() {
        for (const auto& [at, message] : warnings_) {
            check_.warn(source_.textLine(at),
                        "dialogue " + quoted(source_.getAttribute("name")) + ": " + message);
        }
        warnings_.clear();
    }

    /// Labels and blanks need not be reached.
    void reportLostText() {
        bool lost = false;
        for (size_t i = 0; i < text_.size(); ++i) {
            if (text_[i] == ' ') continue;
            if (reached_[i]) {
                lost = false;
            } else if (text_[i] == '^' && i + 2 < text_.size() && text_[i + 1] == '6') {
                i += 2;
                lost = false;
            } else if (!lost) {
                lost = true;
                warn(i, "the text from " + quoted(text_.substr(i, 20)) + " on can never be reached");
            }
        }
        reportWarnings();
    }

    /// Which words lead to one with the flag, by steps from words without the flag.
    std::vector<bool> leadingTo(uint8_t flag) const {
        std::vector<bool> found(flags_.size(), false);
        std::vector<size_t> open;
        const auto find = [&](size_t i) {
            if (!found[i]) open.push_back(i);
            found[i] = true;
        };
        for (size_t i = 0; i < flags_.size(); ++i) {
            if (flags_[i] & flag) find(i);
        }
        while (!open.empty()) {
            const size_t to = open.back();
            open.pop_back();
            const auto first = std::lower_bound(steps_.begin(), steps_.end(), to,
                                                [](const Step& s, size_t i) { return s.to < i; });
            for (auto step = first; step != steps_.end() && step->to == to; ++step) find(step->from);
        }
        return found;
    }

    void reportCircles() {
        std::sort(steps_.begin(), steps_.end(), [](const Step& a, const Step& b) { return a.to < b.to; });
        const std::vector<bool> ended = leadingTo(kPageEnds), left = leadingTo(kLeaves);
        for (size_t i = 0; i < flags_.size(); ++i) {
            if (flags_[i] == 0 || (ended[i] && left[i])) continue;
            warn(i / kPageStates, ended[i] ? "from here on the conversation can never be left"
                                           : "from here on it jumps in a circle that nothing stops");
            return reportWarnings();
        }
        reportRound();
    }

    /// The use key alone takes the first reply of every menu, or what it leads to once more.
    void reportRound() {
        std::set<size_t> passed;
        size_t menu = kNowhere;
        for (size_t at = 0; (flags_[at] & kLeaves) == 0;) {
            const auto next = highlighted_.find(at);
            if (next == highlighted_.end()) return;
            if (!passed.insert(at).second) {
                warn(menu,
                     "the use key alone goes round here for ever: a question that was asked has to lead on");
                return reportWarnings();
            }
            if (text_.compare(at / kPageStates, kTagLength, "^8") == 0) menu = at / kPageStates;
            at = next->second;
        }
    }

    cCmlCheck& check_;
    const cXmlNode& source_;
    const std::string& text_;
    const std::vector<size_t> breaks_;
    std::vector<uint8_t> flags_; ///< by position and page state
    std::vector<Step> steps_;
    std::map<size_t, size_t> highlighted_; ///< where a word leads, a menu by its first reply
    std::vector<bool> reached_;
    std::array<size_t, 256> fromFirst_, fromThird_; ///< the label's place, as jumps and replies look for it
    std::vector<size_t> open_;
    std::set<std::pair<size_t, std::string>> warnings_;
    size_t at_ = 0, end_ = 0;
    std::string bare_; ///< the word without its blank
};
} // namespace

void checkDialogue(cCmlCheck& check, const cXmlNode& source) {
    cScriptWalk(check, source).run();
}
