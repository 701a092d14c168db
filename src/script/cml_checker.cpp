// The order of the check, and the rules of elements, objects and reactions.

#include "script/cml_checker.h"

#include "core/name_hash.h"
#include "core/parse.h"
#include "script/animation_checker.h"
#include "script/cml_call_checker.h"
#include "script/cml_call_text.h"
#include "script/cml_vocabulary.h"
#include "script/dialogue_checker.h"
#include "script/placing_checker.h"

#include <algorithm>

namespace {
// --- Elements: where they may stand and what they may say

struct ElementRow {
    std::string_view parents;    ///< tags, each between blanks; " " for the root
    std::string_view attributes; ///< the same; those that hold three numbers are in kVectors
};
/// Indexed by CmlKind.
constexpr ElementRow kElements[] = {
    {" ", " name "},
    {" level ", " appearance collision music "},
    {" level ", " name type race class default_action fov on_set file spawnpoint "},
    {" object ", " type "},
    {" appearance ", " file no_head_shadow "},
    {" object player ", " size position direction up gravity radius "},
    {" physics ", " start end radius solid "},
    {" object ", " name on_set "},
    {" action object ", " type do point distance "},
    {" reaction ", " test do "},
    {" object ", " name "},
    {" object ", " name src skill "},
    {" level ", " spawnpoint "},
    {" level ", " file "},
    {" level ", " name length "},
    {" player cinematic ", " firstperson offset position "},
    {" camera player_cin ", " number pos target dir up speed upper_anim lower_anim "},
    {" cinematic ", " "},
    {" cinematic ", " frame rgb alpha "},
    {" level ", " r g b a top bottom "},
};
static_assert(std::size(kElements) == kCmlFog + 1);
constexpr std::string_view kVectors = " position direction up start end offset pos target dir rgb ";
constexpr std::string_view kNumbers =
    " fov size gravity radius solid distance skill length firstperson number "
    "speed frame alpha r g b a top bottom ";

bool lists(std::string_view words, const std::string& word) {
    return words.find(" " + word + " ") != std::string_view::npos;
}

bool isDecimal(const std::string& text) {
    char* end = nullptr;
    std::strtod(text.c_str(), &end);
    return end != text.c_str() && *end == 0;
}

bool isVector(const std::string& text) {
    const size_t first = text.find(','), last = text.rfind(',');
    return std::count(text.begin(), text.end(), ',') == 2 && isDecimal(text.substr(0, first)) &&
           isDecimal(text.substr(first + 1, last - first - 1)) && isDecimal(text.substr(last + 1));
}

void checkElement(cCmlCheck& check, const cCmlElement& e) {
    const ElementRow& row = kElements[e.elementKind];
    const std::string parent = e.parent ? e.parent->name : "";
    if (parent.empty() ? row.parents != " " : !lists(row.parents, parent))
        check.warn(e.line,
                   "<" + e.name + "> is not read here" + (parent.empty() ? "" : ", inside <" + parent + ">"));
    for (const auto& [name, value] : e.attributes) {
        if (!lists(row.attributes, name)) {
            check.warn(e.line, "<" + e.name + "> has no attribute " + quoted(name));
        } else if (lists(kVectors, name) && !isVector(value)) {
            check.warn(e.line, name + "=" + quoted(value) + " wants three numbers with commas between them");
        } else if (lists(kNumbers, name) && !isDecimal(value)) {
            check.warn(e.line, name + "=" + quoted(value) + " is no number");
        }
    }
}

/// The first of a name counts.
void checkNames(cCmlCheck& check, const cCmlElement& parent, CmlKind kind) {
    std::set<std::string> seen;
    for (int32_t i = 0; i < parent.childCount(); ++i) {
        const cCmlElement& e = *parent.childAt(i);
        if (e.elementKind != kind) continue;
        const std::string& name = e.getAttribute("name");
        if (name.empty()) {
            check.warn(e.line, "<" + e.name + "> without a name: nothing can start it");
        } else if (!seen.insert(name).second) {
            check.warn(e.line, "another " + e.name + " " + quoted(name) +
                                   " stands before this one, which is never used");
        }
    }
}

// --- Objects

/// Objects are found by the hash of their name, where numbers stand for keywords.
void checkObjectNames(cCmlCheck& check) {
    std::map<int32_t, std::string> seen;
    for (int32_t i = 0; i < check.root.childCount(); ++i) {
        const cCmlElement& e = *check.root.childAt(i);
        const std::string& name = e.getAttribute("name");
        if (e.elementKind != kCmlObjectElement || name.empty()) continue;
        for (const CmlKeywordRow& row : cmlKeywords()) {
            if (row.value == e.key || row.word == name)
                check.warn(e.line,
                           "calls read the name " + quoted(name) + " as the word " + std::string(row.word));
        }
        const auto [first, isNew] = seen.try_emplace(e.key, name);
        if (isNew) continue;
        check.warn(e.line,
                   first->second == name
                       ? "there is an object " + quoted(name) + " before this one: calls never reach this one"
                       : "the name " + quoted(name) + " has the hash of " + quoted(first->second) +
                             ": calls never reach this one");
    }
}

void checkAppearance(cCmlCheck& check, const cCmlElement& object) {
    const cCmlElement* appearance = object.findChild(kCmlAppearance);
    const cCmlElement* model = appearance ? appearance->findChild(kCmlModel) : nullptr;
    const std::string name = quoted(object.getAttribute("name"));
    if (!model || !object.findChild(kCmlPhysics)) {
        check.warn(object.line, "the object " + name +
                                    " is not created: it needs an appearance with a model, and physics");
        return;
    }
    const std::string &type = appearance->getAttribute("type"), &file = model->getAttribute("file");
    if (type == "static" ? !check.data.fileExists(file)
                         : type == "animated" && !check.data.animations(file)) {
        check.warn(model->line, "the model " + quoted(file) + " of the object " + name + " cannot be read" +
                                    (type == "static" ? "" : ", so its animations are not checked"));
    } else if (type != "static" && type != "animated") {
        check.warn(appearance->line,
                   "the object " + name + " is not created: its appearance is neither static nor animated");
    }
}

void checkKind(cCmlCheck& check, const cCmlElement& object) {
    const std::string &type = object.getAttribute("type"), &race = object.getAttribute("race"),
                      &className = object.getAttribute("class");
    if (type.empty() && race.empty() && className.empty()) return;
    if (!check.data.kindExists(type, race, className))
        check.warn(object.line, "the hierarchy has no " + type + ", " + race + ", " + className);
}

bool hasChild(const cCmlElement& e, CmlKind kind) {
    return e.findChild(kind) != nullptr;
}

void checkDefaultAction(cCmlCheck& check, const cCmlElement& object) {
    const std::string& wanted = object.getAttribute("default_action");
    const std::string name = quoted(object.getAttribute("name"));
    const cCmlElement* action = object.findChildWith(kCmlAction, "name", wanted);
    check.used.insert(action);
    if (!wanted.empty() && !action) {
        check.warn(object.line, "default_action: the object " + name + " has no action " + quoted(wanted));
    } else if (wanted.empty() && hasChild(object, kCmlAction) && check.steered.count(&object) == 0) {
        check.warn(object.line,
                   "the object " + name + " has no default_action, so no action of it ever begins");
    } else if (!hasChild(object, kCmlAction) && hasChild(object, kCmlReaction)) {
        check.warn(object.line, "the object " + name +
                                    " has reactions but no action; without a current action none happens");
    }
}

void checkUse(cCmlCheck& check, const cCmlElement& parent) {
    for (int32_t i = 0; i < parent.childCount(); ++i) {
        const cCmlElement& e = *parent.childAt(i);
        const bool startable =
            e.elementKind == kCmlAction || e.elementKind == kCmlDialogue || e.elementKind == kCmlCinematic;
        const std::string& name = e.getAttribute("name");
        if (startable && !name.empty() && check.used.count(&e) == 0 &&
            check.childNames.find(parent, e.elementKind, name) == i &&
            !(e.elementKind == kCmlCinematic && name == kIntroCinematic))
            check.warn(e.line, "nothing ever starts the " + e.name + " " + quoted(name));
    }
}

void checkTimer(cCmlCheck& check, const cCmlElement& object) {
    if (check.timed.count(&object) != 0) return;
    for (int32_t i = 0; i < object.childCount(); ++i) {
        const cCmlElement& e = *object.childAt(i);
        if (e.elementKind != kCmlAction || !e.slots[kTriggerTimer]) continue;
        check.warn(e.slots[kTriggerTimer]->line,
                   "nothing ever sets the timer of the object " + quoted(object.getAttribute("name")));
        return;
    }
}

void checkItem(cCmlCheck& check, const cCmlElement& item) {
    if (!check.data.itemExists(item.getAttribute("src")))
        check.warn(item.line, "there is no item " + quoted(item.getAttribute("src")) + " in objects.xml");
}

void checkLocals(cCmlCheck& check) {
    for (const auto& [variable, line] : check.testedLocals) {
        if (check.setLocals.count(variable) == 0)
            check.warn(line, "the local variable " + quoted(variable.second) + " of the object " +
                                 quoted(variable.first->getAttribute("name")) +
                                 " is asked for and never set");
    }
}

// --- Reactions

void checkDistance(cCmlCheck& check, const cCmlElement& reaction) {
    const std::string &type = reaction.getAttribute("type"), &point = reaction.getAttribute("point");
    if (toFloat(reaction.getAttribute("distance")) <= 0)
        check.warn(reaction.line, "reaction " + quoted(type) + " wants a distance above 0");
    if (!point.empty() && point != "player" && point != "self" && point != "origin")
        check.warn(reaction.line,
                   "point=" + quoted(point) + " is read as the origin; it can be player, self or origin");
}

/// Requirements are tried in order, and the reaction's own list comes last.
void checkBranches(cCmlCheck& check, const cCmlElement& reaction) {
    for (int32_t i = 0; i < reaction.childCount(); ++i) {
        const cCmlElement& e = *reaction.childAt(i);
        if (e.elementKind != kCmlRequirement || !e.getAttribute("test").empty()) continue;
        if (i + 1 < reaction.childCount() || !reaction.getAttribute("do").empty())
            check.warn(e.line,
                       "a requirement without a test always holds: what comes after it is never done");
        return;
    }
}

/// What the object must have for the trigger to happen.
void checkCause(cCmlCheck& check, const cCmlElement& object, const cCmlElement& reaction, ptrdiff_t trigger) {
    const std::string subject = "reaction " + quoted(reaction.getAttribute("type")) + ": the object " +
                                quoted(object.getAttribute("name"));
    const cCmlElement *physics = object.findChild(kCmlPhysics),
                      *appearance = object.findChild(kCmlAppearance);
    const bool touches = trigger == kTriggerCollisionChr || trigger == kTriggerCollisionMesh;
    if (touches && physics && !physics->findChild(kCmlBoundingVolume))
        check.warn(reaction.line, subject + " has no boundingvolume, so nothing touches it");
    if (trigger == kTriggerAnimationEnd && appearance && appearance->getAttribute("type") == "static")
        check.warn(reaction.line, subject + " is not animated");
}

void checkReaction(cCmlCheck& check, const cCmlElement& reaction, const cCmlElement* object) {
    const std::string& type = reaction.getAttribute("type");
    const auto triggers = cmlTriggers();
    const auto trigger = std::find(triggers.begin(), triggers.end(), type);
    if (trigger == triggers.end()) {
        check.warn(reaction.line,
                   "a reaction of the type " + quoted(type) + " never happens; there is no such trigger");
        return;
    }
    const auto number = trigger - triggers.begin();
    if (number == kTriggerDistanceExceeds || number == kTriggerDistanceFallsBelow)
        checkDistance(check, reaction);
    if (object) checkCause(check, *object, reaction, number);
    const cCmlElement* parent = reaction.parent;
    const bool slotted =
        parent && (parent->elementKind == kCmlAction || parent->elementKind == kCmlObjectElement);
    if (slotted && parent->slots[number] != &reaction)
        check.warn(reaction.line,
                   "another reaction " + quoted(type) + " stands before this one, which is never used");
    checkBranches(check, reaction);
}

// --- Level and cinematics

void checkFiles(cCmlCheck& check, const cCmlElement& files) {
    for (const char* scenery : {"appearance", "collision"}) {
        const std::string& file = files.getAttribute(scenery);
        if (!check.data.fileExists(file))
            check.warn(files.line, "there is no " + std::string(scenery) + " file " + quoted(file));
    }
    const std::string& music = files.getAttribute("music");
    if (!music.empty() && (music.size() < kShortestText || !check.data.fileExists(music + ".ogg")))
        check.warn(files.line, "there is no music file " + music + ".ogg");
}

void checkEnvironment(cCmlCheck& check, const cCmlElement& environment) {
    const std::string& file = environment.getAttribute("file");
    if (!check.data.fileExists(file))
        check.warn(environment.line, "there is no environment file " + quoted(file));
}

/// The first of a name counts.
void checkSpawnPoints(cCmlCheck& check) {
    std::set<std::string> seen;
    for (int32_t i = 0; i < check.root.childCount(); ++i) {
        const cCmlElement& e = *check.root.childAt(i);
        const std::string& name = e.getAttribute("spawnpoint");
        if (e.elementKind == kCmlPlayer && !seen.insert(name).second)
            check.warn(e.line,
                       "another player stands at " + quoted(name) + " before this one, which is never used");
    }
}

void checkCinematic(cCmlCheck& check, const cCmlElement& film) {
    const std::string name = "cinematic " + quoted(film.getAttribute("name"));
    if (toInt(film.getAttribute("length")) <= 0) check.warn(film.line, name + " wants a length above 0");
    for (int32_t i = 0; i < film.childCount(); ++i) {
        const cCmlElement& track = *film.childAt(i);
        if (track.elementKind != kCmlCamera && track.elementKind != kCmlPlayerCin) continue;
        if (track.childCount() == 0) check.warn(track.line, name + ": <" + track.name + "> has no frames");
        for (int32_t k = 1; k < track.childCount(); ++k) {
            const cCmlElement &before = *track.childAt(k - 1), &frame = *track.childAt(k);
            if (toInt(frame.getAttribute("number")) < toInt(before.getAttribute("number")))
                check.warn(frame.line, name + ": a frame's number is below that of the frame before");
        }
    }
}

void checkHeroFrame(cCmlCheck& check, const cCmlElement& frame) {
    const std::string &upper = frame.getAttribute("upper_anim"), &lower = frame.getAttribute("lower_anim");
    if (!frame.parent || frame.parent->elementKind != kCmlPlayerCin || (upper.empty() && lower.empty()))
        return;
    const std::string model = std::string(kHeroDirectory) + "\\" + kHeroModel;
    if (!check.data.animations(model)) {
        check.warn(frame.line, "the hero's model cannot be read, so the frame's animations are not checked");
        return;
    }
    if (!upper.empty()) check.checkAnimation(frame.line, model, upper, false, true);
    if (!lower.empty()) check.checkAnimation(frame.line, model, lower, true, false);
}

// --- The walk

void checkCalls(cCmlCheck& check, const cCmlElement& object, const cCmlElement& holder,
                const char* attribute) {
    for (const std::string& piece : splitCmlList(holder.getAttribute(attribute)))
        checkCmlCall(check, {object, holder.line, std::string_view(attribute) == "test"}, piece);
}

/// The calls of a talking script, as the compiler finds them.
void checkScriptCalls(cCmlCheck& check, const cCmlElement& object, const cXmlNode& source) {
    for (const CmlScriptCall& call : cmlScriptCalls(source.text)) {
        const bool cut = call.text.find('(') != std::string::npos && call.text.find(')') == std::string::npos;
        if (!cut) // else a fault of the script
            checkCmlCall(check, {object, source.textLine(call.at), false}, call.text);
    }
}

/// `source` is the same element as it was read.
void walk(cCmlCheck& check, const cCmlElement& e, const cXmlNode& source, const cCmlElement* object) {
    checkElement(check, e);
    if (e.elementKind == kCmlObjectElement) object = &e;
    for (const char* list : {"on_set", "do", "test"}) {
        if (object && lists(kElements[e.elementKind].attributes, list)) checkCalls(check, *object, e, list);
    }
    if (e.elementKind == kCmlObjectElement) {
        checkAppearance(check, e);
        checkKind(check, e);
    }
    if (e.elementKind == kCmlReaction) checkReaction(check, e, object);
    if (e.elementKind == kCmlItem) checkItem(check, e);
    if (e.elementKind == kCmlFiles) checkFiles(check, e);
    if (e.elementKind == kCmlEnvironment) checkEnvironment(check, e);
    if (e.elementKind == kCmlCinematic) checkCinematic(check, e);
    if (e.elementKind == kCmlFrame) checkHeroFrame(check, e);
    if (e.elementKind == kCmlDialogue) {
        if (object) checkScriptCalls(check, *object, source);
        checkDialogue(check, source);
    }
    for (const CmlKind kind : {kCmlAction, kCmlDialogue, kCmlItem, kCmlCinematic}) checkNames(check, e, kind);
    for (int32_t i = 0; i < e.childCount(); ++i)
        walk(check, *e.childAt(i), *source.children[static_cast<size_t>(i)], object);
}

/// What can be told only when all calls have been seen.
void checkWhatIsUsed(cCmlCheck& check, const cXmlNode& source) {
    checkObjectNames(check);
    for (int32_t i = 0; i < check.root.childCount(); ++i) {
        const cCmlElement& object = *check.root.childAt(i);
        if (object.elementKind != kCmlObjectElement) continue;
        checkDefaultAction(check, object);
        checkUse(check, object);
        checkTimer(check, object);
        checkAnimations(check, object, *source.children[static_cast<size_t>(i)]);
    }
    checkPlacing(check);
    checkShadows(check);
    checkUse(check, check.root);
    checkSpawnPoints(check);
    checkLocals(check);
}
} // namespace

int checkCmlDocument(const std::string& fileName, const CmlLookups& lookups, const CmlCheckData& data,
                     CmlReport& errors, CmlReport& warnings) {
    cCmlElement document;
    cXmlNode source; // with the talking scripts as they are written
    if (document.load(fileName, lookups, errors) != 0 || source.load(fileName) != 0) return -1;
    cCmlCheck check(document, data, warnings);
    walk(check, document, source, nullptr);
    checkWhatIsUsed(check, source);
    std::stable_sort(warnings.rows.begin(), warnings.rows.end(),
                     [](const CmlReport::Row& a, const CmlReport::Row& b) { return a.line < b.line; });
    return 0;
}
