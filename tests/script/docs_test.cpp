// The pages for authors against the rows and the reader that they describe.

#include "script/cml_checker.h"
#include "script/cml_vocabulary.h"
#include "support/temp_game.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {
std::string page(const std::string& name) {
    const std::ifstream in(std::string(DOCS_DIR "/") + name);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

/// First cells of the table under this heading.
std::set<std::string> namesUnder(const std::string& document, const std::string& heading) {
    std::set<std::string> names;
    std::istringstream lines(document);
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("## ", 0) == 0) inside = line == "## " + heading;
        if (!inside || line.rfind("| `", 0) != 0) continue;
        EXPECT_TRUE(names.insert(line.substr(3, line.find('`', 3) - 3)).second) << line;
    }
    return names;
}

template <typename Rows, typename NameOf>
std::set<std::string> namesOf(const Rows& rows, const NameOf& nameOf) {
    std::set<std::string> names;
    for (const auto& row : rows) names.emplace(nameOf(row));
    return names;
}

/// The whole documents among the page's examples.
std::vector<std::string> exampleLevels(const std::string& document) {
    std::vector<std::string> examples;
    const std::string open = "```xml\n<level", close = "```";
    for (size_t at = document.find(open); at != std::string::npos; at = document.find(open, at + 1)) {
        const size_t start = at + open.find('<');
        examples.push_back(document.substr(start, document.find(close, start) - start));
    }
    return examples;
}
} // namespace

TEST(AuthorsPages, TheReferenceNamesEveryRowAndNothingElse) {
    const std::string reference = page("level-reference.md");
    const auto name = [](const auto& row) { return row.name; };
    EXPECT_EQ(namesUnder(reference, "Procedures"), namesOf(cmlProcedures(), name));
    EXPECT_EQ(namesUnder(reference, "Tests"), namesOf(cmlFunctions(), name));
    EXPECT_EQ(namesUnder(reference, "Triggers"),
              namesOf(cmlTriggers(), [](std::string_view type) { return type; }));
    EXPECT_EQ(namesUnder(reference, "Words"),
              namesOf(cmlKeywords(), [](const auto& row) { return row.word; }));
}

TEST(AuthorsPages, TheirExamplesPassTheCheck) {
    CmlLookups lookups;
    lookups.globalIndex = [](const std::string&) { return 0; };
    lookups.findItem = [](const std::string&) { return 0; };
    lookups.itemAt = [](int32_t) { return nullptr; };
    lookups.preloadSound = [](const std::string&) {};
    CmlCheckData data;
    static const CmlCheckData::Animations kNone;
    data.fileExists = [](const std::string&) { return true; };
    data.animations = [](const std::string&) { return &kNone; };
    data.itemExists = data.fileExists;
    data.kindExists = [](const std::string&, const std::string&, const std::string&) { return true; };
    for (const auto& [name, count] :
         {std::pair("level-authors-guide.md", 2u), std::pair("dialogue.md", 1u)}) {
        const std::vector<std::string> examples = exampleLevels(page(name));
        EXPECT_EQ(examples.size(), count) << name;
        for (const std::string& example : examples) {
            const TempGame game;
            game.write("a.xml", example);
            CmlReport report;
            report.quiet = true;
            EXPECT_EQ(checkCmlDocument("a.xml", lookups, data, report, report), 0);
            for (const auto& row : report.rows)
                ADD_FAILURE() << name << ": " << row.line << ": " << row.message << "\n" << example;
        }
    }
}
