// Prints a parsed statement tree back as script text in one canonical layout: one statement a
// line, IF branches indented by two spaces, upper-case words, operators between single blanks
// ("^" without), the fewest parentheses the grammar needs, numbers with the fewest digits that
// read back to the same double. Comparisons come out with ">", ">=", "=" or "!=" (the parser
// turns "A < B" into "B > A"), so a text written in this layout parses and prints back to itself.
#pragma once

#include <string>

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

std::string PrintScript(const Statements& statements);

// A number as the script language reads it back exactly: digits and a point, never an exponent
// (the tokeniser would read the sign of "1e-05" as a subtraction). Raises for infinities, NaN and
// subnormal numbers, which the language cannot hold.
std::string ScriptNumberText(double value);

}  // namespace zep
