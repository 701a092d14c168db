#include "ui/command_mgr.h"

#include "ui/console.h"

#include <algorithm>

namespace {
using Params = std::vector<std::string>;

const cCommandMgr::Row* find(const std::string& name) {
    for (const cCommandMgr::Row& row : cCommandMgr::rows()) {
        if (name == row.name) return &row;
    }
    return nullptr;
}

Params splitParams(const std::string& text) {
    Params params;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find(' ', at), text.size());
        if (end > at) params.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return params;
}
} // namespace

cCommandMgr& cCommandMgr::instance() {
    static cCommandMgr manager;
    return manager;
}

std::string cCommandMgr::getDescription(const std::string& name) const {
    const Row* row = find(name);
    return row ? row->description : "";
}

int cCommandMgr::execute(const std::string& line, cConsole& console) {
    const size_t blank = line.find(' ');
    const bool whole = blank == std::string::npos || blank == 0;
    const std::string name = whole ? line : line.substr(0, blank);
    const Row* row = find(name);
    if (!row) {
        console.print("Unable to recognize command \"" + name + "\"");
        return -1;
    }
    const Params params = whole ? Params() : splitParams(line.substr(blank + 1));
    const int count = static_cast<int>(params.size());
    if (count < row->minParams || count > row->maxParams) {
        console.print("Command " + name + " takes " + std::to_string(row->minParams) + "-" +
                      std::to_string(row->maxParams) + " parameters");
        return -1;
    }
    return row->handler(params);
}
