#include "script/animation_checker.h"

#include "script/cml_call_text.h"

#include <algorithm>

namespace {
/// What an animation may be doing: a set of these bits. A call changes every member of the set.
enum Doing : unsigned { kStillOnce = 1, kStillLooping = 2, kPlaysOnce = 4, kPlaysLooping = 8 };
constexpr unsigned kStill = kStillOnce | kStillLooping, kPlays = kPlaysOnce | kPlaysLooping;
constexpr int kMostEntered = 64; ///< actions that one list leads to: they may set each other without end

unsigned played(unsigned doing) {
    return (doing & kStill) << 2 | (doing & kPlays);
}
unsigned halted(unsigned doing) {
    return (doing & kPlays) >> 2 | (doing & kStill);
}
unsigned typed(unsigned doing, bool loops) {
    return ((doing & kStill) ? (loops ? kStillLooping : kStillOnce) : 0u) |
           ((doing & kPlays) ? (loops ? kPlaysLooping : kPlaysOnce) : 0u);
}
/// Sooner or later what plays once has ended.
unsigned later(unsigned doing) {
    return (doing & kPlaysOnce) ? doing | kStillOnce : doing;
}

class cAnimationWalk {
public:
    cAnimationWalk(cCmlCheck& check, const cCmlElement& object, const cXmlNode& source)
        : check_(check), object_(object), source_(source), plays_(playsIn(object)) {}

    void run() {
        doing_ = kStillOnce;
        perform(object_.line, splitCmlList(object_.getAttribute("on_set")));
        enter(object_.getAttribute("default_action"));
        settle();
        followOthers();
        while (!open_.empty()) {
            const cCmlElement* action = *open_.begin();
            open_.erase(open_.begin());
            for (const cCmlElement* reaction : action->slots) {
                if (reaction) react(action, *reaction);
            }
            // A copy: what is said may start what else is said.
            for (const std::string& dialogue : std::set<std::string>(talks_[action])) talk(action, dialogue);
        }
    }

private:
    using Calls = std::vector<std::string>;
    struct Unplayed {
        int line;
        std::string call;
    };

    bool isOwn(const CmlCallText& call) const {
        return !call.prefixed || call.object == object_.getAttribute("name");
    }
    /// In the calls of an element and of everything inside it.
    bool isCalledIn(const cCmlElement& e, const char* name, const char* arg = "") const {
        for (const char* list : {"on_set", "do"}) {
            for (const std::string& piece : splitCmlList(e.getAttribute(list))) {
                const CmlCallText call(piece);
                if (call.name == name && call.arg(0) == arg && isOwn(call)) return true;
            }
        }
        for (int32_t i = 0; i < e.childCount(); ++i)
            if (isCalledIn(*e.childAt(i), name, arg)) return true;
        return false;
    }
    bool playsIn(const cCmlElement& e) const { return isCalledIn(e, "play_animation"); }
    static bool isSetting(const std::string& name) {
        return name == "set_animation" || name == "set_animation_legs" || name == "set_animation_torso";
    }

    // --- One list, with the lists that it leads to

    void perform(int line, const Calls& calls) {
        bool says = plays_; // who neither plays anything nor says how it goes may want a posture
        for (const std::string& piece : calls) says |= CmlCallText(piece).name == "set_animation_type";
        for (const std::string& piece : calls) {
            const CmlCallText call(piece);
            if (!isOwn(call)) continue;
            if (isSetting(call.name) && says) unplayed_.push_back({line, piece});
            if (call.name == "set_animation_type") doing_ = typed(doing_, call.arg(0) == "loop");
            if (call.name == "play_animation") doing_ = played(doing_);
            if (call.name == "halt_animation") doing_ = halted(doing_);
            if (call.name == "play_animation" || call.name == "halt_animation") unplayed_.clear();
            if (call.name == "set_action") enter(call.arg(0));
            if (call.name == "run_dialogue") begun_.insert(call.arg(0));
        }
    }

    void enter(const std::string& name) {
        const int32_t index = check_.childNames.find(object_, kCmlAction, name);
        if (index >= 0) enter(object_.childAt(index));
    }
    void enter(const cCmlElement* action) {
        if (++entered_ > kMostEntered) return;
        action_ = action;
        perform(action_->line, splitCmlList(action_->getAttribute("on_set")));
    }

    /// What the list has left behind.
    void settle() {
        if ((doing_ & kStill) != 0 && !isPlayedLater()) {
            for (const Unplayed& set : unplayed_) {
                if (warned_.insert({set.line, set.call}).second)
                    check_.warn(set.line, set.call + ": nothing plays it where the animation before it has "
                                                     "ended; play_animation() is missing");
            }
        }
        unplayed_.clear();
        if (action_) {
            unsigned& known = doingIn_[action_];
            if ((known | doing_) != known) open_.insert(action_);
            known |= doing_;
            talks_[action_].merge(begun_);
        }
        begun_.clear();
        entered_ = 0;
    }
    bool isPlayedLater() const {
        return action_ && std::any_of(std::begin(action_->slots), std::end(action_->slots),
                                      [&](const cCmlElement* r) { return r && playsIn(*r); });
    }

    // --- What may happen in an action

    /// Actions that other objects set, nobody knows when: while it plays, if it ever does.
    void followOthers() {
        const auto steered = check_.steered.find(&object_);
        if (steered == check_.steered.end()) return;
        const bool loops = isCalledIn(object_, "set_animation_type", "loop");
        for (const cCmlElement* action : steered->second) {
            if (!action) continue;
            doing_ = !plays_ ? kStillOnce : loops ? kPlaysLooping : kPlaysOnce;
            enter(action);
            settle();
        }
    }

    void start(const cCmlElement* action, unsigned doing, int line, const Calls& calls) {
        action_ = action;
        doing_ = doing;
        perform(line, calls);
        settle();
    }

    void react(const cCmlElement* action, const cCmlElement& reaction) {
        unsigned doing = later(doingIn_[action]);
        if (&reaction == action->slots[kTriggerAnimationEnd]) doing &= kStill;
        if (doing == 0) return;
        for (int32_t i = 0; i < reaction.childCount(); ++i) {
            const cCmlElement& requirement = *reaction.childAt(i);
            start(action, doing, requirement.line, splitCmlList(requirement.getAttribute("do")));
        }
        start(action, doing, reaction.line, splitCmlList(reaction.getAttribute("do")));
    }

    void talk(const cCmlElement* action, const std::string& dialogue) {
        const int32_t index = check_.childNames.find(object_, kCmlDialogue, dialogue);
        if (index < 0) return;
        const cXmlNode& script = *source_.children[static_cast<size_t>(index)];
        for (const CmlScriptCall& call : cmlScriptCalls(script.text))
            start(action, later(doingIn_[action]), script.textLine(call.at), {call.text});
    }

    cCmlCheck& check_;
    const cCmlElement& object_;
    const cXmlNode& source_;
    const bool plays_; ///< anything at all
    const cCmlElement* action_ = nullptr;
    unsigned doing_ = 0;
    int entered_ = 0; ///< since the list began
    std::vector<Unplayed> unplayed_;
    std::set<std::string> begun_; ///< dialogues
    std::map<const cCmlElement*, unsigned> doingIn_;
    std::map<const cCmlElement*, std::set<std::string>> talks_; ///< what is said in an action
    std::set<const cCmlElement*> open_;                         ///< actions to be looked at (again)
    std::set<std::pair<int, std::string>> warned_;
};
} // namespace

void checkAnimations(cCmlCheck& check, const cCmlElement& object, const cXmlNode& source) {
    if (check.posed.count(&object) == 0 && !animatedModel(object).empty())
        cAnimationWalk(check, object, source).run();
}
