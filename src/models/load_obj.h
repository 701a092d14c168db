#pragma once
#include <string>

class cModel;

/// Reads an OBJ file and its material library into the model, turned from z-up to y-up; one material an
/// object. 0, or −1 when the file cannot be opened. Faces that name missing positions or coordinates are
/// dropped, and libraries after the 256th.
int loadObj(const std::string& path, cModel& model);
