#include "lum-time/DayCounter.hpp"

#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <cmath>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <unistd.h>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-time/Calendar.hpp"

namespace {

using zep::Date;
using zep::DayCounter;
namespace chr = std::chrono;

Date D(int day, int month, int year) { return Date(day, month, year); }

// Independent civil calendar: serial 25569 is 1 January 1970 in spreadsheet numbering.
chr::year_month_day Civil(const Date& date) {
    return chr::year_month_day(chr::sys_days(chr::days(date.SerialNumber() - 25569)));
}

bool IsMonthEnd(const chr::year_month_day& d) {
    return chr::year_month_day_last(d.year(), chr::month_day_last(d.month())).day() == d.day();
}

// 30/360 from the definitions of rules A to D, written from the calendar alone.
int ReferenceThirty(int convention, const Date& start, const Date& end) {
    const auto s = Civil(start), e = Civil(end);
    int d1 = static_cast<unsigned>(s.day()), d2 = static_cast<unsigned>(e.day());
    int m1 = static_cast<unsigned>(s.month()), m2 = static_cast<unsigned>(e.month());
    const int y1 = static_cast<int>(s.year()), y2 = static_cast<int>(e.year());
    switch (convention) {
        case zep::Thirty360:
            if (d1 == 31) d1 = 30;
            if (d2 == 31) d2 = 30;
            break;
        case zep::ThirtyE360ISDA:
            if (IsMonthEnd(s)) d1 = 30;
            if (IsMonthEnd(e)) d2 = 30;
            break;
        case zep::ThirtyEPlus360:
            if (d1 == 31) d1 = 30;
            if (d2 == 31) { d2 = 1; m2 += 1; }
            break;
        default:
            if (d2 == 31 && d1 >= 30) d2 = 30;
            if (d1 == 31) d1 = 30;
    }
    return 360 * (y2 - y1) + 30 * (m2 - m1) + (d2 - d1);
}

double ReferenceActActISDA(const Date& start, const Date& end) {
    const auto s = Civil(start), e = Civil(end);
    auto yearLength = [](chr::year y) { return y.is_leap() ? 366.0 : 365.0; };
    const auto nextJanuary = chr::sys_days(chr::year_month_day(s.year() + chr::years(1), chr::January, chr::day(1)));
    const auto januaryOfEnd = chr::sys_days(chr::year_month_day(e.year(), chr::January, chr::day(1)));
    return (nextJanuary - chr::sys_days(s)).count() / yearLength(s.year()) +
           (chr::sys_days(e) - januaryOfEnd).count() / yearLength(e.year()) +
           (static_cast<int>(e.year()) - static_cast<int>(s.year()) - 1);
}

TEST(DayCounter, DefaultIsActActISDAAndEqualityFollowsTheCode) {
    EXPECT_EQ(DayCounter().Convention(), zep::ActActISDA);
    EXPECT_EQ(DayCounter(), DayCounter(6));
    EXPECT_FALSE(DayCounter(0) == DayCounter(1));
    EXPECT_EQ(DayCounter("ACT/360"), DayCounter(zep::Act360));
}

TEST(DayCounter, ToStringGivesTheCanonicalNames) {
    const std::vector<std::string> names = {
        "NONE", "Act360", "Act365Fixed", "Thirty360", "ThirtyE360ISDA", "ThirtyEPlus360",
        "ThirtyU360", "ActActISDA", "ActActICMA", "Act365L", "ActActAFB", "Act365Leap",
        "ActActXTR", "ActActICMAComplement", "Act252", "Act360Inclusive", "Act365Inclusive"};
    for (int code = -1; code <= 15; ++code) {
        EXPECT_EQ(DayCounter(code).ToString(), names[code + 1]);
        EXPECT_EQ(zep::stringToConvention(names[code + 1]), code) << names[code + 1];
    }
}

TEST(DayCounter, UnknownCodeFailsWithTheConventionMessages) {
    try {
        DayCounter(16).ToString();
        FAIL();
    } catch (const zep::Error& e) {
        EXPECT_EQ(e.Message(), "'16' is an invalid day count convention.");
    }
    for (int code : {-2, 16, 99}) {
        EXPECT_THROW(DayCounter(code).DayCount(D(1, 1, 2024), D(1, 2, 2024)), const char*);
        EXPECT_THROW(DayCounter(code).YearFraction(D(1, 1, 2024), D(1, 2, 2024)), const char*);
    }
    EXPECT_THROW(DayCounter(zep::NoConvention).YearFraction(D(1, 1, 2024), D(1, 2, 2024)), const char*);
}

TEST(DayCounter, ActActAFBAlwaysRaises) {
    try {
        DayCounter(zep::ActActAFB).YearFraction(D(1, 1, 2024), D(1, 1, 2024));
        FAIL();
    } catch (const zep::Error& e) {
        EXPECT_EQ(e.Message(), "ActActAFB convention not implemented");
    }
}

TEST(DayCounter, EqualDatesGiveZeroExceptTheInclusiveConventions) {
    const Date day = D(15, 3, 2024);
    for (int code : {0, 1, 2, 3, 4, 5, 6, 10, 11, 13}) {
        EXPECT_EQ(DayCounter(code).YearFraction(day, day), 0.0) << code;
    }
    EXPECT_DOUBLE_EQ(DayCounter(zep::Act360Inclusive).YearFraction(day, day), 1.0 / 360);
    EXPECT_DOUBLE_EQ(DayCounter(zep::Act365Inclusive).YearFraction(day, day), 1.0 / 365);
    EXPECT_EQ(DayCounter(zep::Act365Inclusive).DayCount(day, day), 1);
}

// (convention, start, end, expected day count), counted by hand from the definitions.
using CountCase = std::tuple<int, Date, Date, int>;
class HandCountedDays : public ::testing::TestWithParam<CountCase> {};

TEST_P(HandCountedDays, MatchTheDefinition) {
    const auto& [code, start, end, expected] = GetParam();
    EXPECT_EQ(DayCounter(code).DayCount(start, end), expected);
    EXPECT_EQ(DayCounter(code).DayCount(end, start), -expected);
}

INSTANTIATE_TEST_SUITE_P(
    DayCounter, HandCountedDays,
    ::testing::Values(
        CountCase{zep::Thirty360, D(15, 3, 2025), D(31, 5, 2025), 75},
        CountCase{zep::ThirtyU360, D(15, 3, 2025), D(31, 5, 2025), 76},
        CountCase{zep::ThirtyU360, D(30, 3, 2025), D(31, 5, 2025), 60},
        CountCase{zep::ThirtyE360ISDA, D(28, 2, 2023), D(31, 3, 2023), 30},
        CountCase{zep::ThirtyE360ISDA, D(29, 2, 2024), D(31, 8, 2024), 180},
        CountCase{zep::Thirty360, D(28, 2, 2023), D(31, 3, 2023), 32},
        CountCase{zep::ThirtyEPlus360, D(15, 1, 2025), D(31, 1, 2025), 16},
        CountCase{zep::ThirtyEPlus360, D(31, 1, 2025), D(31, 12, 2025), 331},
        CountCase{zep::Act360, D(1, 1, 2024), D(1, 1, 2025), 366},
        CountCase{zep::Act252, D(1, 1, 2024), D(1, 1, 2025), 366},
        CountCase{zep::Act360Inclusive, D(1, 1, 2024), D(31, 1, 2024), 31},
        CountCase{zep::Act365Leap, D(1, 1, 2011), D(1, 1, 2013), 730},
        CountCase{zep::Act365Leap, D(1, 1, 2025), D(1, 1, 2029), 1461 - 5},
        CountCase{zep::Act365Leap, D(1, 3, 2012), D(1, 3, 2016), 1460},
        CountCase{zep::Act365Leap, D(1, 1, 2040), D(1, 3, 2056), 5904},
        CountCase{zep::Act365Leap, D(1, 1, 1990), D(1, 1, 2000), 3652},
        CountCase{zep::Act365Leap, D(1, 3, 2024), D(2, 3, 2024), 1 - 4}),
    [](const ::testing::TestParamInfo<CountCase>& info) {
        const auto day = [](const Date& date) {
            char text[16];
            std::snprintf(text, sizeof text, "%04d_%02d_%02d", date.Year(), date.Month(), date.DayOfMonth());
            return std::string(text);
        };
        return DayCounter(std::get<0>(info.param)).ToString() + "_" + day(std::get<1>(info.param)) + "_to_" +
               day(std::get<2>(info.param));
    });

TEST(DayCounter, InclusiveConventionsNegateTheWholeCountWhenReversed) {
    const DayCounter counter(zep::Act360Inclusive);
    EXPECT_EQ(counter.DayCount(D(31, 1, 2024), D(1, 1, 2024)), -31);
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(31, 1, 2024), D(1, 1, 2024)), -31.0 / 360);
}

TEST(DayCounter, ActActISDASplitsByCalendarYear) {
    const DayCounter counter(zep::ActActISDA);
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 1, 2024), D(1, 1, 2025)), 1.0);
    // 2023-11-01 .. 2024-05-01: 61 days of 2023 and 121 of leap 2024.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 11, 2023), D(1, 5, 2024)), 61.0 / 365 + 121.0 / 366);
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 2, 2024), D(1, 3, 2024)), 29.0 / 366);
}

TEST(DayCounter, ActActICMAUsesTheReferencePeriodFromTheStart) {
    const DayCounter counter(zep::ActActICMA);
    // Semiannual coupon from 15 Jan to 15 Jul 2024 (182 days); 60 days accrued.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(15, 1, 2024), D(15, 3, 2024), D(15, 7, 2024), zep::Semiannual),
                     60.0 / (182 * 2));
    EXPECT_DOUBLE_EQ(DayCounter(zep::ActActICMAComplement)
                         .YearFraction(D(15, 1, 2024), D(15, 3, 2024), D(15, 7, 2024), zep::Semiannual),
                     0.5 - 60.0 / (182 * 2));
}

TEST(DayCounter, CouponConventionsNeedCouponDataAndARegularFrequency) {
    const Date s = D(15, 1, 2024), e = D(15, 3, 2024), next = D(15, 7, 2024);
    try {
        DayCounter(zep::ActActICMA).YearFraction(s, e);
        FAIL();
    } catch (const char* text) {
        EXPECT_STREQ(text, "Cannot use convention Act/Act (ICMA) without a next coupon date and a frequency");
    }
    try {
        DayCounter(zep::Act365L).YearFraction(s, e, Date(), zep::Annual);
        FAIL();
    } catch (const char* text) {
        EXPECT_STREQ(text, "Cannot use convention Act/365L without a next coupon date and a frequency");
    }
    const std::vector<std::pair<zep::Frequency, std::string>> bad = {
        {zep::Once, "Cannot day count with once frequency"},
        {zep::Continuous, "Cannot day count with continuous frequency"}};
    for (const auto& [frequency, message] : bad) {
        for (const auto& [code, function] :
             {std::pair{zep::ActActICMA, "zep::DayCounter::ActActICMAYearFraction"},
              std::pair{zep::Act365L, "zep::DayCounter::Act365LYearFraction"}}) {
            try {
                DayCounter(code).YearFraction(s, e, next, frequency);
                FAIL();
            } catch (const zep::Error& error) {
                EXPECT_EQ(error.Message(), message);
                EXPECT_NE(std::string(error.what()).find(function), std::string::npos) << error.what();
            }
        }
    }
}

TEST(DayCounter, Act365LDenominator) {
    const DayCounter counter(zep::Act365L);
    // Annual: 29 February 2024 lies after the start and not after the end.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 2, 2024), D(1, 3, 2024), D(1, 2, 2025), zep::Annual), 29.0 / 366);
    // Annual, the end before 29 February: 365.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 1, 2024), D(1, 2, 2024), D(1, 1, 2025), zep::Annual), 31.0 / 365);
    // Other frequencies look at the year of the next coupon date only.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 1, 2024), D(1, 2, 2024), D(1, 7, 2024), zep::Semiannual), 31.0 / 366);
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(1, 7, 2024), D(1, 8, 2024), D(1, 1, 2025), zep::Semiannual), 31.0 / 365);
}

TEST(DayCounter, ActActXTRCountsWholeYearsThenTheStub) {
    const DayCounter counter(zep::ActActXTR);
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(15, 6, 2020), D(15, 6, 2023)), 3.0);
    // Two whole years to 15 June 2022, then 30 days in 2022.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(15, 6, 2020), D(15, 7, 2022)), 2.0 + 30.0 / 365);
    // Anniversary 15 October 2023 not reached: one year to 15 Oct 2023 then 124 days ending in 2024.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(15, 10, 2022), D(16, 2, 2024)), 1.0 + 124.0 / 366);
}

TEST(DayCounter, Act252CountsBrazilianBusinessDays) {
    const DayCounter counter(zep::Act252);
    // 2 Jan to 2 Feb 2024: 23 weekdays after the start, no holiday (Carnival is 12-13 February).
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(2, 1, 2024), D(2, 2, 2024)), 23.0 / 252);
    // Start on Saturday 10 Feb rolls to Wed 14 Feb (Carnival Monday and Tuesday); end Sunday
    // 18 Feb rolls back to Friday 16 Feb: two business days.
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(10, 2, 2024), D(18, 2, 2024)), 2.0 / 252);
    EXPECT_DOUBLE_EQ(counter.YearFraction(D(18, 2, 2024), D(10, 2, 2024)), -2.0 / 252);
}

// A calendar given to the day counter is the one counted on, shared by the counter's copies;
// the shared calendar behind the other counters is untouched. Wednesday 10 January 2024 becomes
// an SYB holiday on the given calendar only: 22 business days instead of 23.
TEST(DayCounter, Act252CountsOnTheCalendarItWasGiven) {
    const auto file = std::filesystem::temp_directory_path() / ("zep_act252_" + std::to_string(::getpid()) + ".txt");
    std::ofstream(file) << "CALENDAR_C;HOLIDAY_D;GLOBAL_F\nSYB;20240110;N\n";
    const auto calendar = boost::make_shared<zep::Calendar>();
    calendar->LoadHolidaysFromFile(file.string());
    std::filesystem::remove(file);

    const DayCounter onGiven(zep::Act252, calendar);
    const DayCounter copy = onGiven;
    const DayCounter onShared(zep::Act252);
    EXPECT_DOUBLE_EQ(onGiven.YearFraction(D(2, 1, 2024), D(2, 2, 2024)), 22.0 / 252);
    EXPECT_DOUBLE_EQ(copy.YearFraction(D(2, 1, 2024), D(2, 2, 2024)), 22.0 / 252);
    EXPECT_DOUBLE_EQ(DayCounter("bus/252", calendar).YearFraction(D(2, 1, 2024), D(2, 2, 2024)), 22.0 / 252);
    EXPECT_DOUBLE_EQ(onShared.YearFraction(D(2, 1, 2024), D(2, 2, 2024)), 23.0 / 252);
    EXPECT_DOUBLE_EQ(DayCounter(zep::Act252, nullptr).YearFraction(D(2, 1, 2024), D(2, 2, 2024)), 23.0 / 252);
}

TEST(DayCounter, SequenceFormWorksElementByElementAndChecksLengths) {
    const DayCounter counter(zep::Act360);
    const std::vector<Date> starts = {D(1, 1, 2024), D(1, 1, 2025)};
    const std::vector<Date> ends = {D(31, 1, 2024), D(1, 1, 2024)};
    const std::vector<double> expected = {30.0 / 360, -366.0 / 360};
    const auto fractions = counter.YearFraction(starts, ends);
    ASSERT_EQ(fractions.size(), 2u);
    EXPECT_DOUBLE_EQ(fractions[0], expected[0]);
    EXPECT_DOUBLE_EQ(fractions[1], expected[1]);
    try {
        counter.YearFraction(starts, std::vector<Date>{ends[0]});
        FAIL();
    } catch (const zep::Error& e) {
        EXPECT_EQ(e.Message(), "Number of start dates (2) must equal number of end dates(1)");
        EXPECT_NE(std::string(e.what()).find("zep::DayCounter::YearFraction"), std::string::npos);
    }
}

TEST(DayCounter, StringToConventionAcceptsTheFixedSpellingsCaseInsensitively) {
    const std::vector<std::pair<std::string, int>> cases = {
        {"ACTUAL360", 0}, {"Lin Act/360 L+1", 0}, {"act/360.swap", 0}, {"LIN ACT/365 DIS", 1},
        {"lin 30e/360 cpn", 2}, {"30/360", 2}, {"lin 30/360 isda", 3}, {"30E+/360", 4},
        {"30U/360", 5}, {"lin act/act xtr", 6}, {"LIN ACT/ACT FCP", 6}, {"yld act/act xtr", 11},
        {"lin act/act cpn", 12}, {"lin act/act ism", 12}, {"yld bus/252 spb", 13},
        {"act360inclusive", 14}, {"Act/365 Fixed Inclusive", 15}, {"act365 fixed inclusive", 15},
        {"none", -1}, {"7", 7}, {"9", 9}, {"0", 0}};
    for (const auto& [text, code] : cases) EXPECT_EQ(zep::stringToConvention(text), code) << text;
    try {
        zep::stringToConvention("Act/999");
        FAIL();
    } catch (const zep::Error& e) {
        EXPECT_EQ(e.Message(), "'Act/999' is an invalid day count convention.");
        EXPECT_NE(std::string(e.what()).find("zep::DayCounter::stringToConvention"), std::string::npos);
    }
}

// Seeded random date pairs against the independent chrono-based reference.
TEST(DayCounter, ActualAndThirtyFamiliesMatchAnIndependentReference) {
    std::mt19937 random(20240315);
    std::uniform_int_distribution<int> serial(Date::kMinSerial, Date::kMaxSerial - 100);
    for (int i = 0; i < 20000; ++i) {
        const Date a(serial(random)), b(i % 4 == 0 ? a.SerialNumber() + (i % 97) : serial(random));
        const double actual = b.SerialNumber() - a.SerialNumber();
        EXPECT_DOUBLE_EQ(DayCounter(zep::Act360).YearFraction(a, b), actual / 360);
        EXPECT_DOUBLE_EQ(DayCounter(zep::Act365Fixed).YearFraction(a, b), actual / 365);
        const double isda = a <= b ? ReferenceActActISDA(a, b) : -ReferenceActActISDA(b, a);
        EXPECT_NEAR(DayCounter(zep::ActActISDA).YearFraction(a, b), isda, 1e-12) << a << " " << b;
        for (int code : {zep::Thirty360, zep::ThirtyE360ISDA, zep::ThirtyEPlus360, zep::ThirtyU360}) {
            const int expected = a <= b ? ReferenceThirty(code, a, b) : -ReferenceThirty(code, b, a);
            ASSERT_EQ(DayCounter(code).DayCount(a, b), expected) << code << " " << a << " " << b;
            ASSERT_DOUBLE_EQ(DayCounter(code).YearFraction(a, b), expected / 360.0);
        }
    }
}

}  // namespace
