#pragma once
#include <string>
#include <vector>

/// One call as it is written: "name(arg,arg)" or "object.name(arg)". Nothing is trimmed; "()" holds no
/// argument.
struct CmlCallText {
    bool prefixed = false;
    std::string object; ///< of the prefix
    std::string name;   ///< without the prefix
    std::vector<std::string> args;

    explicit CmlCallText(const std::string& piece);
    const std::string& arg(size_t i) const; ///< empty when it was not written
};

/// Pieces of a call list between its ';'; a trailing one adds none.
std::vector<std::string> splitCmlList(const std::string& list);

/// A call of a talking script, which stands behind "^9" and ends at the first blank.
struct CmlScriptCall {
    size_t at; ///< of its tag
    std::string text;
};
std::vector<CmlScriptCall> cmlScriptCalls(const std::string& script);

/// An argument becomes a number, or a name when it begins with a letter.
bool startsWithLetter(const std::string& text);
/// The second argument of a variable's call is a number, or else the name of another variable.
bool startsLikeNumber(const std::string& text);
