// Names for parameterised cases, so that each case is listed (ctest -N, --gtest_filter) by its
// input rather than by an index or a dump of its bytes. GoogleTest accepts letters, digits and
// underscores only, so operators and punctuation are spelled as words.
#pragma once

#include <cctype>
#include <cstdio>
#include <string>
#include <string_view>

namespace zep::testing {

namespace detail {

inline std::string_view WordFor(char c) {
    switch (c) {
        case '+': return "plus";
        case '-': return "minus";
        case '*': return "times";
        case '/': return "over";
        case '^': return "pow";
        case '(': return "open";
        case ')': return "close";
        case '=': return "eq";
        case '<': return "lt";
        case '>': return "gt";
        case '!': return "not";
        case '.': return "dot";
        case ',': return "comma";
        case ';': return "semi";
        case '_': return "underscore";
        case '\'': return "quote";
        default: return {};
    }
}

}  // namespace detail

// Text with its operators and punctuation spelled out: "X = 2+3" gives "X_eq_2_plus_3".
inline std::string NameOf(std::string_view text) {
    std::string name;
    const auto separate = [&] {
        if (!name.empty() && name.back() != '_') name += '_';
    };
    for (const char c : text) {
        if (std::isalnum(static_cast<unsigned char>(c))) {
            name += c;
        } else if (std::isspace(static_cast<unsigned char>(c))) {
            separate();
        } else {
            separate();
            const std::string_view word = detail::WordFor(c);
            if (!word.empty()) {
                name += word;
            } else {
                char code[8];
                std::snprintf(code, sizeof code, "x%02X", static_cast<unsigned char>(c));
                name += code;
            }
            name += '_';
        }
    }
    while (!name.empty() && name.back() == '_') name.pop_back();
    return name.empty() ? "empty" : name;
}

// A number as it is usually written, with "_" for the point: 0.02425 gives "0_02425", -1
// "minus1", 1e-10 "1e_minus10".
inline std::string NameOf(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    std::string name;
    for (const char* c = text; *c; ++c) {
        if (*c == '.') name += '_';
        else if (*c == '-') name += name.empty() ? "minus" : "_minus";
        else if (*c != '+') name += *c;
    }
    return name;
}

}  // namespace zep::testing
