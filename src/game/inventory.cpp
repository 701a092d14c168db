#include "game/inventory.h"

#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "data/binary_reader.h"
#include "game/hud.h"
#include "render/renderer.h"

#include <algorithm>

namespace {
constexpr size_t kEntryBytes = 8;

/// 0 ... modulus − 1, also for negative values; 0 without a modulus.
int32_t wrap(int64_t value, int32_t modulus) {
    if (modulus <= 0) return 0;
    const auto rest = static_cast<int32_t>(value % modulus);
    return rest < 0 ? rest + modulus : rest;
}

int32_t added(int32_t a, int32_t b) {
    return static_cast<int32_t>(std::clamp<int64_t>(static_cast<int64_t>(a) + b, INT32_MIN, INT32_MAX));
}

int32_t showInfo() {
    return cConfigMgr::instance().getInt("SHOW_INFO", "inventory");
}
} // namespace

cInventory::cInventory(cHud& hud) : hud_(hud) {
    const int32_t wanted = std::max(0, cConfigMgr::instance().getInt("WIDTH", "inventory"));
    width_ = wanted - wanted % kPanelStep;
    columns_ = width_ / kCell;
    visibleRows_ = (cConfigMgr::instance().getInt("WINDOW_HEIGHT", "window") - kGridFoot) / kCell;
}

int32_t cInventory::find(int32_t id) const {
    const auto at =
        std::find_if(entries_.begin(), entries_.end(), [=](const Entry& e) { return e.id == id; });
    return at == entries_.end() ? -1 : static_cast<int32_t>(at - entries_.begin());
}

void cInventory::give(int32_t id, int32_t n) {
    const cItemDef* item = cItemDefs::instance().at(id);
    if (!item) return;
    const int32_t entry = find(id);
    if (entry >= 0 && item->allowGrouping) {
        add(static_cast<size_t>(entry), n);
        return;
    }
    if (n <= 0) return;
    if (entries_.size() >= kMostEntries) {
        if (!fullReported_)
            cLogMgr::instance().error("The hero carries too much: no more %s", item->name.c_str());
        fullReported_ = true;
        return;
    }
    entries_.push_back({id, n});
    tellPickup(*item, item->differentSubobjects ? 1 : n);
}

void cInventory::tellPickup(const cItemDef& item, int32_t n) const {
    if (n == 1) {
        hud_.message(showInfo(), "got %s %s", item.article.c_str(), item.name.c_str());
    } else {
        hud_.message(showInfo(), "got %d %s%s", n, item.name.c_str(), item.pluralSuffix.c_str());
    }
}

void cInventory::giveParts(int32_t id, int32_t n) {
    const int32_t entry = find(id);
    if (entry >= 0) add(static_cast<size_t>(entry), n);
}

void cInventory::add(size_t entry, int32_t n) {
    static const cItemDef kUnknown; // a saved hero may carry what the data no longer knows
    const cItemDef* known = cItemDefs::instance().at(entries_[entry].id);
    const cItemDef* item = known ? known : &kUnknown;
    entries_[entry].count = added(entries_[entry].count, n);
    if (entries_[entry].count < 1) {
        if (item->differentSubobjects) {
            entries_[entry].count = 0;
        } else {
            removeAt(entry);
        }
        return;
    }
    if (n <= 0) return;
    if (item->differentSubobjects) {
        hud_.message(showInfo(), "got %d %s for %s", n, item->subobjectName.c_str(), item->name.c_str());
    } else {
        tellPickup(*item, n);
    }
}

void cInventory::removeAt(size_t entry) {
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(entry));
    // At the very first entry there is nothing before it to go back to.
    if (static_cast<int32_t>(entry) <= selected_) selected_ = std::max(0, selected_ - 1);
    keepVisible();
}

void cInventory::removeAll(int32_t id) {
    const auto ofTheKind = [=](const Entry& e) { return e.id == id; };
    // Only what goes from before the selection moves it.
    const auto before = std::count_if(entries_.begin(), entries_.begin() + selected_, ofTheKind);
    if (entries_.empty() || std::erase_if(entries_, ofTheKind) == 0) return;
    selected_ = std::clamp(selected_ - static_cast<int32_t>(before), 0,
                           std::max(0, static_cast<int32_t>(entries_.size()) - 1));
    keepVisible();
}

void cInventory::removeSelected() {
    if (entries_.empty()) return;
    entries_.erase(entries_.begin() + selected_);
    selected_ = 0;
    keepVisible();
}

void cInventory::selectItem(int32_t id) {
    for (size_t i = entries_.size(); i-- > 0;) {
        if (entries_[i].id != id) continue;
        selected_ = static_cast<int32_t>(i);
        keepVisible();
        return;
    }
}

bool cInventory::has(int32_t id) const {
    return find(id) >= 0;
}

bool cInventory::isSelected(int32_t id) const {
    return !entries_.empty() && entries_[static_cast<size_t>(selected_)].id == id;
}

int32_t cInventory::countOf(int32_t id) const {
    const int32_t entry = find(id);
    return entry < 0 ? 0 : entries_[static_cast<size_t>(entry)].count;
}

const cItemDef* cInventory::selectedItem() const {
    return entries_.empty() ? nullptr : cItemDefs::instance().at(entries_[static_cast<size_t>(selected_)].id);
}

int32_t cInventory::selectedCount() const {
    return entries_.empty() ? 0 : entries_[static_cast<size_t>(selected_)].count;
}

void cInventory::consume(int32_t n) {
    const cItemDef* item = selectedItem();
    if (!item) return;
    Entry& entry = entries_[static_cast<size_t>(selected_)];
    entry.count = added(entry.count, -n);
    if (entry.count >= 1) return;
    entry.count = 0;
    if (!item->differentSubobjects) removeSelected();
}

void cInventory::clear() {
    entries_.clear();
    selected_ = firstRow_ = 0;
}

void cInventory::copyFrom(const cInventory& other) {
    entries_ = other.entries_;
    selected_ = other.selected_;
    firstRow_ = other.firstRow_;
}

void cInventory::keepVisible() {
    if (columns_ <= 0) return;
    const int32_t row = selected_ / columns_;
    firstRow_ = std::max(0, std::min(firstRow_, row));
    if (row - firstRow_ + 1 > visibleRows_) firstRow_ = row + 1 - std::max(visibleRows_, 1);
}

void cInventory::moveCursor(int dx, int dy) {
    const auto n = static_cast<int32_t>(entries_.size());
    if (n == 0 || columns_ <= 0) return;
    const int32_t column = wrap(static_cast<int64_t>(selected_ % columns_) + dx, columns_);
    const int64_t moved = selected_ - selected_ % columns_ + column + static_cast<int64_t>(dy) * columns_;
    selected_ = wrap(moved, n);
    keepVisible();
    hud_.showStats();
}

void cInventory::moveRow(int rows) {
    const auto n = static_cast<int32_t>(entries_.size());
    if (n == 0) return;
    if (columns_ > 0 && n >= columns_) {
        selected_ = wrap(selected_ + static_cast<int64_t>(rows) * columns_, n);
        firstRow_ = wrap(static_cast<int64_t>(firstRow_) + rows, n / columns_);
    }
    keepVisible();
    hud_.showStats();
}

void cInventory::step(int by) {
    const auto n = static_cast<int32_t>(entries_.size());
    if (n == 0) return;
    selected_ = wrap(static_cast<int64_t>(selected_) + by, n);
    keepVisible();
    hud_.showStats();
}

void cInventory::clickCell(int x, int y) {
    const int left = static_cast<int>(cRenderer::instance().getWidth()) - slide_;
    const int column = (x - left) / kCell, row = y / kCell;
    if (row < 0 || row >= visibleRows_) return;
    const int64_t index = (static_cast<int64_t>(row) + firstRow_) * columns_ + column;
    if (index < 0 || index >= static_cast<int64_t>(entries_.size())) return;
    selected_ = static_cast<int32_t>(index);
    keepVisible();
    hud_.showStats();
}

int32_t cInventory::checkSum() const {
    uint32_t sum = 0;
    for (uint32_t i = 0; i < entries_.size(); ++i) sum += checkTerm(entries_[i], i);
    return static_cast<int32_t>(sum);
}

/// 32-bit arithmetic that wraps, the division toward zero.
uint32_t cInventory::checkTerm(const Entry& entry, uint32_t index) {
    const auto product = static_cast<int32_t>(static_cast<uint32_t>(entry.count) * index);
    return static_cast<uint32_t>(entry.id) * index + static_cast<uint32_t>(product / 2);
}

void cInventory::save(cBinaryWriter& out) const {
    out.i32(static_cast<int32_t>(entries_.size()));
    for (const Entry& entry : entries_) {
        out.i32(entry.id);
        out.i32(entry.count);
    }
    out.i32(checkSum());
}

bool cInventory::load(cBinaryReader& in) {
    clear();
    const int32_t n = in.i32();
    if (!in.canHold(n, kEntryBytes)) return false;
    for (int32_t i = 0; i < n; ++i) {
        const int32_t id = in.i32();
        entries_.push_back({id, in.i32()});
    }
    const bool intact = in.i32() == checkSum() && in.good();
    if (!intact) clear();
    return intact;
}

bool cInventory::isIntact(cBinaryReader& in) {
    const int32_t n = in.i32();
    if (!in.canHold(n, kEntryBytes)) return false;
    uint32_t sum = 0;
    for (uint32_t i = 0; i < static_cast<uint32_t>(n); ++i) {
        const int32_t id = in.i32();
        sum += checkTerm({id, in.i32()}, i);
    }
    return in.u32() == sum && in.good();
}
