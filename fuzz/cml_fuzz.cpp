#include "script/cml_element.h"
#include "script/cml_vocabulary.h"
#include "support.h"

namespace {
CmlLookups lookups() {
    CmlLookups lookups;
    lookups.globalIndex = [](const std::string& name) { return static_cast<int32_t>(name.size()); };
    lookups.findItem = [](const std::string& name) { return name == "stone" ? 1 : -1; };
    lookups.itemAt = [](int32_t) { return nullptr; };
    lookups.preloadSound = [](const std::string&) {};
    return lookups;
}

void addCalls(const std::vector<cCmlCall>& calls, fuzz::cDigest& digest) {
    for (const cCmlCall& call : calls) {
        fuzz::require(call.args.size() >= 3 && call.args.size() >= call.argCount,
                      "handlers may read three arguments and all that were written");
        for (const int32_t arg : call.args) digest.addValue(arg);
        digest.addValue(call.objectId).addValue(call.procedure != nullptr).addValue(call.function != nullptr);
    }
}

void walk(const cCmlElement& e, fuzz::cDigest& digest) {
    digest.addValue(e.elementKind).addValue(e.key).add(e.text);
    addCalls(e.calls, digest);
    addCalls(e.tests, digest);
    for (int32_t i = 0; i < e.childCount(); ++i) {
        fuzz::require(e.childAt(i)->parent == &e, "a child knows its parent");
        walk(*e.childAt(i), digest);
    }
}
} // namespace

FUZZ_TARGET(cml) {
    fuzz::putFile("in.xml", fuzz::text(data, size));
    cCmlElement document;
    CmlReport report;
    report.quiet = true;
    const int result = document.load("in.xml", lookups(), report);
    fuzz::require(result == 0 || !report.rows.empty(), "a document that is refused has a reason");
    if (result != 0) return 0;
    fuzz::cDigest digest;
    walk(document, digest);
    return digest.addValue(report.rows.size()).value();
}
