#pragma once
#include <string>

class cModel;

/// Reads the meshes of a 3DS file (directory + fileName) into the model, turned from z-up to y-up; one
/// material an object. 0, or −1 with the reason in SDL's error text. A file that is cut short gives the
/// objects before the cut.
int load3ds(const std::string& directory, const std::string& fileName, cModel& model);
