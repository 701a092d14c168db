#include "core/config_mgr.h"

#include "core/log_mgr.h"
#include "core/parse.h"
#include "platform/files.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {
constexpr size_t kLongestLine = 511;  ///< characters; the rest of a longer line is cut off
constexpr size_t kLongestIgnored = 3; ///< lines of this length or less hold no entry

std::unique_ptr<cConfigMgr> g_instance;

void invalid(std::string_view key) {
    cLogMgr::instance().error("Invalid value requested from cfg, " + std::string(key));
}

enum class Type { integer, real, text };

Type classify(std::string_view value) {
    if (value.find_first_not_of("0123456789- \te.") != std::string_view::npos) return Type::text;
    return value.find_first_of("e.") != std::string_view::npos ? Type::real : Type::integer;
}
} // namespace

void cConfigFile::load(const std::string& fileName) {
    ints_.clear();
    floats_.clear();
    texts_.clear();
    platform::Bytes bytes;
    if (!platform::readFile(fileName, bytes)) {
        cLogMgr::instance().error("Failed to open config file: " + fileName);
        return;
    }
    std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    while (!rest.empty()) {
        const size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        parseLine(line.substr(0, kLongestLine));
    }
}

void cConfigFile::parseLine(std::string_view line) {
    if (line.size() <= kLongestIgnored || line[0] == '~') return;
    const size_t keyEnd = std::min(line.find_first_of(" \t"), line.size());
    const std::string key(line.substr(0, keyEnd));
    // The larger of the two positions: a mixed run of blanks may leave part of itself in the value.
    const size_t noSpace = std::min(line.find_first_not_of(' ', keyEnd), line.size());
    const size_t noTab = std::min(line.find_first_not_of('\t', keyEnd), line.size());
    const std::string value(line.substr(std::max(noSpace, noTab)));
    if (keyEnd == line.size()) {
        texts_[key] = ""; // a key without a value
        return;
    }
    switch (classify(value)) {
    case Type::text:
        texts_[key] = value;
        break;
    case Type::real:
        floats_[key] = toFloat(value);
        break;
    case Type::integer:
        ints_[key] = toInt(value);
        break;
    }
}

int32_t cConfigFile::getInt(std::string_view key) const {
    if (const auto it = ints_.find(key); it != ints_.end()) return it->second;
    if (const auto it = floats_.find(key); it != floats_.end()) {
        cLogMgr::instance().error("Float value " + std::string(key) + " requested as int");
        // Only what a 32-bit integer can hold is converted.
        return std::fabs(it->second) < 2147483648.0f ? static_cast<int32_t>(it->second) : 0;
    }
    invalid(key);
    return 0;
}

float cConfigFile::getFloat(std::string_view key) const {
    if (const auto it = floats_.find(key); it != floats_.end()) return it->second;
    if (const auto it = ints_.find(key); it != ints_.end()) {
        cLogMgr::instance().error("Int value " + std::string(key) + " requested as float");
        return static_cast<float>(it->second);
    }
    invalid(key);
    return 0.0f;
}

std::string cConfigFile::getString(std::string_view key) const {
    if (const auto it = texts_.find(key); it != texts_.end()) return it->second;
    invalid(key);
    return {};
}

cConfigMgr& cConfigMgr::instance() {
    if (!g_instance) g_instance = std::make_unique<cConfigMgr>();
    return *g_instance;
}

void cConfigMgr::destroy() {
    g_instance.reset();
}

const cConfigFile& cConfigMgr::section(std::string_view name) {
    const auto it = sections_.find(name);
    if (it != sections_.end()) return it->second;
    cConfigFile& file = sections_[std::string(name)];
    file.load(std::string(name) + ".cfg");
    return file;
}

int32_t cConfigMgr::getInt(std::string_view key, std::string_view sec) {
    return section(sec).getInt(key);
}
float cConfigMgr::getFloat(std::string_view key, std::string_view sec) {
    return section(sec).getFloat(key);
}
std::string cConfigMgr::getString(std::string_view key, std::string_view sec) {
    return section(sec).getString(key);
}
