#pragma once
#include "data/binary_reader.h"

#include <string>
#include <vector>

class cInventory;

/// One saved game of players.cfl but for its inventory.
struct cCheckpoint {
    std::string heroName, spawnPoint, levelFile, settingsName;

    /// Sum over three characters of the texts, as signed bytes; what lies past a text's end counts 0.
    int32_t check() const;
    /// Record of the file: length, inventory, texts, check.
    platform::Bytes write(const cInventory& inventory) const;
    /// Texts that do not agree with their check leave spawn point and level empty; so does a record whose
    /// texts cannot be read. An inventory that is damaged is empty.
    void read(const platform::Bytes& record, cInventory& inventory);

    static constexpr size_t kLongestText = 127;
};

/// players.cfl in memory: one record per hero, in the file's order.
class cPlayersFile {
public:
    struct Hero {
        std::string name;
        platform::Bytes record;
    };

    static constexpr const char* kName = "players.cfl";

    /// A missing file is an empty one. Of a damaged file every saved game is kept of which at most its
    /// length, its texts or its inventory is damaged, wherever it lies; a row in the log says how many.
    static cPlayersFile read();

    int find(const std::string& name) const; ///< index of the first of that name, −1 without one
    /// Replaces the hero's record or appends it. Heroes that stand nowhere (no spawn point) are dropped.
    void put(const std::string& name, platform::Bytes record);
    /// Has the hero's record name another settings entry, the rest as it is. False when he has none that is
    /// whole.
    bool setSettings(const std::string& name, const std::string& settings);
    /// Replaces the file. A damaged one is kept beside it first. False, with the old file as it was, when
    /// either fails or when the old one is there but cannot be read.
    bool write() const;

    std::vector<Hero> heroes;

private:
    bool readWhole(cBinaryReader& in);
    void salvage(cBinaryReader& in);

    platform::Bytes damaged_; ///< what the file held, when it was damaged
    enum : uint8_t { kSound, kDamaged, kUnreadable } state_ = kSound;
};
