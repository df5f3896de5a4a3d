// A date argument of an M class as the user gave it: a date, a date text or a day-month-year
// triple. The M class turns it into a date inside its guard, so a bad date text fails with the
// class's "<Class>::<operation> failed: " prefix like every other failure of the call.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "lum-time/Date.hpp"

namespace zep::python {

struct DayMonthYear {
    int day, month, year;
};

class DateInput {
public:
    DateInput(zep::Date date) : m_value(date) {}
    DateInput(std::string text) : m_value(std::move(text)) {}
    DateInput(DayMonthYear parts) : m_value(parts) {}

    // Raises what the date parser or the day-month-year constructor raises.
    zep::Date Value() const;

private:
    std::variant<zep::Date, std::string, DayMonthYear> m_value;
};

std::vector<zep::Date> Values(const std::vector<DateInput>& inputs);

}  // namespace zep::python
