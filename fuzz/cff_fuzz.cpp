#include "models/cff.h"

#include "models/anim_model.h"
#include "support.h"

FUZZ_TARGET(cff) {
    fuzz::putFile("in.cff", fuzz::text(data, size));
    cAnimModel part;
    part.currentMesh = "before";
    const bool ok = readCff(part, "in.cff");
    fuzz::require(ok || (part.currentMesh == "before" && part.meshes.empty()), "a failure leaves the part");
    fuzz::cDigest digest;
    fuzz::usePart(part, digest);
    return ok ? digest.value() : 0;
}
