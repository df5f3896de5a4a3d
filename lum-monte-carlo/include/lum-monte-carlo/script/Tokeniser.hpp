// Cuts a payoff script into its tokens: words (names, keywords and numbers made of letters,
// digits, underscores and points), the single characters / - , ; : ( ) + * ^ < > = and the
// pairs != >= <=. The text is upper-cased first, so the language is case-insensitive;
// everything else (blanks, line breaks, stray characters) separates tokens and is dropped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zep {

std::vector<std::string> Tokenise(std::string_view script);

}  // namespace zep
