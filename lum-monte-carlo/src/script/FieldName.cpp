#include "lum-monte-carlo/script/FieldName.hpp"

#include <array>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char LowerCase(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// Scripts are upper-cased before parsing, so a field spelled "Spot" would shadow SPOT().
bool IsKeyword(std::string_view name) {
    static constexpr std::array<std::string_view, 15> kKeywords = {
        "if", "else", "then", "endif", "opt", "pays", "max", "min",
        "spot", "and", "or", "not", "true", "false", "null"};
    std::string lower(name);
    for (char& c : lower) c = LowerCase(c);
    for (const auto keyword : kKeywords)
        if (lower == keyword) return true;
    return false;
}

bool IsWellFormed(std::string_view name) {
    if (name.empty() || !IsLetter(name.front())) return false;
    for (const char c : name)
        if (!IsLetter(c) && !IsDigit(c)) return false;
    return true;
}

}  // namespace

void ValidateFieldName(std::string_view kind, std::string_view name) {
    if (IsWellFormed(name) && !IsKeyword(name)) return;
    ZEP_FAIL("Invalid " + std::string(kind) + " field name '" + std::string(name) +
             "': must start with a letter (a-z, A-Z) and can contain letters and numbers, and "
             "cannot be a script keyword (if, else, then, endIf, opt, pays, max, min, Spot, etc.)");
}

}  // namespace zep
