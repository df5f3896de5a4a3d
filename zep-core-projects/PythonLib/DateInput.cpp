#include "DateInput.hpp"

#include <string_view>

namespace zep::python {

zep::Date DateInput::Value() const {
    if (const auto* date = std::get_if<zep::Date>(&m_value)) return *date;
    if (const auto* text = std::get_if<std::string>(&m_value)) return zep::Date(std::string_view(*text));
    const auto& parts = std::get<DayMonthYear>(m_value);
    return zep::Date(parts.day, parts.month, parts.year);
}

std::vector<zep::Date> Values(const std::vector<DateInput>& inputs) {
    std::vector<zep::Date> dates;
    dates.reserve(inputs.size());
    for (const DateInput& input : inputs) dates.push_back(input.Value());
    return dates;
}

}  // namespace zep::python
