#pragma once
#include <cstdint>

/// One loaded effect with its source. Silent ones have no names of OpenAL's.
struct cSound {
    enum Mode : uint32_t { kFlat, kPositional, kMusic };
    Mode mode = kFlat;
    uint32_t buffer = 0, source = 0; ///< names of OpenAL's, 0 for none
};
