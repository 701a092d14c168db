#pragma once
#include <string>

/// Reads the back buffer and writes it as an RGB PNG to a real path. False when the file cannot be written.
bool writeScreenshot(const std::string& path, int width, int height);
