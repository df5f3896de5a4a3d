// The holiday file in its two formats, for the holiday fuzz targets: writing fuzz input to a
// file a calendar loads, and printing a calendar's holidays back in either format. A loaded
// calendar lists each centre's holidays ascending, never as business days of that centre, and
// printed in either format it loads again as the same calendar.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-time/Calendar.hpp"

namespace zep::fuzz {

enum class HolidayFormat { Table, Export };

// One scratch file per process, so that two targets running at once never share it.
inline const std::string& ScratchHolidayFile() {
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("zep_fuzz_holidays_" + std::to_string(::getpid()) + ".txt"))
            .string();
    return path;
}

// A calendar of the holidays in `text`, or null when the library refuses the file.
inline std::unique_ptr<Calendar> LoadedCalendar(std::string_view text, HolidayFormat format) {
    const std::string& path = ScratchHolidayFile();
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(text.data(), static_cast<std::streamsize>(text.size()));
    auto calendar = Calendar::FromHolidays({});
    const bool loaded = Attempt([&] {
        if (format == HolidayFormat::Table) calendar->LoadHolidaysFromFile(path);
        else calendar->LoadMurexHolidays(path);
    });
    std::remove(path.c_str());
    return loaded ? std::move(calendar) : nullptr;
}

// "DD/MM/YYYY" for the export, "YYYYMMDD" for the table, from the date's own fields.
inline std::string Spelled(const Date& date, HolidayFormat format) {
    char text[16];
    if (format == HolidayFormat::Table)
        std::snprintf(text, sizeof text, "%04d%02d%02d", date.Year(), date.Month(), date.DayOfMonth());
    else
        std::snprintf(text, sizeof text, "%02d/%02d/%04d", date.DayOfMonth(), date.Month(), date.Year());
    return text;
}

// Every holiday as a one-date record: "code;YYYYMMDD;N" under the table's header, or
// "code,DD/MM/YYYY" under an export header line.
inline std::string Printed(const Calendar& calendar, HolidayFormat format) {
    std::string text = format == HolidayFormat::Table ? "CALENDAR_C;HOLIDAY_D;GLOBAL_F\n" : "Calendar,Date\n";
    for (const std::string& centre : calendar.Centres())
        for (const Date& date : calendar.Dates(centre))
            text += format == HolidayFormat::Table ? centre + ";" + Spelled(date, format) + ";N\n"
                                                   : centre + "," + Spelled(date, format) + "\n";
    return text;
}

inline void RequireConsistent(const Calendar& calendar) {
    for (const std::string& centre : calendar.Centres()) {
        const auto dates = calendar.Dates(centre);
        for (std::size_t i = 0; i < dates.size(); ++i) {
            ZEP_FUZZ_REQUIRE(i == 0 || dates[i - 1] < dates[i],
                             "holidays of '" + centre + "' out of order at " + dates[i].ToString());
            ZEP_FUZZ_REQUIRE(!calendar.IsBusinessDay(dates[i], centre),
                             dates[i].ToString() + " is a holiday and a business day of '" + centre + "'");
        }
    }
    for (const HolidayFormat format : {HolidayFormat::Table, HolidayFormat::Export}) {
        const std::string printed = Printed(calendar, format);
        const auto reloaded = LoadedCalendar(printed, format);
        ZEP_FUZZ_REQUIRE(reloaded != nullptr, "the printed holidays do not load:\n" + printed);
        ZEP_FUZZ_REQUIRE(*reloaded == calendar, "the printed holidays load as another calendar:\n" + printed);
    }
}

}  // namespace zep::fuzz
