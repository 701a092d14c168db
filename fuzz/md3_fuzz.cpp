#include "models/anim_model.h"
#include "models/md3.h"
#include "support.h"

FUZZ_TARGET(md3) {
    fuzz::putFile("in.md3", fuzz::text(data, size));
    cAnimModel part;
    part.currentMesh = "before";
    const bool ok = loadMd3(part, "in.md3");
    fuzz::require(ok || (part.currentMesh == "before" && part.meshes.empty()), "a failure leaves the part");
    fuzz::cDigest digest;
    fuzz::usePart(part, digest);
    return ok ? digest.value() : 0;
}
