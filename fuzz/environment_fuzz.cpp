#include "world/environment.h"

#include "support.h"

FUZZ_TARGET(environment) {
    fuzz::putFile("in.env", fuzz::text(data, size));
    cEnvironment environment;
    const bool ok = environment.load("in.env");
    fuzz::require(ok == environment.isLoaded(), "what is loaded says so");
    for (int frame = 0; frame < 3; ++frame) environment.draw();
    if (!ok) return 0;
    return fuzz::cDigest()
        .addValue(environment.lightPosition())
        .addValue(environment.deathHeight())
        .addValue(environment.hasWater())
        .value();
}
