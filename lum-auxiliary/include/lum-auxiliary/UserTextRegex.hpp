// Regular expressions over text that comes from users (labels, quotes, scripts). libstdc++ matches
// by default with a backtracking executor that recurses once per character, so a long enough text
// overflows the stack and kills the process; its polynomial executor walks the text in a loop and
// does all these patterns need (no back-references).
#pragma once

#include <regex>
#include <string>

namespace zep {

inline std::regex UserTextRegex(const std::string& pattern,
                                std::regex::flag_type flags = std::regex::ECMAScript) {
    return std::regex(pattern, flags | std::regex_constants::__polynomial);
}

}  // namespace zep
