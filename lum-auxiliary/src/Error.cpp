#include "lum-auxiliary/Error.hpp"

#include <string_view>

namespace zep {

namespace {

constexpr std::string_view kUnknownFunction = "(unknown)";

std::string_view BaseName(std::string_view path) {
    const auto slash = path.find_last_of("/\\");
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string Format(const std::string& file, std::uint32_t line, const std::string& function,
                   const std::string& message) {
    std::string text = message;
    text += " (";
    if (function != kUnknownFunction) {
        text += function;
        text += ": ";
    }
    text += BaseName(file);
    text += ", l.";
    text += std::to_string(line);
    text += ')';
    return text;
}

}  // namespace

Error::Error(const std::string& file, std::uint32_t line, const std::string& function,
             const std::string& message)
    : m_formatted(std::make_shared<const std::string>(Format(file, line, function, message))),
      m_message(std::make_shared<const std::string>(message)) {}

namespace detail {

std::size_t NameStart(std::string_view signature, std::size_t nameEnd) {
    // The return type, if any, ends at the last blank, '*' or '&' outside template brackets
    // (clang++ writes "Probe &zep::Probe::operator++()", g++ "Probe& zep::...").
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < nameEnd; ++i) {
        const char c = signature[i];
        if (c == '<') ++depth;
        else if (c == '>') --depth;
        else if ((c == ' ' || c == '*' || c == '&') && depth == 0) start = i + 1;
    }
    return start;
}

// Helpers in unnamed namespaces report under their enclosing namespace: "{anonymous}::" (g++)
// and "(anonymous namespace)::" (clang++) are artefacts of the compiler's spelling, not part of
// the name a user can look up.
std::string WithoutAnonymousNamespaces(std::string name) {
    for (const std::string_view anonymous : {"{anonymous}::", "(anonymous namespace)::"})
        for (auto at = name.find(anonymous); at != std::string::npos; at = name.find(anonymous, at))
            name.erase(at, anonymous.size());
    return name;
}

std::string SpelledName(const char* prettyFunction) {
    std::string_view text(prettyFunction);
    if (const auto with = text.find(" [with "); with != std::string_view::npos)
        text = text.substr(0, with);

    // Operators are named the way the library's messages spell them: "zep::Date::operator ++".
    if (const auto op = text.find("::operator"); op != std::string_view::npos) {
        std::size_t symbol = op + 10;
        while (symbol < text.size() && text[symbol] == ' ') ++symbol;
        const std::size_t params = text.find('(', symbol + (text.substr(symbol, 2) == "()" ? 2 : 0));
        const std::size_t start = NameStart(text, op);
        return std::string(text.substr(start, op - start)) + "::operator " +
               std::string(text.substr(symbol, params - symbol));
    }

    int depth = 0;
    std::size_t end = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '<') ++depth;
        else if (c == '>') --depth;
        else if (c == '(' && depth == 0) { end = i; break; }
    }
    const std::size_t start = NameStart(text, end);
    if (start >= end) return std::string(kUnknownFunction);
    return std::string(text.substr(start, end - start));
}

// The unnamed namespaces go first: clang's spelling holds parentheses that would end the name.
std::string QualifiedFunctionName(const char* prettyFunction) {
    return SpelledName(WithoutAnonymousNamespaces(prettyFunction).c_str());
}

}  // namespace detail
}  // namespace zep
