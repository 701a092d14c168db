#pragma once
#include "platform/files.h"

#include <algorithm>
#include <string>
#include <string_view>

/// A text file's lines, without their end (LF or CR LF).
class cTextLines {
public:
    /// False, without lines, when the file cannot be read.
    bool open(const std::string& fileName) {
        at_ = 0;
        bytes_.clear();
        return platform::readFile(fileName, bytes_);
    }
    /// False at the end.
    bool next(std::string& line) {
        if (at_ >= bytes_.size()) return false;
        const std::string_view rest(reinterpret_cast<const char*>(bytes_.data()) + at_, bytes_.size() - at_);
        const size_t length = std::min(rest.find('\n'), rest.size());
        line.assign(rest.substr(0, length));
        if (!line.empty() && line.back() == '\r') line.pop_back();
        at_ += length + 1;
        return true;
    }

private:
    platform::Bytes bytes_;
    size_t at_ = 0;
};

/// Cuts the first word off the text, up to any white space; empty at its end.
inline std::string takeWord(std::string_view& text) {
    constexpr std::string_view kBlanks = " \t\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const size_t length = std::min(text.find_first_of(kBlanks), text.size());
    std::string word(text.substr(0, length));
    text.remove_prefix(length);
    return word;
}
