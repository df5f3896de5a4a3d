// Date-adjuster (roll rule) names (stringToDateAdjusterRule): an accepted name gives a known rule
// whose decimal code reads back as it; the four business-day rules roll onto a business day.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-time/Calendar.hpp"

namespace {

// Christmas and New Year closures next to a weekend, and a month end on a Saturday.
const std::unique_ptr<zep::Calendar> kCalendar = zep::Calendar::FromHolidays(
    {{"XMAS", {zep::Date(25, 12, 2024), zep::Date(26, 12, 2024), zep::Date(1, 1, 2025)}}});
const zep::Date kDates[] = {zep::Date(25, 12, 2024), zep::Date(28, 12, 2024), zep::Date(31, 12, 2024),
                            zep::Date(31, 5, 2025), zep::Date(1, 6, 2025)};

bool RollsOntoBusinessDays(zep::DateAdjusterRule rule) {
    return rule == zep::Following || rule == zep::Preceding || rule == zep::ModifiedFollowing ||
           rule == zep::ModifiedPreceding;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto rule = zep::fuzz::Attempt([&] { return zep::stringToDateAdjusterRule(text); });
    if (!rule) return 0;
    ZEP_FUZZ_REQUIRE(*rule >= zep::Following && *rule <= zep::LME,
                     "'" + text + "' gives the unknown rule " + std::to_string(*rule));
    ZEP_FUZZ_REQUIRE(zep::stringToDateAdjusterRule(std::to_string(*rule)) == *rule,
                     "the code of '" + text + "' reads back otherwise");

    for (const zep::Date& date : kDates) {
        const zep::Date rolled = kCalendar->Adjust(date, *rule, "XMAS");
        ZEP_FUZZ_REQUIRE(!RollsOntoBusinessDays(*rule) || kCalendar->IsBusinessDay(rolled, "XMAS"),
                         "'" + text + "' rolls " + date.ToString() + " onto the holiday " + rolled.ToString());
    }
    return 0;
}
