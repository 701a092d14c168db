#pragma once
#include <span>
#include <string>
#include <vector>

class cConsole;

/// The console's commands.
class cCommandMgr {
public:
    using Handler = int (*)(const std::vector<std::string>& params); ///< 0 done, −1 refused
    struct Row {
        const char* name;
        int minParams, maxParams;
        const char* description;
        Handler handler;
    };

    static cCommandMgr& instance();
    /// Name, blank, parameters. Refusals are printed. The handler's status, −1 when none ran.
    int execute(const std::string& line, cConsole& console);
    static std::span<const Row> rows(); ///< in order of `help`; implemented in commands.cpp
    std::string getDescription(const std::string& name) const; ///< empty for an unknown name
};
