#include "world/hierarchy.h"

#include "data/text_lines.h"

#include <cctype>
#include <string_view>

namespace {
constexpr size_t kLongestLine = 254;

struct Line {
    int level = 0;
    std::string_view name; ///< empty: nothing but blanks or a comment
};

Line parseLine(std::string_view text) {
    Line line;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ' ' || c == '\t') continue;
        if (c == '~') return line;
        if (c == '-') {
            ++line.level;
            continue;
        }
        size_t end = i;
        while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end]))) ++end;
        line.name = text.substr(i, end - i);
        return line;
    }
    return line;
}
} // namespace

HierarchyIndices lookupHierarchy(const std::string& type, const std::string& race,
                                 const std::string& className) {
    int16_t found[3] = {-1, -1, -1};
    const std::string* wanted[3] = {&type, &race, &className};
    cTextLines lines;
    lines.open("hierarchy.cfl");
    std::string text;
    int level = 0;
    int16_t counter = 0;
    while (level < 3 && lines.next(text)) {
        const Line line = parseLine(std::string_view(text).substr(0, kLongestLine));
        if (line.name.empty() || line.level != level) continue;
        if (line.name == *wanted[level]) {
            found[level++] = counter;
            counter = 0;
        } else if (counter < INT16_MAX) {
            ++counter;
        }
    }
    return {found[0], found[1], found[2]};
}
