#include "HolidayFile.hpp"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>
#include <vector>

#include "lum-time/Date.hpp"

namespace zep::detail {

namespace {

constexpr std::string_view kTableHeader = "CALENDAR_C;HOLIDAY_D;GLOBAL_F";
constexpr std::int32_t kLastYear = 2199;

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string_view> Fields(std::string_view line, char separator) {
    std::vector<std::string_view> fields;
    std::size_t begin = 0;
    while (true) {
        const std::size_t end = line.find(separator, begin);
        fields.push_back(Trim(line.substr(begin, end == std::string_view::npos ? end : end - begin)));
        if (end == std::string_view::npos) return fields;
        begin = end + 1;
    }
}

std::optional<std::int32_t> Digits(std::string_view text) {
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<Date> ValidDate(std::optional<std::int32_t> day, std::optional<std::int32_t> month,
                              std::optional<std::int32_t> year) {
    if (!day || !month || !year || *day < 1) return std::nullopt;
    try {
        return Date(*day, *month, *year);
    } catch (...) {
        return std::nullopt;
    }
}

// YYYYMMDD, exactly eight digits.
std::optional<Date> CompactDate(std::string_view text) {
    if (text.size() != 8 || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    return ValidDate(Digits(text.substr(6, 2)), Digits(text.substr(4, 2)), Digits(text.substr(0, 4)));
}

// DD/MM/YYYY.
std::optional<Date> SlashedDate(std::string_view text) {
    const auto parts = Fields(text, '/');
    if (parts.size() != 3 || parts[2].size() != 4) return std::nullopt;
    return ValidDate(Digits(parts[0]), Digits(parts[1]), Digits(parts[2]));
}

bool ValidCode(std::string_view code) {
    return !code.empty() && std::none_of(code.begin(), code.end(), [](char c) {
        return c == '+' || c == ',' || c == ';' || c == ' ' || c == '\t';
    });
}

std::optional<bool> RecurringFlag(std::string_view flag) {
    if (flag == "Y" || flag == "y" || flag == "1") return true;
    if (flag == "N" || flag == "n" || flag == "0") return false;
    return std::nullopt;
}

[[noreturn]] void Malformed(const std::string& path, std::size_t lineNumber, std::string_view line) {
    std::ostringstream message;
    message << "Malformed holiday record in '" << path << "' at line " << lineNumber << ": '"
            << Trim(line) << "'";
    throw MalformedHolidayFile(message.str());
}

// Calls record(line, number) for every non-blank line after the first.
template <class Record>
void ForEachRecord(std::string_view text, Record&& record) {
    std::size_t lineNumber = 0, begin = 0;
    while (begin <= text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        ++lineNumber;
        if (lineNumber > 1 && !Trim(line).empty()) record(line, lineNumber);
        begin = end + 1;
    }
}

void SortAndDeduplicate(HolidayTable& table) {
    for (auto& [code, serials] : table) {
        std::sort(serials.begin(), serials.end());
        serials.erase(std::unique(serials.begin(), serials.end()), serials.end());
    }
}

}  // namespace

std::optional<std::string> ReadTextFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

HolidayTable ParseHolidayTable(std::string_view text, const std::string& path) {
    const std::string_view header = text.substr(0, text.find('\n'));
    if (Trim(header) != kTableHeader) Malformed(path, 1, header);

    HolidayTable table;
    ForEachRecord(text, [&](std::string_view line, std::size_t lineNumber) {
        const auto fields = Fields(line, ';');
        if (fields.size() != 3 || !ValidCode(fields[0])) Malformed(path, lineNumber, line);
        const auto date = CompactDate(fields[1]);
        const auto recurring = RecurringFlag(fields[2]);
        if (!date || !recurring) Malformed(path, lineNumber, line);

        HolidaySerials& serials = table[std::string(fields[0])];
        if (!*recurring) {
            serials.push_back(date->SerialNumber());
            return;
        }
        const std::int32_t day = date->DayOfMonth(), month = date->Month();
        for (std::int32_t year = date->Year(); year <= kLastYear; ++year)
            if (day <= Date::DaysInMonth(month, year))
                serials.push_back(Date(day, month, year).SerialNumber());
    });
    SortAndDeduplicate(table);
    return table;
}

HolidayTable ParseMurexExport(std::string_view text, const std::string& path) {
    HolidayTable table;
    ForEachRecord(text, [&](std::string_view line, std::size_t lineNumber) {
        const auto fields = Fields(line, ',');
        // The description, free text that may hold commas, is not needed.
        if (fields.size() < 2 || !ValidCode(fields[0])) Malformed(path, lineNumber, line);
        const auto date = SlashedDate(fields[1]);
        if (!date) Malformed(path, lineNumber, line);
        table[std::string(fields[0])].push_back(date->SerialNumber());
    });
    SortAndDeduplicate(table);
    return table;
}

}  // namespace zep::detail
