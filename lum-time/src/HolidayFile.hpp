// Reading holiday files into per-centre holiday lists: the delimited holiday table and the
// trading-system export. Parsing builds a fresh table, so a bad line loads nothing.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "HolidayIndex.hpp"

namespace zep::detail {

// A line that is no valid record; the message names the file and the line.
struct MalformedHolidayFile : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The whole file, or nothing when it cannot be opened.
std::optional<std::string> ReadTextFile(const std::string& path);

// True when the text holds nothing but blanks and line ends.
bool IsBlank(std::string_view text);

// "CALENDAR_C;HOLIDAY_D;GLOBAL_F" then "code;YYYYMMDD;flag" records; flag Y repeats the holiday
// on that day and month every later year up to 2199 (29 February in leap years only).
HolidayTable ParseHolidayTable(std::string_view text, const std::string& path);

// A header line, then "code,DD/MM/YYYY[,description]" records.
HolidayTable ParseMurexExport(std::string_view text, const std::string& path);

}  // namespace zep::detail
