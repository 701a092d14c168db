#pragma once
#include <string>
#include <vector>

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
    /// Name, blank, parameters. Refusals are printed to the console. The handler's status, −1 when none ran.
    int execute(const std::string& line);
    std::string getDescription(const std::string& name) const; ///< empty for an unknown name
};
