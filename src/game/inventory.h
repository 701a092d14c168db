#pragma once
#include "game/item_def.h"

/// What the hero carries. It stays empty until items exist; every operation then holds for an empty list.
class cInventory {
public:
    void toggle() { open_ = !open_; }
    bool isOpen() const { return open_; }
    void clear() {}
    void clickCell(int, int) {}
    void moveCursor(int, int) {}
    void moveRow(int) {}
    void step(int) {}
    const cItemDef* selectedItem() const { return nullptr; }

private:
    bool open_ = false;
};
