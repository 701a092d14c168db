#include "models/model.h"
#include "support.h"

FUZZ_TARGET(3ds) {
    fuzz::putFile("in.3ds", fuzz::text(data, size));
    cModel model;
    const int result = model.load("in.3ds", false);
    fuzz::cDigest digest;
    fuzz::useModel(model, digest);
    return result == 0 ? digest.value() : 0;
}
