#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

/// Lets maps keyed by text be searched without building a std::string.
struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};
template <typename Value> using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

/// One parsed "<section>.cfg": lines of KEY, blanks, value. The value's characters decide its type. A look-up
/// that fails or needs a conversion writes an error row each time.
class cConfigFile {
public:
    /// Empties the maps and reads the file; a missing one is logged and leaves them empty.
    void load(const std::string& fileName);
    int32_t getInt(std::string_view key) const;
    float getFloat(std::string_view key) const;
    std::string getString(std::string_view key) const;

private:
    void parseLine(std::string_view line);

    TextMap<int32_t> ints_;
    TextMap<float> floats_;
    TextMap<std::string> texts_;
};

/// Every tunable number and text, by (key, section). A section's file is read at its first request and kept.
class cConfigMgr {
public:
    static cConfigMgr& instance();
    static void destroy();

    int32_t getInt(std::string_view key, std::string_view section);
    float getFloat(std::string_view key, std::string_view section);
    std::string getString(std::string_view key, std::string_view section);

private:
    const cConfigFile& section(std::string_view name);
    TextMap<cConfigFile> sections_;
};
