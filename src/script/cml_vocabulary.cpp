#include "script/cml_vocabulary.h"

namespace {
constexpr CmlElementRow kElements[] = {
    {"level", "name"},    {"files", ""},       {"object", "name"},     {"appearance", "type"},
    {"model", "file"},    {"physics", ""},     {"boundingvolume", ""}, {"action", "name"},
    {"reaction", "type"}, {"requirement", ""}, {"dialogue", "name"},   {"item", "name"},
    {"player", ""},       {"enviroment", ""},  {"cinematic", "name"},  {"camera", ""},
    {"frame", ""},        {"player_cin", ""},  {"filter", ""},         {"fog", ""},
};

constexpr std::string_view kTriggers[kTriggerCount] = {
    "timer",   "distance_exceeds", "distance_falls_below", "collision_chr",  "collision_mesh",
    "context", "animation_end",    "ballistic_hit",        "projectile_hit", "melee_hit",
};

constexpr CmlKeywordRow kKeywords[] = {
    {"player", kWordPlayer},
    {"target", kWordTarget},
    {"invert_target", kWordInvertTarget},
    {"random", kWordRandom},
    {"invert_player", kWordInvertPlayer},
    {"origin", kWordOrigin},
    {"invert_origin", kWordInvertOrigin},
    {"inverted", kWordInverted},
    {"loop", kWordLoop},
    {"single", kWordSingle},
    {"param", kWordParam},
    {"equal", kWordEqual},
    {"not_equal", kWordNotEqual},
};

template <typename Rows> auto findHandler(const Rows& rows, std::string_view name) {
    for (const auto& row : rows) {
        if (row.name == name) return row.handler;
    }
    return decltype(rows[0].handler){};
}
} // namespace

std::span<const CmlElementRow> cmlElements() {
    return kElements;
}
std::span<const std::string_view> cmlTriggers() {
    return kTriggers;
}
std::span<const CmlKeywordRow> cmlKeywords() {
    return kKeywords;
}
CmlProcedure findProcedure(std::string_view name) {
    return findHandler(cmlProcedures(), name);
}
CmlFunction findFunction(std::string_view name) {
    return findHandler(cmlFunctions(), name);
}
