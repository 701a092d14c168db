#include "game/inventory.h"

#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "game/hud.h"
#include "support/test_world.h"

#include <gtest/gtest.h>

namespace {
const std::string kItems = R"(<items>
<item name="pistol" subobject_name="rounds" allow_grouping="1" different_subobjects="1">
  <image column="1" row="2" /><weapon type="ballistic" range="40" damage="20" /><animation length="24" action="4" />
</item>
<item name="Apples" allow_grouping="1">red<image column="0" row="0" /></item>
<item name="Key"><image column="3" row="3" /></item>
<item name="8-ball" allow_grouping="2" />
<item name="grenade" allow_grouping="1" use_sound="sounds\swing"><image column="0" row="0" />
  <weapon type="projectile" hit_sound="sounds\boom"><model file="thing.cpm" size="0.25" explosion="yes" />
  <physics duration="120" /></weapon></item>
<item name="stick"><image column="0" row="0" /></item>
</items>)";
enum { kPistol, kApples, kKey, kBall, kGrenade, kStick };

class Inventory : public ::testing::Test {
protected:
    Inventory() {
        t.writeCpm("thing.cpm");
        t.game.write("objects.xml", kItems);
        cItemDefs::instance().loadItemDefs();
    }
    std::string lastMessage() { return hud.messages.empty() ? "" : hud.messages.back().text; }
    std::string list() {
        std::string all;
        for (size_t i = 0; i < inventory.entries().size(); ++i) {
            const auto& e = inventory.entries()[i];
            all += (static_cast<int32_t>(i) == inventory.getSelected() ? "[" : "") + std::to_string(e.id) +
                   "x" + std::to_string(e.count) +
                   (static_cast<int32_t>(i) == inventory.getSelected() ? "] " : " ");
        }
        return all;
    }

    TestWorld t;
    cHud hud;
    cInventory inventory{hud};
};
} // namespace

TEST_F(Inventory, DefinitionsComeFromTheFile) {
    const cItemDefs& defs = cItemDefs::instance();
    ASSERT_EQ(defs.count(), 6);
    EXPECT_EQ(defs.findItem("Key"), kKey);
    EXPECT_EQ(defs.findItem("key"), -1);
    EXPECT_EQ(defs.at(6), nullptr);
    const cItemDef &pistol = *defs.at(kPistol), &grenade = *defs.at(kGrenade);
    EXPECT_EQ(pistol.range, 40);
    EXPECT_EQ(pistol.attackLength, 24);
    EXPECT_EQ(pistol.fireFrame, 4);
    EXPECT_EQ(pistol.atlasU, 0.25f);
    EXPECT_EQ(pistol.atlasV, 0.25f) << "rows count from the bottom";
    EXPECT_EQ(pistol.article + pistol.pluralSuffix, "as");
    EXPECT_EQ(defs.at(kApples)->article + defs.at(kApples)->pluralSuffix, "an");
    EXPECT_EQ(defs.at(kApples)->description, "red");
    EXPECT_EQ(defs.at(kBall)->article, "an");
    EXPECT_TRUE(defs.at(kBall)->allowGrouping) << "read before the missing picture ended the element";
    EXPECT_EQ(grenade.useSound, nameHash("sounds\\swing"));
    EXPECT_EQ(grenade.hitSound, nameHash("sounds\\boom"));
    ASSERT_NE(grenade.projectileModel, nullptr);
    EXPECT_FLOAT_EQ(grenade.projectileModel->extent(), 0.25f);
    EXPECT_TRUE(grenade.projectileModel->centre().isNear({}));
    EXPECT_TRUE(grenade.explodes);
    EXPECT_EQ(grenade.duration, 120);
    EXPECT_EQ(TempGame::errorCount("Object 8-ball is missing image subobject!"), 1);
}

TEST_F(Inventory, PickupsGroupAndTell) {
    inventory.give(kApples, 1);
    EXPECT_EQ(lastMessage(), "got an Apples");
    inventory.give(kApples, 5);
    EXPECT_EQ(lastMessage(), "got 5 Apples");
    inventory.give(kKey, 2);
    EXPECT_EQ(lastMessage(), "got 2 Keys");
    inventory.give(kKey, 1);
    EXPECT_EQ(list(), "[1x6] 2x2 2x1 ") << "keys do not group";
    inventory.give(kPistol, 12);
    EXPECT_EQ(lastMessage(), "got a pistol") << "its count is of rounds";
    inventory.give(kPistol, 6);
    EXPECT_EQ(lastMessage(), "got 6 rounds for pistol");
    const size_t told = hud.messages.size();
    inventory.give(kApples, -1);
    inventory.give(kKey, -1);
    inventory.give(99, 1);
    EXPECT_EQ(hud.messages.size(), told) << "taking tells nothing, kinds without grouping lose nothing";
    EXPECT_EQ(list(), "[1x5] 2x2 2x1 0x18 ");
    inventory.giveParts(kStick, 3);
    EXPECT_FALSE(inventory.has(kStick)) << "parts of what one does not have";
    inventory.give(kPistol, -100);
    EXPECT_EQ(inventory.countOf(kPistol), 0);
    EXPECT_TRUE(inventory.has(kPistol)) << "an empty pistol is still a pistol";
    inventory.give(kApples, INT32_MIN);
    EXPECT_EQ(list(), "[2x2] 2x1 0x0 ") << "the first entry went, the selection has nowhere to go back to";
    TempGame::clearErrors();
    for (size_t i = 0; i < cInventory::kMostEntries; ++i) inventory.give(kKey, 1);
    inventory.give(kApples, 1);
    inventory.give(kPistol, 7);
    EXPECT_EQ(inventory.entries().size(), cInventory::kMostEntries) << "no more of what does not group";
    EXPECT_FALSE(inventory.has(kApples));
    EXPECT_EQ(inventory.countOf(kPistol), 7);
    EXPECT_EQ(TempGame::errors().size(), 1u) << "told once";
}

TEST_F(Inventory, TheSelectionFollowsWhatIsTaken) {
    for (int id : {kApples, kKey, kKey, kStick, kPistol}) inventory.give(id, 2);
    inventory.selectItem(kStick);
    inventory.removeAll(kKey);
    EXPECT_EQ(list(), "1x2 [5x2] 0x2 ");
    inventory.give(kApples, -2);
    inventory.selectItem(kPistol);
    inventory.removeSelected();
    EXPECT_EQ(list(), "[5x2] ");
    for (const int count : {1, 7}) inventory.give(kKey, count);
    inventory.selectItem(kKey);
    EXPECT_EQ(inventory.selectedCount(), 7) << "the last entry of the kind";
    for (const int count : {6, 1}) inventory.consume(count);
    EXPECT_EQ(list(), "[5x2] 2x1 ") << "used up; the first entry is selected";
    for (const int id : {kStick, kKey}) inventory.removeAll(id);
    EXPECT_EQ(inventory.selectedItem(), nullptr);
    inventory.consume(1);
    inventory.removeSelected();
    inventory.moveCursor(1, 1);
}

TEST_F(Inventory, TheCursorWrapsAndStaysVisible) {
    inventory.moveCursor(1, 0);
    EXPECT_EQ(hud.statsTimer, 0) << "nothing to move over";
    for (int i = 0; i < 14; ++i) inventory.give(kKey, 1); // three columns, five rows
    const auto at = [&](int dx, int dy) {
        inventory.moveCursor(dx, dy);
        return inventory.getSelected();
    };
    EXPECT_EQ(at(-1, 0), 2) << "left of the first column is the last of the same row";
    EXPECT_EQ(at(1, 0), 0);
    EXPECT_EQ(at(0, -1), 11) << "over the whole list";
    EXPECT_EQ(inventory.getFirstRow(), 0) << "four rows fit";
    EXPECT_EQ(at(0, 1), 0);
    inventory.step(-1);
    EXPECT_EQ(inventory.getSelected(), 13);
    EXPECT_EQ(inventory.getFirstRow(), 1);
    EXPECT_EQ(hud.statsTimer, 200);
    inventory.moveRow(1);
    EXPECT_EQ(inventory.getSelected(), 2);
    EXPECT_EQ(inventory.getFirstRow(), 0);
    cInventory few(hud);
    few.give(kKey, 1);
    few.give(kKey, 1);
    few.moveRow(1);
    EXPECT_EQ(few.getSelected(), 0) << "less than a row";
}

TEST_F(Inventory, ARecordThatIsNotIntactLeavesNothing) {
    for (int id : {kApples, kKey, kPistol}) inventory.give(id, 3 + id);
    inventory.give(kPistol, -7); // odd and negative sums are part of the check
    cBinaryWriter out;
    inventory.save(out);
    ASSERT_EQ(out.bytes().size(), 4u + 3 * 8 + 4);
    EXPECT_EQ(cBinaryReader(out.bytes()).u32(), 3u);
    cInventory copy(hud);
    const auto loads = [&](const platform::Bytes& bytes) {
        cBinaryReader in(bytes);
        return copy.load(in);
    };
    EXPECT_TRUE(loads(out.bytes()));
    EXPECT_EQ(copy.entries().size(), 3u);
    EXPECT_EQ(copy.countOf(kKey), 5);
    platform::Bytes wrong = out.bytes();
    wrong[20] ^= 1; // the id of the third entry
    EXPECT_FALSE(loads(wrong));
    for (platform::Bytes cut = out.bytes(); !cut.empty();) {
        cut.pop_back();
        EXPECT_FALSE(loads(cut)) << cut.size();
        EXPECT_TRUE(copy.entries().empty());
    }
    EXPECT_FALSE(loads({0xff, 0xff, 0xff, 0x7f})) << "without end";
}

TEST_F(Inventory, TheHudCountsFrames) {
    hud.message(3, "%d and %s", 7, "text");
    hud.message(0, "never");
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(hud.messages.size(), 1u) << i;
        EXPECT_EQ(hud.messages[0].text, "7 and text");
        hud.drawMessages(600);
    }
    EXPECT_TRUE(hud.messages.empty());
    for (int i = 0; i < 1000; ++i) hud.message(10, "m");
    EXPECT_LE(hud.messages.size(), 64u);

    hud.showStats();
    EXPECT_EQ(hud.statsAlpha(), 150);
    hud.statsTimer = 29;
    EXPECT_EQ(hud.statsAlpha(), 145);
    hud.statsFading = false;
    EXPECT_EQ(hud.statsAlpha(), 150);
    for (const auto& [health, most, end] : {std::tuple(100, 100, 102), {0, 100, 9}, {50, 0, 9}})
        EXPECT_EQ(cHud::healthBarEnd(health, most), end) << health;
}
