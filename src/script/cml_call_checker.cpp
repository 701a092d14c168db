// What the arguments of every procedure and test must be: one row each, one small rule a kind of argument.

#include "script/cml_call_checker.h"

#include "core/name_hash.h"
#include "core/parse.h"
#include "script/cml_call_text.h"
#include "script/cml_vocabulary.h"

#include <algorithm>
#include <initializer_list>

namespace {
constexpr int kMostArgs = 3;
constexpr int kStandingSpeed = 10; ///< thousandths of a unit: moves this short or shorter are not made

struct Call {
    cCmlCheck& check;
    const CmlCallPlace& place;
    const std::string& written;
    CmlCallText text;
    const cCmlElement* self = nullptr; ///< who carries it out; null when the document has no such object

    bool isForeign() const { return self && self != &place.object; }
    std::string selfName() const { return quoted(self ? self->getAttribute("name") : ""); }
    void warn(const std::string& message) const { check.warn(place.line, written + ": " + message); }
};

using ArgRule = void (*)(const Call&, const std::string& arg);
using SelfRule = void (*)(const Call&);

bool isNumber(const std::string& text) {
    const size_t start = text.empty() || text[0] != '-' ? 0 : 1;
    return text.size() > start && text.find_first_not_of("0123456789", start) == std::string::npos;
}

// --- Numbers and words

void number(const Call& call, const std::string& arg) {
    if (!isNumber(arg)) {
        call.warn(quoted(arg) + " is no whole number");
    } else if (const long long n = std::strtoll(arg.c_str(), nullptr, 10); n < INT32_MIN || n > INT32_MAX) {
        call.warn(arg + " is more than a number can hold");
    }
}

/// It will not stay as it was placed.
void changed(const Call& call) {
    call.check.moved.insert(call.self);
}

void moving(const Call& call) {
    changed(call);
    const cCmlElement* physics = call.self->findChild(kCmlPhysics);
    if (!physics || !physics->findChild(kCmlBoundingVolume))
        call.warn("the object " + call.selfName() + " has no boundingvolume, so it cannot be moved");
}

void speed(const Call& call, const std::string& arg) {
    number(call, arg);
    if (!isNumber(arg)) return;
    const int32_t n = toInt(arg);
    if (n < 0) call.warn("a negative speed is read as a huge one; turn instead");
    if (n > 0 && n <= kStandingSpeed) call.warn("moves nothing, a speed has to be above 10");
    if (n > kStandingSpeed && call.self) moving(call);
}

void timer(const Call& call, const std::string& arg) {
    number(call, arg);
    if (isNumber(arg) && toInt(arg) < 0) call.warn("a negative time is read as weeks");
    call.check.timed.insert(call.self);
}

void loopWord(const Call& call, const std::string& arg) {
    if (arg != "loop" && arg != "single") call.warn("wants loop or single");
}

void relation(const Call& call, const std::string& arg) {
    if (!isNumber(arg) && arg != "equal" && arg != "not_equal")
        call.warn("compares with a number, equal or not_equal; a name is never equal");
}

// --- Targets

void target(const Call& call, const std::string& arg, std::initializer_list<CmlKeyword> words) {
    const auto row = std::find_if(cmlKeywords().begin(), cmlKeywords().end(),
                                  [&](const CmlKeywordRow& r) { return r.word == arg; });
    if (row != cmlKeywords().end()) {
        if (std::find(words.begin(), words.end(), row->value) == words.end())
            call.warn(quoted(arg) + " is no target here");
    } else if (!startsWithLetter(arg)) {
        call.warn(quoted(arg) + " is no target");
    } else if (!call.check.findObject(arg)) {
        call.warn("the level has no object " + quoted(arg));
    }
}

void direction(const Call& call, const std::string& arg) {
    target(call, arg,
           {kWordPlayer, kWordTarget, kWordInvertTarget, kWordRandom, kWordInvertPlayer, kWordOrigin,
            kWordInvertOrigin, kWordInverted});
}
void position(const Call& call, const std::string& arg) {
    target(call, arg, {kWordPlayer, kWordTarget, kWordOrigin});
}
void aim(const Call& call, const std::string& arg) {
    target(call, arg, {kWordPlayer, kWordTarget, kWordRandom, kWordOrigin, kWordInverted});
}

// --- Children of the object: they are numbered in the object around the call, even for calls of another one

const cCmlElement* child(const Call& call, CmlKind kind, const char* tag, const std::string& name) {
    const cCmlElement& around = call.place.object;
    const int32_t index = call.check.childNames.find(around, kind, name);
    const std::string here = quoted(around.getAttribute("name"));
    if (index < 0) {
        call.warn("the object " + here + " has no " + tag + " " + quoted(name) +
                  (call.isForeign() ? "; it is looked up there, in the object around the call" : ""));
        return nullptr;
    }
    const cCmlElement* found = call.self ? call.self->childAt(index) : nullptr;
    const bool same = found && found->elementKind == kind && found->getAttribute("name") == name;
    if (call.self && !same) {
        call.warn("it is looked up in the object around the call, as child " + std::to_string(index) +
                  " of " + here + ", and that child of " + call.selfName() + " is no " + tag + " " +
                  quoted(name));
    }
    return same ? found : nullptr;
}

void action(const Call& call, const std::string& arg) {
    const cCmlElement* found = child(call, kCmlAction, "action", arg);
    call.check.used.insert(found);
    if (call.isForeign()) call.check.steered[call.self].insert(found);
}

void ownItem(const Call& call, const std::string& arg) {
    child(call, kCmlItem, "item", arg);
}

/// An unknown dialogue is the compiler's error.
void dialogue(const Call& call, const std::string& arg) {
    if (call.check.childNames.find(call.place.object, kCmlDialogue, arg) < 0) return;
    call.check.used.insert(child(call, kCmlDialogue, "dialogue", arg));
}

void cinematic(const Call& call, const std::string& arg) {
    const cCmlElement& root = call.check.root;
    call.check.used.insert(root.childAt(call.check.childNames.find(root, kCmlCinematic, arg)));
}

// --- Variables

/// Their numbers come from the table of the object around the call, too. False, with a warning, where the
/// same number means something else.
bool namesLocal(const Call& call, const std::string& name) {
    const auto index = [&](const cCmlElement& object) {
        const auto it = object.localNames.find(name);
        return it == object.localNames.end() ? -1 : it->second;
    };
    if (!call.isForeign() || index(call.place.object) == index(*call.self)) return true;
    call.warn("local variables are numbered by the object around the call, " +
              quoted(call.place.object.getAttribute("name")) + "; that number is not " + quoted(name) +
              " in " + call.selfName());
    return false;
}

void local(const Call& call, const std::string& arg) {
    if (!call.self || !namesLocal(call, arg)) return;
    if (call.place.test) {
        call.check.testedLocals.try_emplace({call.self, arg}, call.place.line);
    } else {
        call.check.setLocals.insert({call.self, arg});
    }
}

void secondLocal(const Call& call, const std::string& arg) {
    if (arg.empty() || startsLikeNumber(arg)) {
        number(call, arg);
    } else if (arg != "param" && call.self && namesLocal(call, arg)) {
        call.check.testedLocals.try_emplace({call.self, arg}, call.place.line);
    }
}

void global(const Call&, const std::string&) {}
void secondGlobal(const Call& call, const std::string& arg) {
    if (arg.empty() || startsLikeNumber(arg)) number(call, arg);
}

// --- Sounds and animations

void sound(const Call& call, const std::string& arg) {
    if (!call.check.data.fileExists(arg + ".wav")) call.warn("there is no sound file " + arg + ".wav");
    const auto [first, isNew] = call.check.soundNames.try_emplace(nameHash(arg), arg);
    if (!isNew && first->second != arg)
        call.warn("the sound's name has the hash of " + quoted(first->second) +
                  ", one of them is never heard");
}

void item(const Call&, const std::string&) {} // an unknown one is the compiler's error

void animationOf(const Call& call, const std::string& arg, bool lower, bool upper) {
    const std::string model = call.self ? animatedModel(*call.self) : "";
    if (!model.empty()) call.check.checkAnimation(call.place.line, model, arg, lower, upper);
}
void animation(const Call& call, const std::string& arg) {
    animationOf(call, arg, true, true);
}
void legs(const Call& call, const std::string& arg) {
    animationOf(call, arg, true, false);
}
void torso(const Call& call, const std::string& arg) {
    animationOf(call, arg, false, true);
}

// --- What the calling object must have

void animated(const Call& call) {
    if (call.isForeign()) call.check.posed.insert(call.self);
    if (animatedModel(*call.self).empty())
        call.warn("the object " + call.selfName() + " has no animated model");
}

void sight(const Call& call) {
    if (!call.self->hasAttribute("fov"))
        call.warn("the object " + call.selfName() + " has no fov, so it sees nobody");
}

void doorToLevel(const Call& call) {
    const std::string &file = call.self->getAttribute("file"), &point = call.self->getAttribute("spawnpoint");
    if (file == kEndOfTheGame) return; // no level: the last picture
    if (!call.check.data.fileExists(file)) {
        call.warn("the file of the object " + call.selfName() + " names no level: " + quoted(file));
    } else if (!call.check.data.spawnPointExists(file, point)) {
        call.warn("the level " + file + " has no spawnpoint " + quoted(point));
    }
}

void stream(const Call& call) {
    const std::string& file = call.self->getAttribute("file");
    if (file.empty() || !call.check.data.fileExists(file + ".ogg"))
        call.warn("the file of the object " + call.selfName() + " names no music: " + quoted(file));
}

struct CallRow {
    std::string_view name;
    int least = 0; ///< arguments that must be written
    ArgRule args[kMostArgs] = {};
    SelfRule self = nullptr;
};

constexpr CallRow kCalls[] = {
    {"set_direction", 1, {direction}},
    {"set_speed", 1, {speed}},
    {"set_timer", 1, {timer}},
    {"set_position", 1, {position}, changed},
    {"set_action", 1, {action}},
    {"destroy", 0, {}, changed},
    {"get_object", 1, {item, number}},
    {"run_dialogue", 1, {dialogue}},
    {"disable_physics"},
    {"enable_physics"},
    {"take_single_object", 1, {item, number}},
    {"take_all_objects", 1, {item}},
    {"take_selected_object"},
    {"set_active", 1, {number}, changed},
    {"swap_active", 0, {}, changed},
    {"set_animation", 1, {animation}, animated},
    {"set_animation_legs", 1, {legs}, animated},
    {"set_animation_torso", 1, {torso}, animated},
    {"set_animation_type", 1, {loopWord}, animated},
    {"halt_animation", 0, {}, animated},
    {"play_animation", 0, {}, animated},
    {"use_item", 2, {ownItem, aim}},
    {"set_selected_object", 1, {item}},
    {"get_subobject", 1, {item, number}},
    {"turn", 1, {number}},
    {"level"},
    {"set_acceleration", 3, {number, number, number}, moving},
    {"set_radius", 1, {number}, changed},
    {"run_cinematic", 1, {cinematic}},
    {"play_sound", 1, {sound, number}},
    {"run_vehicle", 0, {}, changed},
    {"swap_level", 0, {}, doorToLevel},
    {"play_stream", 0, {}, stream},
    {"intensity"},
    {"target_type", 1, {relation}},
    {"target_race", 1, {relation}},
    {"target_class", 1, {relation}},
    {"object_owned", 1, {item}},
    {"object_equipped", 1, {item}},
    {"active"},
    {"object_has_more_than", 2, {item, number}},
    {"object_has_less_than", 2, {item, number}},
    {"distance_less_than", 2, {position, number}},
    {"distance_more_than", 2, {position, number}},
    {"in_fov", 1, {position}, sight},
};
constexpr CallRow kLocal{"", 2, {local, secondLocal}}, kLocalParam{"", 1, {local}};
constexpr CallRow kGlobal{"", 2, {global, secondGlobal}}, kGlobalParam{"", 1, {global}};

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

const CallRow* findRow(std::string_view name) {
    for (const CallRow& row : kCalls) {
        if (row.name == name) return &row;
    }
    const bool ofParam = name.size() > 2 && name.substr(name.size() - 2) == "_p";
    if (contains(name, "local")) return ofParam ? &kLocalParam : &kLocal;
    if (contains(name, "global")) return ofParam ? &kGlobalParam : &kGlobal;
    return nullptr;
}

bool hasOuterBlank(const std::string& text) {
    return !text.empty() && (text.front() == ' ' || text.back() == ' ');
}

void checkArguments(const Call& call, const CallRow& row) {
    const auto& args = call.text.args;
    const auto most = static_cast<size_t>(std::find(std::begin(row.args), std::end(row.args), nullptr) -
                                          std::begin(row.args));
    if (args.size() < static_cast<size_t>(row.least) || args.size() > most)
        call.warn("takes " +
                  (static_cast<size_t>(row.least) == most ? "" : std::to_string(row.least) + " to ") +
                  std::to_string(most) + (most == 1 ? " argument" : " arguments"));
    for (size_t i = 0; i < std::min(args.size(), most); ++i) {
        if (hasOuterBlank(args[i])) {
            call.warn("the blank belongs to the argument " + quoted(args[i]) + "; write none");
        } else {
            row.args[i](call, args[i]);
        }
    }
}
} // namespace

bool isCheckedCall(std::string_view name) {
    return findRow(name) != nullptr;
}

void checkCmlCall(cCmlCheck& check, const CmlCallPlace& place, const std::string& piece) {
    Call call{check, place, piece, CmlCallText(piece)};
    const std::string& name = call.text.name;
    if (place.test ? !findFunction(name) : !findProcedure(name)) return; // the compiler's error
    call.self = call.text.prefixed ? check.findObject(call.text.object) : &place.object;
    if (!call.self) call.warn("the level has no object " + quoted(call.text.object));
    const CallRow* row = findRow(name);
    if (!row) return;
    checkArguments(call, *row);
    if (row->self && call.self) row->self(call);
}
