// The named settings records of settings.cfl.

#include "audio/audio_mgr.h"
#include "core/log_mgr.h"
#include "data/damaged_file.h"
#include "platform/folder_lock.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr const char* kFile = "settings.cfl";
constexpr size_t kCountBytes = 4, kNameBytes = 10, kRecordBytes = cInputSettings::kRecordBytes;
constexpr float kLeastSensitivity = 1e-6f; ///< far below what any player sets

/// The file's entries as they stand: what an entry holds besides the known fields survives the others'
/// replacement.
struct Entry {
    std::array<uint8_t, kNameBytes> name;
    std::array<uint8_t, kRecordBytes> record;

    std::string text() const {
        const char* start = reinterpret_cast<const char*>(name.data());
        return {start, strnlen(start, kNameBytes)};
    }
};
constexpr size_t kEntryBytes = kNameBytes + kRecordBytes;

class cSettingsFile {
public:
    /// A missing file is an empty one. Of a damaged file the entries are kept whose name and record are
    /// there; a row in the log says how many.
    cSettingsFile() {
        cBinaryReader in(kFile);
        if (!in.isOpen()) {
            if (!platform::fileExists(kFile)) return;
            state_ = kUnreadable;
            cLogMgr::instance().error("%s is there but cannot be read", kFile);
            return;
        }
        const int32_t count = in.i32();
        const bool holds = in.good() && in.canHold(count, kEntryBytes);
        if (holds && in.left() == static_cast<size_t>(count) * kEntryBytes) {
            readEntries(in, static_cast<size_t>(count), static_cast<size_t>(count));
            return;
        }
        state_ = kDamaged;
        damaged_ = in.bytes();
        salvage(in, count);
        cLogMgr::instance().error("%s is damaged; %zu entries of it can be read", kFile, entries.size());
    }

    int find(const std::string& name) const {
        for (size_t i = 0; i < entries.size(); ++i) {
            if (entries[i].text() == name) return static_cast<int>(i);
        }
        return -1;
    }

    /// A damaged file is kept beside the new one. False, with the old file as it was, when that or the
    /// writing fails, or when the old one is there but cannot be read.
    bool write() const {
        if (state_ == kUnreadable) return false;
        if (state_ == kDamaged && !keepDamagedFile(kFile, damaged_)) return false;
        cBinaryWriter out;
        out.i32(static_cast<int32_t>(entries.size()));
        for (const Entry& entry : entries) out.raw(entry.name.data(), entry.name.size());
        for (const Entry& entry : entries) out.raw(entry.record.data(), entry.record.size());
        return out.save(kFile);
    }

    /// The file is there, and nobody knows what it holds.
    bool isUnreadable() const { return state_ == kUnreadable; }

    std::vector<Entry> entries;

private:
    void readEntries(cBinaryReader& in, size_t names, size_t records) {
        entries.resize(names);
        for (Entry& entry : entries) in.raw(entry.name.data(), kNameBytes);
        entries.resize(records);
        for (Entry& entry : entries) in.raw(entry.record.data(), entry.record.size());
    }

    /// What lies behind the records, and what they are cut by, costs no entry that is there.
    void salvage(cBinaryReader& in, int32_t count) {
        if (in.size() < kCountBytes) return;
        const size_t names = salvagedCount(in, count), room = damaged_.size() - kCountBytes;
        if (names > room / kNameBytes) return;
        in.recover(kCountBytes);
        readEntries(in, names, std::min(names, (room - names * kNameBytes) / kRecordBytes));
        std::erase_if(entries, [](const Entry& entry) { return entry.text().empty(); });
    }

    /// How many names there are. The count may be what is damaged: then the records tell it, which begin
    /// behind the names, or the file's size.
    size_t salvagedCount(cBinaryReader& in, int32_t count) const {
        const size_t room = damaged_.size() - kCountBytes, most = room / kNameBytes;
        const size_t bySize = room / kEntryBytes;
        const size_t stated = count > 0 ? static_cast<size_t>(count) : 0;
        const size_t asStated = soundEntries(in, stated), asBySize = soundEntries(in, bySize);
        if (asStated + asBySize > 0) return asStated >= asBySize ? stated : bySize;
        for (size_t names = 1; names <= most; ++names) {
            if (isSound(in, names, 0)) return names;
        }
        if (stated > 0 && stated <= most) return stated;
        return room % kEntryBytes == 0 ? bySize : 0;
    }

    size_t soundEntries(cBinaryReader& in, size_t names) const {
        size_t sound = 0;
        for (size_t i = 0; i < names && holdsRecord(names, i); ++i) sound += isSound(in, names, i);
        return sound;
    }

    /// Whether the file reaches to the end of a record, if it has so many names.
    bool holdsRecord(size_t names, size_t index) const {
        const size_t room = damaged_.size() - kCountBytes;
        return names <= room / kNameBytes && (room - names * kNameBytes) / kRecordBytes > index;
    }

    /// A name, and a record of which nothing would have to be mended. Where other fields are taken for these,
    /// the sensitivity is next to nothing.
    bool isSound(cBinaryReader& in, size_t names, size_t index) const {
        if (!holdsRecord(names, index) || damaged_[kCountBytes + index * kNameBytes] == 0) return false;
        const size_t at = kCountBytes + names * kNameBytes + index * kRecordBytes;
        in.recover(at);
        if (in.u32() >= kKeyCount) return false; // of most places no more has to be looked at
        in.recover(at);
        cInputSettings settings;
        settings.read(in);
        cBinaryWriter out;
        settings.write(out);
        return settings.sensitivity > kLeastSensitivity &&
               std::equal(out.bytes().begin(), out.bytes().end(),
                          damaged_.begin() + static_cast<std::ptrdiff_t>(at));
    }

    platform::Bytes damaged_; ///< what the file held, when it was damaged
    enum : uint8_t { kSound, kDamaged, kUnreadable } state_ = kSound;
};
} // namespace

int cInputMgr::findSettings(const std::string& name) const {
    return cSettingsFile().find(name);
}

std::vector<std::string> cInputMgr::listSettings() const {
    std::vector<std::string> list;
    for (const Entry& entry : cSettingsFile().entries) {
        if (entry.text().empty() || entry.text()[0] != kReserved) list.push_back(entry.text());
    }
    return list;
}

int cInputMgr::loadSettings(const std::string& name) {
    const cSettingsFile file;
    const int index = file.find(name);
    if (index < 0) {
        if (file.isUnreadable() && !isUnread(name)) unread_.push_back(name);
        return -1;
    }
    unread_.clear(); // what is in force now is the player's own
    // What the player changes later belongs to the latest settings, not to the defaults.
    if (name != kLatest) settingsName = name == kDefault ? "" : name;
    const Entry& entry = file.entries[static_cast<size_t>(index)];
    cBinaryReader in(platform::Bytes(entry.record.begin(), entry.record.end()));
    bindings.settings.read(in);
    applySettings();
    return 0;
}

bool cInputMgr::isUnread(const std::string& name) const {
    return std::ranges::find(unread_, name) != unread_.end();
}

bool cInputMgr::acceptEdited() {
    bindings.settings = editSettings;
    applySettings();
    cWorld& world = cWorld::instance();
    const bool hasOwn = world.isGameLoaded() && !world.heroSettings.empty() && world.heroSettings != kDefault;
    const std::string entry = hasOwn ? world.heroSettings : kLatest;
    return keepSettings(entry) && world.useSettings(entry);
}

bool cInputMgr::keepChoice(const std::string& name) {
    cWorld& world = cWorld::instance();
    if (!world.isGameLoaded()) return true; // the latest, when the program ends
    if (name != kDefault) return world.useSettings(name);
    return keepSettings(kLatest) && world.useSettings(kLatest);
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
    const platform::cFolderLock lock(kFile);
    cSettingsFile file;
    Entry entry{};
    std::copy(name.begin(), name.end(), entry.name.begin()); // ten characters have no terminator
    cBinaryWriter record;
    bindings.settings.write(record);
    std::copy(record.bytes().begin(), record.bytes().end(), entry.record.begin());
    const int index = file.find(name);
    if (index >= 0) {
        file.entries[static_cast<size_t>(index)].record = entry.record;
    } else {
        file.entries.push_back(entry);
    }
    if (!file.write()) return false;
    std::erase(unread_, name);
    if (name != kLatest) settingsName = name;
    return true;
}
