#include "data/damaged_file.h"

#include "core/log_mgr.h"

bool keepDamagedFile(const std::string& fileName, const platform::Bytes& bytes) {
    const std::string kept = fileName + ".damaged";
    if (!platform::writeFile(kept, bytes)) return false;
    cLogMgr::instance().error("%s was damaged: it is kept as %s", fileName.c_str(), kept.c_str());
    return true;
}
