#include "ui/command_mgr.h"

#include "core/parse.h"
#include "models/character_model.h"
#include "ui/input_mgr.h"
#include "ui/menu.h"
#include "world/drop_octree.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>

namespace {
using Params = std::vector<std::string>;

cInputMgr& input() { return cInputMgr::instance(); }

int quit(const Params&) {
    pushQuitEvent();
    return 0;
}

int help(const Params& p) {
    const std::string description = cCommandMgr::instance().getDescription(p[0]);
    if (description.empty()) {
        input().print("No commands called \"%s\"", p[0].c_str());
    } else {
        input().print("%s: %s", p[0].c_str(), description.c_str());
    }
    return 0;
}

int dropOctreeCommand(const Params& p) {
    const DropOctreeResult result = dropOctree(p);
    input().print("%s", result.message.c_str());
    return result.done ? 0 : -1;
}

int dropMd3(const Params& p) {
    cCharacterModel model;
    if (!model.loadMd3(p[0], p[1])) {
        input().print("%s", SDL_GetError());
        return -1;
    }
    if (p.size() >= 3) model.scale(toFloat(p[2]));
    const std::string& output = p.size() >= 4 ? p[3] : p[1];
    if (model.writeCff(output)) return 0;
    input().print("The character \"%s\" could not be written", output.c_str());
    return -1;
}

int detachCamera(const Params&) {
    cWorld::instance().camera.detach();
    input().print("Camera Detached");
    return 0;
}

int setShadows(bool on) {
    on ? input().setOption(kOptionShadows) : input().clearOption(kOptionShadows);
    cObjectMgr::instance().shadowsEnabled = on;
    return 0;
}
int enableShadows(const Params&) { return setShadows(true); }
int disableShadows(const Params&) { return setShadows(false); }

constexpr cCommandMgr::Row kCommands[] = {
    {"quit", 0, 20, "Quit the game", quit},
    {"dropOctree", 6, 7, kDropOctreeUsage, dropOctreeCommand},
    {"help", 1, 1, "Prints description for a command.", help},
    {"detach_cam", 0, 0, "Sets camera to free-flying mode", detachCamera},
    {"drop_md3", 2, 4, "Convert a MD3 fileset to a CFF animation", dropMd3},
    {"enable_shadows", 0, 0, "Enable Ray-traced shadows", enableShadows},
    {"disable_shadows", 0, 0, "Disable Ray-traced shadows", disableShadows},
};

const cCommandMgr::Row* find(const std::string& name) {
    for (const cCommandMgr::Row& row : kCommands) {
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

int cCommandMgr::execute(const std::string& line) {
    const size_t blank = line.find(' ');
    const bool whole = blank == std::string::npos || blank == 0;
    const std::string name = whole ? line : line.substr(0, blank);
    const Row* row = find(name);
    if (!row) {
        input().print("Unable to recognize command \"%s\"", name.c_str());
        return -1;
    }
    const Params params = whole ? Params() : splitParams(line.substr(blank + 1));
    const int count = static_cast<int>(params.size());
    if (count < row->minParams || count > row->maxParams) {
        input().print("Command %s takes %d-%d parameters", row->name, row->minParams, row->maxParams);
        return -1;
    }
    return row->handler(params);
}
