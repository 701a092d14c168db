#pragma once
#include "script/cml_element.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

/// What the check asks of the game's data. Names and files as documents write them.
struct CmlCheckData {
    struct Animations {
        std::set<std::string> lower, upper;
    };

    std::function<bool(const std::string& fileName)> fileExists;
    /// Of an animated model, "directory\name". Null when it cannot be read; else valid as long as this
    /// record.
    std::function<const Animations*(const std::string& model)> animations;
    std::function<bool(const std::string& name)> itemExists;
    std::function<bool(const std::string& type, const std::string& race, const std::string& className)>
        kindExists;
    std::function<bool(const std::string& level, const std::string& name)> spawnPointExists;
};

/// What the rules of one document's check share: the compiled document, the game's data, what calls have been
/// seen to use, and the warnings.
class cCmlCheck {
public:
    cCmlCheck(const cCmlElement& document, const CmlCheckData& gameData, CmlReport& report);

    void warn(int line, const std::string& message) { warnings_.add(line, message); }
    /// The level's first object of that name, null when there is none.
    const cCmlElement* findObject(const std::string& name) const;
    /// Warns where a lower or upper body of the model lacks the animation; silent about models that cannot be
    /// read, which are reported where they are named.
    void checkAnimation(int line, const std::string& model, const std::string& name, bool lower, bool upper);

    const cCmlElement& root;
    const CmlCheckData& data;
    std::set<const cCmlElement*> used; ///< actions, dialogues and cinematics that something starts
    /// Objects whose action another object sets, with the actions that it sets; null for what is none.
    std::map<const cCmlElement*, std::set<const cCmlElement*>> steered;
    std::set<const cCmlElement*> timed; ///< objects whose timer is set
    std::set<const cCmlElement*> posed; ///< objects whose animation another object changes
    std::set<const cCmlElement*> moved; ///< objects that calls move, resize, switch or take away
    std::set<std::pair<const cCmlElement*, std::string>> setLocals;         ///< object and name
    std::map<std::pair<const cCmlElement*, std::string>, int> testedLocals; ///< and a line that asks
    std::map<int32_t, std::string> soundNames;                              ///< by their hash
    cCmlChildNames childNames;

private:
    std::map<std::string, const cCmlElement*, std::less<>> objects_;
    CmlReport& warnings_;
};

/// "name", for messages.
std::string quoted(std::string_view name);
/// The model of an object's "animated" appearance, empty for any other object.
std::string animatedModel(const cCmlElement& object);
