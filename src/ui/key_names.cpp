#include "ui/key_names.h"

#include "platform/files.h"

#include <charconv>
#include <sstream>

void cKeyNames::load() {
    commands.fill({});
    keys.fill(kNoName);
    platform::Bytes bytes;
    if (!platform::readFile("keynames.cfl", bytes)) return;
    std::istringstream words(std::string(bytes.begin(), bytes.end()));
    for (std::string& command : commands) words >> command;
    std::string name, code;
    while (words >> name >> code) {
        int key = 0;
        std::from_chars(code.data(), code.data() + code.size(), key);
        if (key >= 1 && key < kKeyCount) keys[static_cast<size_t>(key)] = name;
    }
}

std::string cKeyNames::shown(int32_t key) const {
    if (key <= 0 || key >= kKeyCount) return "NONE";
    const std::string& name = keys[static_cast<size_t>(key)];
    return name != kNoName ? name : "KEY_" + std::to_string(key);
}
