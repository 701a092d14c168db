// The inventory's record of a saved hero; then what the hero does with what he carries.
#include "core/application.h"
#include "data/binary_reader.h"
#include "game/hud.h"
#include "game/inventory.h"
#include "support.h"

#include <cstring>

namespace {
constexpr const char* kItems =
    "<items><item name=\"gun\" different_subobjects=\"1\" allow_grouping=\"1\"><image />"
    "</item><item name=\"apple\" allow_grouping=\"1\"><image /></item>"
    "<item name=\"key\"><image /></item></items>";
constexpr int32_t kKinds = 3;
constexpr size_t kEntryBytes = 8;

/// The input without its count and its sum, with those put right: no input has a right sum by chance.
platform::Bytes withItsSum(const uint8_t* data, size_t size) {
    const size_t entries = size < kEntryBytes ? 0 : (size - kEntryBytes) / kEntryBytes;
    cBinaryWriter out;
    out.u32(static_cast<uint32_t>(entries));
    uint32_t sum = 0;
    for (size_t i = 0; i < entries; ++i) {
        uint32_t id, count;
        std::memcpy(&id, data + 4 + i * kEntryBytes, 4);
        std::memcpy(&count, data + 8 + i * kEntryBytes, 4);
        out.u32(id);
        out.u32(count);
        const auto n = static_cast<uint32_t>(i);
        sum += id * n + static_cast<uint32_t>(static_cast<int32_t>(count * n) / 2);
    }
    out.u32(sum);
    return out.bytes();
}

void use(cInventory& inventory, fuzz::cDigest& digest) {
    for (const auto& entry : inventory.entries()) digest.addValue(entry);
    const auto check = [&] {
        const int32_t selected = inventory.getSelected();
        const auto n = static_cast<int32_t>(inventory.entries().size());
        fuzz::require(selected >= 0 && (selected < n || (n == 0 && selected == 0)), "an entry is selected");
        fuzz::require(inventory.getFirstRow() >= 0, "the grid begins with one of its rows");
        digest.addValue(selected).addValue(n).addValue(inventory.selectedCount());
    };
    for (const auto& [dx, dy] : {std::pair{-1, 0}, {0, -1}, {1, 1}, {0, 1}}) {
        inventory.moveCursor(dx, dy);
        check();
    }
    for (const int step : {-1, 2, -3}) {
        inventory.step(step);
        inventory.moveRow(step);
        check();
    }
    for (int32_t id = -1; id <= kKinds; ++id) {
        inventory.give(id, 2);
        inventory.giveParts(id, INT32_MAX);
        inventory.selectItem(id);
        inventory.consume(1);
        inventory.give(id, -1);
        check();
    }
    for (int32_t id = 0; id < kKinds; ++id) {
        inventory.removeSelected();
        inventory.removeAll(id);
        fuzz::require(!inventory.has(id), "all of the kind are gone");
        check();
    }
}
} // namespace

FUZZ_TARGET(inventory) {
    cApplication::destroyGame();
    fuzz::putFile("objects.xml", kItems);
    fuzz::putFile("inventory.cfg", "WIDTH 320\nSHOW_INFO 10\nSHOW_TIME 10\n");
    cItemDefs::instance().loadItemDefs();
    cHud hud;
    cInventory inventory(hud);
    fuzz::cDigest digest;
    cBinaryReader in(platform::Bytes(data, data + size));
    const bool intact = inventory.load(in);
    cBinaryReader passed(in.bytes());
    fuzz::require(cInventory::isIntact(passed) == intact, "passing over it finds what loading it finds");
    if (intact) {
        cBinaryWriter out;
        inventory.save(out);
        fuzz::require(out.bytes().size() <= size &&
                          std::memcmp(out.bytes().data(), data, out.bytes().size()) == 0,
                      "what was read is written again");
    } else {
        fuzz::require(inventory.entries().empty(), "a damaged record gives nothing");
        cBinaryReader mended(withItsSum(data, size));
        fuzz::require(inventory.load(mended), "a record with its sum is taken");
    }
    use(inventory, digest);
    return intact ? digest.value() : 0;
}
