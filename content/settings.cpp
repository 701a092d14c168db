#include "data/binary_reader.h"
#include "forge/recipes.h"
#include "ui/input_mgr.h"

// The settings that a new player starts from, and the latest ones, which are the same: the program's own, but
// that the health panel stays. Faded away it would not come back when the hero is hurt.
FORGE_RECIPE(settings) {
    constexpr size_t kNameBytes = 10;
    cBinaryWriter writer;
    writer.i32(2);
    for (const char* name : {cInputMgr::kDefault, cInputMgr::kLatest}) writer.fixedText(name, kNameBytes);
    cInputSettings settings;
    settings.options = kOptionCrosshair | kOptionShadows;
    for (int entry = 0; entry < 2; ++entry) settings.write(writer);
    if (writer.bytes().size() != 4 + 2 * (kNameBytes + cInputSettings::kRecordBytes))
        out.problem("settings.cfl has the wrong size");
    out.put("settings.cfl", writer.bytes());
}
