#include "script/cml_checker.h"
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

/// Some of everything exists.
CmlCheckData checkData() {
    CmlCheckData data;
    data.fileExists = [](const std::string& name) { return name.size() % 2 != 0; };
    data.animations = [](const std::string& model) -> const CmlCheckData::Animations* {
        static const CmlCheckData::Animations kSome{{"RUN"}, {"WALK"}};
        return model.empty() ? nullptr : &kSome;
    };
    data.itemExists = [](const std::string& name) { return name == "stone"; };
    data.kindExists = [](const std::string&, const std::string&, const std::string&) { return false; };
    data.spawnPointExists = [](const std::string&, const std::string&) { return true; };
    return data;
}

/// The check says what the compiler says, and something about lines of the document.
void check(const CmlReport& report, int result, fuzz::cDigest& digest) {
    CmlReport errors, warnings;
    errors.quiet = warnings.quiet = true;
    fuzz::require(checkCmlDocument("in.xml", lookups(), checkData(), errors, warnings) == result &&
                      errors.rows.size() == report.rows.size(),
                  "the check has the compiler's errors");
    fuzz::require(result == 0 || warnings.rows.empty(), "there are no warnings of what is not compiled");
    for (const CmlReport::Row& row : warnings.rows) {
        fuzz::require(row.line >= 1 && !row.message.empty(), "a warning has a line and a text");
        digest.add(row.message);
    }
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
    fuzz::cDigest digest;
    check(report, result, digest);
    if (result != 0) return 0;
    walk(document, digest);
    return digest.addValue(report.rows.size()).value();
}
