#include "core/config_mgr.h"
#include "support.h"

FUZZ_TARGET(cfg) {
    const std::string_view text = fuzz::text(data, size);
    fuzz::putFile("in.cfg", text);
    cConfigFile file;
    file.load("in.cfg");
    fuzz::cDigest digest;
    // Every word of the file is asked for, in all three ways.
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find_first_of(" \t\r\n", at), text.size());
        const std::string_view word = text.substr(at, end - at);
        digest.addValue(file.getInt(word)).addValue(file.getFloat(word)).add(file.getString(word));
        at = end + 1;
    }
    return digest.value();
}
