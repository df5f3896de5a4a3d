#include "lum-monte-carlo/script/Tokeniser.hpp"

namespace zep {

namespace {

char UpperCase(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

bool IsWordCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '.';
}

bool IsSingleCharacterToken(char c) {
    switch (c) {
        case '/': case '-': case ',': case ';': case ':': case '(': case ')':
        case '+': case '*': case '^': case '<': case '>': case '=':
            return true;
        default:
            return false;
    }
}

}  // namespace

// Hand-written equivalent of the leftmost-first matches of
// [\w.]+|[/-]|,|;|:|[\(\)\+\*\^]|!=|>=|<=|[<>=] (checked against std::regex by the tests):
// a regex engine costs more than the whole rest of parsing.
std::vector<std::string> Tokenise(std::string_view script) {
    std::vector<std::string> tokens;
    std::size_t i = 0;
    const std::size_t n = script.size();
    while (i < n) {
        const char c = UpperCase(script[i]);
        if (IsWordCharacter(c)) {
            std::string word;
            while (i < n && IsWordCharacter(script[i])) word += UpperCase(script[i++]);
            tokens.push_back(std::move(word));
        } else if ((c == '!' || c == '>' || c == '<') && i + 1 < n && script[i + 1] == '=') {
            tokens.emplace_back(script.substr(i, 2));
            i += 2;
        } else if (IsSingleCharacterToken(c)) {
            tokens.emplace_back(1, c);
            ++i;
        } else {
            ++i;
        }
    }
    return tokens;
}

}  // namespace zep
