#pragma once
#include <cstdint>

/// What all scripts together may do in one frame. A small document can ask for more than any frame can hold
/// (lists that run lists, hits that are answered by volleys): what is beyond is left out, and a row names who
/// asked for it. Renewed when the frame's events have been handled, and for a new level.
struct FrameBudget {
    int32_t calls = 1000000;
    int32_t attacks = 50000;
    int32_t musicStarts = 8; ///< each opens a file

    static FrameBudget& instance() {
        static FrameBudget budget;
        return budget;
    }
    void renew() { *this = {}; }
};
