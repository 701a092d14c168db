#pragma once
#include "script/cml_check.h"

#include <string>

/// Compiles a document and looks for what compiles but would silently fail in the game. Errors are the
/// compiler's messages in its order; warnings are sorted by line, and there are none when the document is not
/// compiled (the result is negative then).
int checkCmlDocument(const std::string& fileName, const CmlLookups& lookups, const CmlCheckData& data,
                     CmlReport& errors, CmlReport& warnings);
