#include "game/hud.h"
#include "game/inventory.h"
#include "support.h"
#include "world/players_file.h"

FUZZ_TARGET(players) {
    fuzz::putFile("players.cfl", fuzz::text(data, size));
    cPlayersFile file = cPlayersFile::read();
    fuzz::cDigest digest;
    cHud hud;
    for (const cPlayersFile::Hero& hero : file.heroes) {
        fuzz::require(file.find(hero.name) >= 0, "whoever is listed is found");
        cInventory inventory(hud);
        cCheckpoint checkpoint;
        checkpoint.read(hero.record, inventory);
        fuzz::require(checkpoint.levelFile.size() <= cCheckpoint::kLongestText, "texts are short");
        if (!checkpoint.levelFile.empty() && !inventory.entries().empty()) {
            fuzz::require(checkpoint.write(inventory) == hero.record, "a game is written as it was read");
        }
        digest.add(hero.name).add(hero.record.data(), hero.record.size()).add(checkpoint.levelFile);
        digest.addValue(inventory.entries().size());
    }
    const size_t before = file.heroes.size();
    file.put("\xA3 no one of that name", {});
    fuzz::require(file.heroes.size() <= before + 1, "one hero more at most");
    return before == 0 ? 0 : digest.value();
}
