// Parses the script text of one event date into its statements (recursive descent). Failures
// raise zep::Error with the language's messages; nothing of a failed script is kept.
#pragma once

#include <cstdint>
#include <string_view>

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

// Deepest nesting of parentheses, conditions, IF blocks and operator chains that a script may
// have; it keeps parsing and every visitor well inside the stack of a worker thread.
inline constexpr std::int32_t kMaxScriptNesting = 400;

Statements ParseScript(std::string_view script);

}  // namespace zep
