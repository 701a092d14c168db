// The named settings records of settings.cfl.

#include "audio/audio_mgr.h"
#include "core/log_mgr.h"
#include "data/damaged_file.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr const char* kFile = "settings.cfl";
constexpr size_t kNameBytes = 10;

/// The file's entries as they stand: what an entry holds besides the known fields survives the others'
/// replacement.
struct Entry {
    std::array<uint8_t, kNameBytes> name;
    std::array<uint8_t, cInputSettings::kRecordBytes> record;

    std::string text() const {
        const char* start = reinterpret_cast<const char*>(name.data());
        return {start, strnlen(start, kNameBytes)};
    }
};
constexpr size_t kEntryBytes = kNameBytes + cInputSettings::kRecordBytes;

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

    std::vector<Entry> entries;

private:
    void readEntries(cBinaryReader& in, size_t names, size_t records) {
        entries.resize(names);
        for (Entry& entry : entries) in.raw(entry.name.data(), kNameBytes);
        entries.resize(records);
        for (Entry& entry : entries) in.raw(entry.record.data(), entry.record.size());
    }

    /// A file that was cut short holds all names and the first records. Where the count itself is wrong, the
    /// file's size tells it.
    void salvage(cBinaryReader& in, int32_t count) {
        if (in.size() < 4) return;
        const size_t size = in.size() - 4, bySize = size / kEntryBytes;
        const auto names = static_cast<size_t>(std::max(count, 0));
        const bool cut = names > bySize && names <= size / kNameBytes && startsWithNames(in, names);
        in.recover(4);
        if (cut) {
            const size_t records = (size - names * kNameBytes) / cInputSettings::kRecordBytes;
            readEntries(in, names, std::min(names, records));
        } else if (size % kEntryBytes == 0) {
            readEntries(in, bySize, bySize);
        }
    }

    /// A name and then zeros, as this program writes them; the fields of a record look otherwise.
    static bool startsWithNames(cBinaryReader& in, size_t count) {
        in.recover(4);
        Entry entry{};
        for (size_t i = 0; i < count; ++i) {
            in.raw(entry.name.data(), kNameBytes);
            const size_t length = entry.text().size();
            const bool padded = std::all_of(entry.name.begin() + static_cast<std::ptrdiff_t>(length),
                                            entry.name.end(), [](uint8_t byte) { return byte == 0; });
            if (length == 0 || !padded) return false;
        }
        return true;
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
    if (index < 0) return -1;
    // What the player changes later belongs to the latest settings, not to the defaults.
    if (name != kLatest) settingsName = name == kDefault ? "" : name;
    const Entry& entry = file.entries[static_cast<size_t>(index)];
    cBinaryReader in(platform::Bytes(entry.record.begin(), entry.record.end()));
    bindings.settings.read(in);
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
    if (name != kLatest) settingsName = name;
    return true;
}
