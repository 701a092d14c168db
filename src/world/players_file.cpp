#include "world/players_file.h"

#include "core/log_mgr.h"
#include "data/damaged_file.h"
#include "game/inventory.h"

namespace {
constexpr size_t kLengthBytes = 4, kItemBytes = 8;
constexpr size_t kLeastInventory = 8; ///< count and check sum
constexpr size_t kAroundTexts = 12;   ///< length, check and four terminators
constexpr size_t kLeastRecord = kLeastInventory + kAroundTexts;

int32_t letter(const std::string& text, size_t at) {
    return at < text.size() ? static_cast<signed char>(text[at]) : 0;
}

struct Record {
    cCheckpoint texts;
    size_t items = 0;
    bool rightLength = false;
    bool rightCheck = false; ///< of the texts
};

/// A saved game at the reader's position. False, with the reader anywhere, when not all of it is there.
bool readRecord(cBinaryReader& in, Record& record) {
    const size_t start = in.position();
    const int32_t length = in.i32(), items = in.i32();
    if (!in.canHold(items, kItemBytes)) return false;
    record.items = static_cast<size_t>(items);
    in.skip(record.items * kItemBytes + 4);
    cCheckpoint& t = record.texts;
    for (std::string* text : {&t.heroName, &t.spawnPoint, &t.levelFile, &t.settingsName})
        *text = in.zeroText(cCheckpoint::kLongestText);
    record.rightCheck = in.i32() == t.check();
    record.rightLength = static_cast<int64_t>(in.position() - start) == length;
    return in.good();
}

/// Of length, texts and inventory one may be damaged: the other two tell that a saved game begins here.
bool findRecord(cBinaryReader& in, Record& record) {
    const size_t start = in.position();
    if (!readRecord(in, record) || record.texts.spawnPoint.empty()) return false;
    if (record.rightLength == record.rightCheck) return record.rightLength;
    // Longer sums, tried at every byte, would take time with the square of the file's size.
    if (record.items > cInventory::kMostEntries) return false;
    const size_t end = in.position();
    in.recover(start + kLengthBytes);
    const bool intact = cInventory::isIntact(in);
    in.recover(end);
    return intact;
}

platform::Bytes slice(const cBinaryReader& in, size_t from, size_t to) {
    const auto begin = in.bytes().begin();
    return {begin + static_cast<std::ptrdiff_t>(from), begin + static_cast<std::ptrdiff_t>(to)};
}

/// The record that was found, with its length put right.
platform::Bytes withLength(const cBinaryReader& in, size_t from, size_t to) {
    cBinaryWriter out;
    out.i32(static_cast<int32_t>(to - from));
    out.raw(in.bytes().data() + from + kLengthBytes, to - from - kLengthBytes);
    return out.bytes();
}

bool standsNowhere(const cPlayersFile::Hero& hero) {
    cBinaryReader in(hero.record);
    Record record;
    return readRecord(in, record) && record.texts.spawnPoint.empty();
}

platform::Bytes writeRecord(const platform::Bytes& inventory, const cCheckpoint& t) {
    const size_t length = inventory.size() + t.heroName.size() + t.spawnPoint.size() + t.levelFile.size() +
                          t.settingsName.size() + kAroundTexts;
    cBinaryWriter out;
    out.i32(static_cast<int32_t>(length));
    out.raw(inventory.data(), inventory.size());
    for (const std::string* text : {&t.heroName, &t.spawnPoint, &t.levelFile, &t.settingsName})
        out.zeroText(*text);
    out.i32(t.check());
    return out.bytes();
}
} // namespace

int32_t cCheckpoint::check() const {
    return letter(levelFile, 2) + letter(settingsName, 0) * 12 + letter(spawnPoint, 1) * 4;
}

platform::Bytes cCheckpoint::write(const cInventory& inventory) const {
    cBinaryWriter items;
    inventory.save(items);
    return writeRecord(items.bytes(), *this);
}

void cCheckpoint::read(const platform::Bytes& record, cInventory& inventory) {
    cBinaryReader in(record);
    in.skip(kLengthBytes);
    inventory.load(in);
    for (std::string* text : {&heroName, &spawnPoint, &levelFile, &settingsName})
        *text = in.zeroText(kLongestText);
    if (in.i32() == check() && in.good()) return;
    spawnPoint.clear();
    levelFile.clear();
}

cPlayersFile cPlayersFile::read() {
    cPlayersFile file;
    cBinaryReader in(cPlayersFile::kName);
    if (!in.isOpen()) {
        if (!platform::fileExists(cPlayersFile::kName)) return file;
        file.state_ = kUnreadable;
        cLogMgr::instance().error("%s is there but cannot be read", cPlayersFile::kName);
        return file;
    }
    if (file.readWhole(in)) return file;
    file.state_ = kDamaged;
    file.damaged_ = in.bytes();
    file.salvage(in);
    cLogMgr::instance().error("%s is damaged; %zu saved heroes of it can be read", cPlayersFile::kName,
                              file.heroes.size());
    return file;
}

bool cPlayersFile::readWhole(cBinaryReader& in) {
    const int32_t count = in.i32();
    if (!in.canHold(count, 1 + kLeastRecord)) return false;
    heroes.resize(static_cast<size_t>(count));
    for (Hero& hero : heroes) hero.name = in.zeroText(cCheckpoint::kLongestText);
    for (Hero& hero : heroes) {
        const size_t start = in.position();
        Record record;
        if (!readRecord(in, record) || !record.rightLength) return false;
        hero.record = slice(in, start, in.position());
    }
    return in.good() && in.left() == 0;
}

/// The list of names and the chain of lengths cannot be trusted: any record counts, wherever it begins.
void cPlayersFile::salvage(cBinaryReader& in) {
    heroes.clear();
    for (size_t at = 0; at + kLeastRecord <= in.size();) {
        in.recover(at);
        Record record;
        if (findRecord(in, record)) {
            heroes.push_back({record.texts.heroName, withLength(in, at, in.position())});
            at = in.position();
        } else {
            ++at;
        }
    }
}

int cPlayersFile::find(const std::string& name) const {
    for (size_t i = 0; i < heroes.size(); ++i) {
        if (heroes[i].name == name) return static_cast<int>(i);
    }
    return -1;
}

void cPlayersFile::put(const std::string& name, platform::Bytes record) {
    std::erase_if(heroes, standsNowhere);
    const int index = find(name);
    if (index >= 0) {
        heroes[static_cast<size_t>(index)].record = std::move(record);
    } else {
        heroes.push_back({name, std::move(record)});
    }
}

bool cPlayersFile::setSettings(const std::string& name, const std::string& settings) {
    const int index = find(name);
    if (index < 0) return false;
    platform::Bytes& bytes = heroes[static_cast<size_t>(index)].record;
    cBinaryReader in(bytes);
    Record record;
    if (!readRecord(in, record) || !record.rightCheck) return false;
    const size_t inventoryEnd = kLengthBytes + kLeastInventory + record.items * kItemBytes;
    record.texts.settingsName = settings;
    bytes = writeRecord(slice(in, kLengthBytes, inventoryEnd), record.texts);
    return true;
}

bool cPlayersFile::write() const {
    if (state_ == kUnreadable) return false;
    if (state_ == kDamaged && !keepDamagedFile(cPlayersFile::kName, damaged_)) return false;
    cBinaryWriter out;
    out.i32(static_cast<int32_t>(heroes.size()));
    for (const Hero& hero : heroes) out.zeroText(hero.name);
    for (const Hero& hero : heroes) out.raw(hero.record.data(), hero.record.size());
    return out.save(cPlayersFile::kName);
}
