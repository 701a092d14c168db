#pragma once
#include "script/cml_check.h"

/// Where a call stands.
struct CmlCallPlace {
    const cCmlElement& object; ///< the object around it
    int line;
    bool test; ///< in a test list, not a procedure list
};

/// Holds one call as written against what its arguments and its object must be.
void checkCmlCall(cCmlCheck& check, const CmlCallPlace& place, const std::string& piece);

/// Whether the check knows the arguments of this procedure or test.
bool isCheckedCall(std::string_view name);
