#include <gtest/gtest.h>

#include <random>
#include <set>

#include "lum-time/Calendar.hpp"

namespace zep {
namespace {

// Holidays on weekdays and weekends, in two centres, for a reference written from scratch.
HolidayDates TwoCentres() {
    HolidayDates holidays;
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int32_t> serial(Date(1, 1, 2020).SerialNumber(), Date(31, 12, 2030).SerialNumber());
    for (const char* centre : {"AAA", "BBB"})
        for (int k = 0; k < 300; ++k) holidays[centre].push_back(Date(serial(random)));
    holidays["AAA"].push_back(Date(1, 1, 2199));  // the last word of the bitmap
    return holidays;
}

bool ReferenceIsBusinessDay(const HolidayDates& holidays, const std::vector<std::string>& centres, const Date& date) {
    if (date.Weekday() == 1 || date.Weekday() == 7) return false;
    for (const std::string& centre : centres) {
        const std::set<std::int32_t> days = [&] {
            std::set<std::int32_t> serials;
            for (const Date& holiday : holidays.at(centre)) serials.insert(holiday.SerialNumber());
            return serials;
        }();
        if (days.count(date.SerialNumber())) return false;
    }
    return true;
}

TEST(BusinessDays, AgreesWithAReferenceOnEveryDayAndCentreText) {
    const HolidayDates holidays = TwoCentres();
    const auto calendar = Calendar::FromHolidays(holidays);
    const std::vector<std::pair<std::string, std::vector<std::string>>> texts = {
        {"", {}}, {"AAA", {"AAA"}}, {"AAA+BBB", {"AAA", "BBB"}}};
    for (const auto& [text, centres] : texts) {
        const BusinessDays businessDays = calendar->BusinessDaysOf(text);
        for (std::int32_t serial = Date(1, 12, 2019).SerialNumber(); serial < Date(1, 2, 2031).SerialNumber(); serial += 3)
            ASSERT_EQ(businessDays.IsBusinessDay(Date(serial)), ReferenceIsBusinessDay(holidays, centres, Date(serial)))
                << text << " " << Date(serial);
        EXPECT_EQ(businessDays.IsBusinessDay(Date(1, 1, 2199)), text.empty()) << text;
    }
}

TEST(BusinessDays, RollsAsTheCalendarDoes) {
    const auto calendar = Calendar::FromHolidays(TwoCentres());
    const BusinessDays businessDays = calendar->BusinessDaysOf("AAA+BBB");
    for (std::int32_t serial = Date(1, 1, 2021).SerialNumber(); serial < Date(1, 1, 2023).SerialNumber(); ++serial)
        for (const std::int32_t rule : {Following, Preceding, ModifiedFollowing, ModifiedPreceding, Unadjusted})
            ASSERT_EQ(businessDays.Adjust(Date(serial), rule), calendar->Adjust(Date(serial), rule, "AAA+BBB"));
}

TEST(BusinessDays, ModifiedFollowingStaysInTheMonth) {
    const auto calendar = Calendar::FromHolidays({{"AAA", {Date(30, 5, 2025)}}});
    // Saturday 31 May 2025: Following leaves the month, so the roll goes back past Friday's holiday.
    EXPECT_EQ(calendar->BusinessDaysOf("AAA").Adjust(Date(31, 5, 2025), ModifiedFollowing), Date(29, 5, 2025));
}

TEST(BusinessDays, RefusesAnUnknownCentreAndTheMarketRules) {
    const auto calendar = Calendar::FromHolidays(TwoCentres());
    EXPECT_THROW(calendar->BusinessDaysOf("CCC"), std::exception);
    EXPECT_THROW(calendar->BusinessDaysOf("AAA").Adjust(Date(1, 6, 2025), IMM), const char*);
}

TEST(BusinessDays, ARollOnHolidayOnlyCentresFailsNamingTheDate) {
    std::vector<Date> everyDay;
    for (std::int32_t serial = Date(1, 1, 2024).SerialNumber(); serial <= Date(31, 12, 2026).SerialNumber(); ++serial)
        everyDay.emplace_back(serial);
    const auto calendar = Calendar::FromHolidays({{"AAA", everyDay}});
    for (const std::int32_t rule : {Following, Preceding, ModifiedFollowing})
        try {
            calendar->Adjust(Date(1, 6, 2025), rule, "AAA");
            FAIL() << rule;
        } catch (const std::exception& error) {
            EXPECT_NE(std::string(error.what()).find("no business day within a year of 01/06/2025"), std::string::npos)
                << error.what();
        }
}

}  // namespace
}  // namespace zep
