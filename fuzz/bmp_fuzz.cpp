#include "support.h"

FUZZ_TARGET(bmp) {
    return fuzz::readPicture("in.bmp", data, size);
}
