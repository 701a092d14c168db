#pragma once
#include <string>

class cAnimModel;

/// Imports an MD3 file (version 15) into an empty part. Coordinates stay as stored, z up; textures come by a
/// skin. False, with SDL's error text and the part untouched, when there is no such file or it is damaged.
bool loadMd3(cAnimModel& part, const std::string& path);
