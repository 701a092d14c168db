#pragma once
#include "game/item_def.h"

#include <cstdint>
#include <vector>

class cBinaryReader;
class cBinaryWriter;
class cHud;

/// What the hero carries: entries of an item kind and a count, in the order in which they came, one of them
/// selected. The screen shows them as a grid that slides in from the right.
class cInventory {
public:
    /// Reads the panel's size from section "inventory". `hud` shows the pickup messages and must outlive
    /// this.
    explicit cInventory(cHud& hud);

    struct Entry {
        int32_t id, count;
    };

    // What scripts do and ask. An id without definition is refused, and so is what is one entry too many
    // (with one row in the log).
    static constexpr size_t kMostEntries = 1000;
    void give(int32_t id, int32_t n);
    void giveParts(int32_t id, int32_t n); ///< only to an entry that is there
    void removeAll(int32_t id);
    void removeSelected();
    void selectItem(int32_t id); ///< the last entry of the kind
    bool has(int32_t id) const;
    bool isSelected(int32_t id) const;
    int32_t countOf(int32_t id) const; ///< of the first entry of the kind, else 0

    const cItemDef* selectedItem() const; ///< null when nothing is carried
    int32_t selectedCount() const;
    /// Uses up n of the selected entry.
    void consume(int32_t n);
    void clear();
    void copyFrom(const cInventory& other);
    const std::vector<Entry>& entries() const { return entries_; }
    int32_t getSelected() const { return selected_; }
    int32_t getFirstRow() const { return firstRow_; }

    // The screen. Pixels of the window; y from its top for the mouse.
    void toggle() { open_ = !open_; }
    void close() { open_ = false, slide_ = 0; } ///< at once, without sliding
    bool isOpen() const { return open_; }
    void moveCursor(int dx, int dy);
    void moveRow(int rows);
    void step(int by);
    void clickCell(int x, int y);
    /// A step of the sliding and the panel, in the current 2D projection. Implemented in
    /// inventory_screen.cpp, as what follows.
    void slideAndDraw();
    void draw(int x, int y);
    /// An entry's picture with its lower left corner at (x, y), and its count.
    void drawEntry(size_t index, int x, int y, uint8_t alpha) const;

    // The saved record: little-endian 32-bit numbers.
    void save(cBinaryWriter& out) const;
    /// False, with nothing carried, when the record is cut short or its check sum is wrong.
    bool load(cBinaryReader& in);
    /// Passes over a saved record; false when it is cut short or its check sum is wrong.
    static bool isIntact(cBinaryReader& in);

private:
    int32_t find(int32_t id) const; ///< first entry of the kind, −1 without one
    void add(size_t entry, int32_t n);
    void tellPickup(const cItemDef& item, int32_t n) const;
    void removeAt(size_t entry);
    void keepVisible();
    int32_t checkSum() const;
    static uint32_t checkTerm(const Entry& entry, uint32_t index);
    void drawGrid(int height) const;
    static void quad(float x, float y, float u, float v);

    static constexpr int kCell = 100;     ///< pixels from one cell to the next
    static constexpr int kGridFoot = 160; ///< pixels below the grid's panel
    static constexpr int kPanelStep = 10; ///< pixels the panel moves in a frame; its width is a multiple
    cHud& hud_;
    int32_t width_, columns_, visibleRows_;
    int32_t slide_ = 0; ///< visible width of the panel
    int32_t firstRow_ = 0, selected_ = 0;
    bool open_ = false;
    bool fullReported_ = false;
    std::vector<Entry> entries_;
};
