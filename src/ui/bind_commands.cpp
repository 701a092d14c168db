#include "ui/bind_commands.h"

#include "ui/input_mgr.h"
#include "ui/settings_screens.h"

namespace {
constexpr size_t kSlot = 19; ///< characters of a name that count
constexpr size_t kCommandBlanks = 15;

/// Names over blanks, so that columns of them stand below one another.
std::string padded(std::string name, size_t width) {
    name.resize(std::min(name.size(), kSlot));
    if (name.size() < width) name.resize(width, ' ');
    return name;
}

struct Slots {
    std::array<std::string, kCommandCount> commands;
    std::array<std::string, kKeyCount> keys;

    Slots() {
        cKeyNames names;
        names.load();
        for (size_t i = 0; i < commands.size(); ++i) commands[i] = padded(names.commands[i], kCommandBlanks);
        for (size_t i = 0; i < keys.size(); ++i)
            keys[i] = padded(names.keys[i] == cKeyNames::kNoName ? "?" : names.keys[i], kSlot);
    }
};

/// The last slot that begins with the text, −1 without one.
template <size_t N> int lastBeginningWith(const std::array<std::string, N>& slots, const std::string& text) {
    for (size_t i = N; i-- > 0;) {
        if (slots[i].starts_with(text)) return static_cast<int>(i);
    }
    return -1;
}
} // namespace

int bindKey(const std::vector<std::string>& params) {
    cInputMgr& input = cInputMgr::instance();
    const Slots slots;
    const int command = lastBeginningWith(slots.commands, params[0]);
    const int key = lastBeginningWith(slots.keys, params[1] + ' ');
    if (command < 0) {
        input.print("Invalid command \"%s\"", params[0].c_str());
        return -1;
    }
    if (key < 0) {
        input.print("Invalid input \"%s\"", params[1].c_str());
        return -1;
    }
    const std::string view = params.size() >= 3 ? params[2] : "";
    if (view != kFirstPersonWord) {
        input.bindings.setBinding(command, key);
        input.print("%s for third person set to %s", params[0].c_str(), params[1].c_str());
    }
    if (view != kThirdPersonWord) {
        input.bindings.setBinding(command + kFirstPersonCommands, key);
        input.print("%s for first person set to %s", params[0].c_str(), params[1].c_str());
    }
    return 0;
}

int printBindings(const std::vector<std::string>&) {
    cInputMgr& input = cInputMgr::instance();
    const cInputSettings& s = input.bindings.settings;
    const Slots slots;
    const auto keyOf = [&](int command) {
        return slots.keys[static_cast<size_t>(input.bindings.getBinding(command))].c_str();
    };
    input.print("COMMAND          FIRST PERSON        THIRD PERSON");
    input.print("-------------------------------------------------");
    for (int i = 0; i < kCommandCount; ++i)
        input.print("%s  %s  %s", slots.commands[static_cast<size_t>(i)].c_str(),
                    keyOf(i + kFirstPersonCommands), keyOf(i));
    input.print(" ");
    input.print("First-person camera controlled by %s", controlModeName(s.controlFirstPerson));
    input.print("Third-person camera controlled by %s", controlModeName(s.controlThirdPerson));
    input.print("%s", walkText(s).c_str());
    input.print("%s", relativeText(s).c_str());
    input.print("Camera sensitivity is %2.2f", static_cast<double>(s.sensitivity) * 10000);
    input.print(" ");
    return 0;
}
