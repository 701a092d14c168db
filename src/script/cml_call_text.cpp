#include "script/cml_call_text.h"

#include <algorithm>

namespace {
constexpr size_t kMostArgs = 255;

std::vector<std::string> splitAt(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t at = text.find(separator); at != std::string::npos; at = text.find(separator, start)) {
        pieces.push_back(text.substr(start, at - start));
        start = at + 1;
    }
    pieces.push_back(text.substr(start));
    return pieces;
}
} // namespace

CmlCallText::CmlCallText(const std::string& piece) {
    const size_t open = piece.find('(');
    name = piece.substr(0, open);
    if (open != std::string::npos) {
        const size_t close = piece.rfind(')');
        const size_t end = close == std::string::npos || close < open ? piece.size() : close;
        const std::string inside = piece.substr(open + 1, end - open - 1);
        if (!inside.empty()) args = splitAt(inside, ',');
    }
    if (args.size() > kMostArgs) args.resize(kMostArgs);
    if (const size_t dot = name.find('.'); dot != std::string::npos) {
        prefixed = true;
        object = name.substr(0, dot);
        name.erase(0, dot + 1);
    }
}

const std::string& CmlCallText::arg(size_t i) const {
    static const std::string kNone;
    return i < args.size() ? args[i] : kNone;
}

std::vector<std::string> splitCmlList(const std::string& list) {
    if (list.empty()) return {};
    std::vector<std::string> pieces = splitAt(list, ';');
    if (pieces.back().empty()) pieces.pop_back();
    return pieces;
}

std::vector<CmlScriptCall> cmlScriptCalls(const std::string& script) {
    std::vector<CmlScriptCall> calls;
    for (size_t tag = script.find("^9"); tag != std::string::npos;) {
        const size_t start = tag + 2, end = std::min(script.find(' ', start), script.size());
        calls.push_back({tag, script.substr(start, end - start)});
        tag = script.find("^9", end);
    }
    return calls;
}

bool startsWithLetter(const std::string& text) {
    const char c = text.empty() ? '\0' : text[0];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool startsLikeNumber(const std::string& text) {
    const char c = text.empty() ? '\0' : text[0];
    return c == '-' || (c >= '0' && c <= '9');
}
