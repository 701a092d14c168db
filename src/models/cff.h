#pragma once
#include <string>

class cAnimModel;

/// Reads a part and turns positions and tag origins from z-up to y-up, (x, y, z) to (−y, z, −x); tag axes and
/// normals stay as stored. The texture of the last mesh goes to all. False, with the part untouched, when the
/// file cannot be opened or is damaged.
bool readCff(cAnimModel& part, const std::string& path);
/// The same with every value as stored.
bool readCffRaw(cAnimModel& part, const std::string& path);
/// False when the file cannot be written.
bool writeCff(const cAnimModel& part, const std::string& path);
