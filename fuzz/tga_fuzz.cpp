#include "support.h"

FUZZ_TARGET(tga) {
    return fuzz::readPicture("in.tga", data, size);
}
