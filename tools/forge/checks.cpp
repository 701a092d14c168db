#include "forge/checks.h"

#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "game/player.h"
#include "models/anim_model.h"
#include "script/cml_vocabulary.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace forge {
namespace {
/// Names that the program itself asks for.
constexpr const char* kAlwaysNeeded[] = {"window.cfg",
                                         "input.cfg",
                                         "character.cfg",
                                         "movement.cfg",
                                         "camera.cfg",
                                         "sound.cfg",
                                         "inventory.cfg",
                                         "messages.cfg",
                                         "animation.cfg",
                                         "menu.cfg",
                                         "settings.cfl",
                                         "keynames.cfl",
                                         "hierarchy.cfl",
                                         "objects.xml",
                                         "intro.xml",
                                         "testlevel.xml",
                                         "deepwood.xml",
                                         "summit.xml",
                                         "3ds/pistoltest.3ds",
                                         "3ds/grenade.3ds",
                                         "img/credits.tga",
                                         "img/menu.tga",
                                         "img/alpha.tga",
                                         "img/loading.bmp",
                                         "img/interface.tga",
                                         "img/crosshair.tga",
                                         "img/objects.tga",
                                         "img/pointer.tga",
                                         "particles/smoke04.tga",
                                         "particles/explo32x32.tga",
                                         "maincharfinal/mainchar_noweapon_head.cff",
                                         "maincharfinal/mainchar_noweapon_upper.cff",
                                         "maincharfinal/mainchar_noweapon_lower.cff"};
constexpr int kIntroFrames = 4781; ///< 76.5 s that the opening plays
constexpr size_t kMenuKeys = 112;  ///< four sides of 28 pictures

constexpr const char* kFloatSections[] = {"movement.cfg", "camera.cfg", "sound.cfg"};

std::string textOf(const Output& out, const std::string& name) {
    const auto at = out.files().find(name);
    return at == out.files().end() ? std::string() : std::string(at->second.begin(), at->second.end());
}

std::map<std::string, std::string> configOf(const Output& out, const std::string& name) {
    std::map<std::string, std::string> values;
    std::istringstream lines(textOf(out, name));
    for (std::string line; std::getline(lines, line);) {
        const size_t blank = line.find(' ');
        if (line.empty() || line[0] == '~' || blank == std::string::npos) continue;
        values[line.substr(0, blank)] = line.substr(blank + 1);
    }
    return values;
}

class Checker {
public:
    explicit Checker(Output& out) : out_(out) {}

    void run() {
        for (const char* name : kAlwaysNeeded) need(name, "the program");
        const auto files = out_.files(); // problems are added while we look
        for (const auto& [name, bytes] : files) {
            if (name.ends_with(".xml")) document(name);
            if (name.ends_with(".mtl")) materialLibrary(name);
            if (name.ends_with(".cpm")) materialNames(name, bytes, 0);
            if (name.ends_with(".env")) materialNames(name, bytes, kEnvironmentHead);
            if (name.ends_with(".cff")) character(name, bytes);
        }
        configuration();
        menu();
        intro();
    }

private:
    static constexpr size_t kEnvironmentHead = 12 + 4 + 4 + 1 + 4 + 4 + 1;

    void need(const std::string& file, const std::string& who) {
        const std::string name = dataName(file);
        const auto& promised = out_.promised();
        if (out_.has(name) || std::find(promised.begin(), promised.end(), name) != promised.end()) return;
        out_.problem(who + " names " + name + ", which nobody makes");
    }

    void document(const std::string& name) {
        const std::string text = textOf(out_, name);
        static const std::regex files("(file|appearance|collision)=\"([^\"]+)\"");
        for (auto i = std::sregex_iterator(text.begin(), text.end(), files); i != std::sregex_iterator();
             ++i) {
            const std::string file = (*i)[2];
            if (file.find('.') != std::string::npos) {
                need(file, name);
            } else if (out_.has(dataName(file) + ".ogg") || file == kEndOfTheGame) {
                continue; // what an object's play_stream plays, or where its swap_level leads
            } else {
                for (const char* part : {"_head.cff", "_upper.cff", "_lower.cff"}) need(file + part, name);
            }
        }
        static const std::regex music("(music|use_sound|hit_sound)=\"([^\"]{2,})\"");
        for (auto i = std::sregex_iterator(text.begin(), text.end(), music); i != std::sregex_iterator(); ++i)
            if (!out_.has(dataName((*i)[2].str() + ".ogg"))) need((*i)[2].str() + ".wav", name);
        static const std::regex objects("<object name=\"([^\"]*)\"");
        std::map<int32_t, std::string> seen;
        for (auto i = std::sregex_iterator(text.begin(), text.end(), objects); i != std::sregex_iterator();
             ++i)
            distinct(seen, (*i)[1], name);
    }

    void distinct(std::map<int32_t, std::string>& seen, const std::string& what, const std::string& where) {
        const int32_t hash = nameHash(what);
        const auto [at, fresh] = seen.emplace(hash, what);
        if (!fresh)
            out_.problem(where + ": the names " + at->second + " and " + what + " are the same to the game");
        for (const CmlKeywordRow& word : cmlKeywords())
            if (hash == word.value) out_.problem(where + ": the name " + what + " means a script keyword");
    }

    void materialLibrary(const std::string& name) {
        std::istringstream lines(textOf(out_, name));
        const std::string folder = name.substr(0, name.rfind('/') + 1);
        for (std::string word; lines >> word;)
            if (word == "map_Kd" && lines >> word) need(folder + word, name);
    }

    void materialNames(const std::string& name, const platform::Bytes& bytes, size_t from) {
        cBinaryReader in(bytes);
        in.skip(from);
        const uint32_t count = in.u32();
        for (uint32_t i = 0; i < count && in.good(); ++i) {
            in.skip(4);
            const uint8_t length = in.u8();
            if (length > 1) need(in.fixedText(length), name);
        }
        if (!in.good()) out_.problem(name + " is cut short");
    }

    void character(const std::string& name, const platform::Bytes& bytes) {
        cBinaryReader in(bytes);
        in.skip(12);
        const int32_t animations = in.i32(), tags = in.i32();
        const int32_t tagBytes = in.i32();
        if (tagBytes != tags * kTagBytes) out_.problem(name + ": the tag block has a wrong size");
        in.skip(static_cast<size_t>(tagBytes));
        std::map<int32_t, std::string> seen;
        std::set<std::string>& names = animations_[name];
        for (int32_t i = 0; i < animations && in.good(); ++i) {
            const std::string animation = in.fixedText(260);
            in.skip(16);
            distinct(seen, animation, name);
            names.insert(animation);
        }
        in.skip(16 + 256);
        need(in.fixedText(256), name);
        if (!in.good()) out_.problem(name + " is cut short");
    }

    void configuration() {
        for (const char* section : kFloatSections)
            for (const auto& [key, value] : configOf(out_, section))
                if (value.find('.') == std::string::npos)
                    out_.problem(std::string(section) + ": " + key + " is a float and needs a point");
        need(configOf(out_, "window.cfg")["WINDOW_ICON"], "window.cfg");
        const auto animation = configOf(out_, "animation.cfg");
        if (animation.size() != cPlayer::kAnimationCount)
            out_.problem("animation.cfg does not hold " + std::to_string(cPlayer::kAnimationCount) + " keys");
        for (const auto& [key, value] : animation)
            for (const char* part : {"upper", "lower"})
                if (!animations_[std::string("maincharfinal/mainchar_noweapon_") + part + ".cff"].count(
                        value))
                    out_.problem("animation.cfg: the hero's " + std::string(part) + " half has no " + value);
    }

    void menu() {
        struct Box {
            std::string name;
            int left, top, right, bottom;
        };
        const auto values = configOf(out_, "menu.cfg");
        if (values.size() != kMenuKeys)
            out_.problem("menu.cfg does not hold " + std::to_string(kMenuKeys) + " keys");
        std::vector<Box> boxes;
        for (const auto& [key, value] : values) {
            if (!key.ends_with("_LEFT")) continue;
            const std::string base = key.substr(0, key.size() - 5);
            const auto side = [&](const char* end) {
                const auto at = values.find(base + end);
                return at == values.end() ? 0 : std::atoi(at->second.c_str());
            };
            boxes.push_back({base, side("_LEFT"), side("_TOP"), side("_RIGHT"), side("_BOTTOM")});
        }
        for (size_t i = 0; i < boxes.size(); ++i) {
            const Box& a = boxes[i];
            if (a.left < 0 || a.top < 0 || a.right > 1024 || a.bottom > 1024 || a.left >= a.right ||
                a.top >= a.bottom)
                out_.problem("menu.cfg: " + a.name + " does not lie inside the picture");
            for (size_t k = i + 1; k < boxes.size(); ++k) {
                const Box& b = boxes[k];
                if (a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)
                    out_.problem("menu.cfg: " + a.name + " overlaps " + b.name);
            }
        }
    }

    void intro() {
        const std::string text = textOf(out_, "intro.xml");
        std::smatch found;
        if (!std::regex_search(text, found, std::regex("cinematic name=\"intro\" length=\"(\\d+)\"")) ||
            std::atoi(found[1].str().c_str()) < kIntroFrames)
            out_.problem("intro.xml: the cinematic \"intro\" is missing or too short");
        static const std::regex frames("number=\"(\\d+)\"");
        int last = -1;
        for (auto i = std::sregex_iterator(text.begin(), text.end(), frames); i != std::sregex_iterator();
             ++i) {
            const int number = std::atoi((*i)[1].str().c_str());
            if (number <= last) out_.problem("intro.xml: camera frames are not in order");
            last = number;
        }
        if (last < kIntroFrames) out_.problem("intro.xml: the camera stops before the opening ends");
    }

    Output& out_;
    std::map<std::string, std::set<std::string>> animations_; ///< by file
};
} // namespace

void checkDataSet(Output& out) {
    Checker(out).run();
}
} // namespace forge
