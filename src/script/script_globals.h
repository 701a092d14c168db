#pragma once
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The scripts' global variables: they live as long as the world, across levels. An index outside of the
/// table reads 0 and stores nothing.
class cScriptGlobals {
public:
    int32_t globalIndex(const std::string& name) {
        const auto [it, isNew] = indices_.try_emplace(name, static_cast<int32_t>(values_.size()));
        if (isNew) values_.push_back(0);
        return it->second;
    }
    int32_t getGlobal(int32_t index) const { return has(index) ? values_[static_cast<size_t>(index)] : 0; }
    void setGlobal(int32_t index, int32_t value) {
        if (has(index)) values_[static_cast<size_t>(index)] = value;
    }
    void addGlobal(int32_t index, int32_t value) {
        setGlobal(index, static_cast<int32_t>(static_cast<uint32_t>(getGlobal(index)) +
                                              static_cast<uint32_t>(value)));
    }

private:
    bool has(int32_t index) const { return index >= 0 && static_cast<size_t>(index) < values_.size(); }

    std::map<std::string, int32_t> indices_;
    std::vector<int32_t> values_;
};
