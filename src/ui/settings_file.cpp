// The named settings records of settings.cfl.

#include "audio/audio_mgr.h"
#include "core/log_mgr.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

namespace {
constexpr const char* kFile = "settings.cfl";
constexpr size_t kNameBytes = 10;
constexpr char kReserved = '\xA3';

struct Entries {
    std::vector<std::string> names;
    std::vector<cInputSettings> records;
    bool damaged = false;

    /// A missing file is an empty one.
    static Entries read() {
        Entries entries;
        cBinaryReader in(kFile);
        if (!in.isOpen()) return entries;
        const int32_t count = in.i32();
        if (!in.canHold(count, kNameBytes + cInputSettings::kRecordBytes)) {
            entries.damage();
            return entries;
        }
        for (int32_t i = 0; i < count; ++i) entries.names.push_back(in.fixedText(kNameBytes));
        entries.records.resize(static_cast<size_t>(count));
        for (cInputSettings& record : entries.records) record.read(in);
        if (!in.good()) entries.damage();
        return entries;
    }

    void damage() {
        damaged = true;
        names.clear();
        records.clear();
        cLogMgr::instance().error("%s is damaged", kFile);
    }

    int find(const std::string& name) const {
        for (size_t i = 0; i < names.size(); ++i) {
            if (names[i] == name) return static_cast<int>(i);
        }
        return -1;
    }

    bool write() const {
        cBinaryWriter out;
        out.i32(static_cast<int32_t>(names.size()));
        for (const std::string& name : names) {
            // A name of ten characters has no terminator.
            std::string field = name.substr(0, kNameBytes);
            field.resize(kNameBytes, '\0');
            out.raw(field.data(), kNameBytes);
        }
        for (const cInputSettings& record : records) record.write(out);
        return out.save(kFile);
    }
};
} // namespace

int cInputMgr::findSettings(const std::string& name) const {
    return Entries::read().find(name);
}

std::vector<std::string> cInputMgr::listSettings() const {
    std::vector<std::string> list = Entries::read().names;
    std::erase_if(list, [](const std::string& name) { return !name.empty() && name[0] == kReserved; });
    return list;
}

int cInputMgr::loadSettings(const std::string& name) {
    const Entries entries = Entries::read();
    const int index = entries.find(name);
    if (index < 0) return -1;
    if (name != kLatest) settingsName = name;
    bindings.settings = entries.records[static_cast<size_t>(index)];
    applySettings();
    return 0;
}

void cInputMgr::applySettings() {
    const cInputSettings& s = bindings.settings;
    cWorld::instance().hud.apply(s);
    cWorld::instance().playerMusicVolume = s.musicVolume;
    cObjectMgr::instance().shadowsEnabled = (s.options & kOptionShadows) != 0;
    cAudioMgr::instance().setEffectsVolume(s.soundVolume);
    cAudioMgr::instance().setMusicVolume(s.musicVolume);
}

bool cInputMgr::saveSettings(const std::string& name) {
    if (name.empty() || name.size() > kNameBytes) return false;
    Entries entries = Entries::read();
    // What cannot be read is kept for whoever can mend it; it is not replaced by an empty file.
    if (entries.damaged) return false;
    const int index = entries.find(name);
    if (index >= 0) {
        entries.records[static_cast<size_t>(index)] = bindings.settings;
    } else {
        entries.names.push_back(name);
        entries.records.push_back(bindings.settings);
    }
    if (!entries.write()) return false;
    if (name != kLatest) settingsName = name;
    return true;
}
