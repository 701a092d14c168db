#pragma once
#include "script/cml_element.h"

#include <span>
#include <string_view>

/// The words of level documents, as data rows. Compiler, reference pages and tests read the same rows.

/// In place of a level's file: where swap_level leads after the last level.
constexpr std::string_view kEndOfTheGame = "end";
/// The cinematic of the opening document, which starts by itself.
constexpr const char* kIntroCinematic = "intro";
/// The hero's model, whose animations a cinematic may name.
constexpr const char *kHeroDirectory = "maincharfinal", *kHeroModel = "mainchar_noweapon";
/// Shorter names of a level's music, and shorter texts of no_head_shadow, count as absent.
constexpr size_t kShortestText = 3;

struct CmlElementRow {
    std::string_view tag;
    std::string_view keyAttribute; ///< empty: none
};
/// Indexed by CmlKind.
std::span<const CmlElementRow> cmlElements();

/// Indexed by CmlTrigger: values of a reaction's "type".
std::span<const std::string_view> cmlTriggers();

/// Argument keywords and what they become.
enum CmlKeyword : int32_t {
    kWordPlayer = 0,
    kWordTarget = 1,
    kWordInvertTarget = 2,
    kWordRandom = 3,
    kWordInvertPlayer = 4,
    kWordOrigin = 5,
    kWordInvertOrigin = 6,
    kWordInverted = 7,
    kWordLoop = 8,
    kWordSingle = 9,
    kWordParam = 10,
    kWordEqual = 10000,
    kWordNotEqual = 10001,
};
struct CmlKeywordRow {
    std::string_view word;
    CmlKeyword value;
};
std::span<const CmlKeywordRow> cmlKeywords();

struct CmlProcedureRow {
    std::string_view name;
    CmlProcedure handler;
    std::string_view help; ///< arguments and effect in one line
};
struct CmlFunctionRow {
    std::string_view name;
    CmlFunction handler;
    std::string_view help;
};
// Implemented where the handlers stand (cml_procedures.cpp, cml_functions.cpp).
std::span<const CmlProcedureRow> cmlProcedures();
std::span<const CmlFunctionRow> cmlFunctions();

CmlProcedure findProcedure(std::string_view name); ///< null when there is none
CmlFunction findFunction(std::string_view name);
