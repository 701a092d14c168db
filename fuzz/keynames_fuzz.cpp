#include "support.h"
#include "ui/key_names.h"

FUZZ_TARGET(keynames) {
    fuzz::putFile("keynames.cfl", fuzz::text(data, size));
    cKeyNames names;
    names.load();
    fuzz::cDigest digest;
    for (const std::string& name : names.commands) digest.add(name);
    for (const std::string& name : names.keys) {
        fuzz::require(!name.empty(), "a key without a name is called ???");
        digest.add(name);
    }
    return digest.value();
}
