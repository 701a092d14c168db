#include "core/not_built.h"

#include "core/log_mgr.h"

#include <set>

void reportNotBuilt(const std::string& operation) {
    static std::set<std::string> reported;
    if (reported.insert(operation).second)
        cLogMgr::instance().error("%s is not built yet", operation.c_str());
}
