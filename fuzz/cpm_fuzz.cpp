#include "models/model.h"
#include "support.h"

FUZZ_TARGET(cpm) {
    fuzz::putFile("in.cpm", fuzz::text(data, size));
    cModel model;
    const int result = model.load("in.cpm", false);
    fuzz::require(result == 0 || model.objects.empty(), "a model that cannot be read is empty");
    fuzz::cDigest digest;
    fuzz::useModel(model, digest);
    return result == 0 ? digest.value() : 0;
}
