#pragma once
#include <string>

/// One error row, the first time only, for an operation whose subsystem does not exist yet.
void reportNotBuilt(const std::string& operation);
