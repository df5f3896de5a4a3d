// Reads numeric fields of date and tenor texts the way the market texts are written loosely:
// the leading decimal integer (blanks and a sign allowed), stopping at the first other
// character, no digits meaning 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zep::detail {

// nullopt only when the digits overflow a 32-bit integer.
inline std::optional<std::int32_t> LeadingInteger(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    std::int64_t value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > 2147483648LL) return std::nullopt;
    }
    if (negative) value = -value;
    if (value > 2147483647LL) return std::nullopt;
    return static_cast<std::int32_t>(value);
}

}  // namespace zep::detail
