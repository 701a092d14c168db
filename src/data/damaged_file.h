#pragma once
#include "platform/files.h"

#include <string>

/// Before a damaged file is replaced: keeps its bytes beside it as "<name>.damaged" and says so in the log.
/// False when they could not be kept; the file must then stay as it is.
bool keepDamagedFile(const std::string& fileName, const platform::Bytes& bytes);
