#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <string>

#include "lum-time/Date.hpp"
#include "lum-time/Period.hpp"

namespace zep {

namespace {
}  // namespace

TEST(Date, SerialAnchorsMatchSpreadsheetNumbering) {
    EXPECT_EQ(Date(1, 1, 1901).SerialNumber(), 367);
    EXPECT_EQ(Date(31, 12, 2199).SerialNumber(), 109574);
    EXPECT_EQ(Date(1, 1, 2000).SerialNumber(), 36526);
    EXPECT_EQ(Date(15, 3, 2024).SerialNumber(), 45366);
    EXPECT_EQ(Date::YearOffset(2199), 109209);
    EXPECT_TRUE(Date::IsLeapYear(1900));
    EXPECT_FALSE(Date::IsLeapYear(2100));
    EXPECT_FALSE(Date::IsLeapYear(2300));  // beyond the tables: Gregorian rule
}

TEST(Date, RoundTripsEveryDayThroughItsParts) {
    for (std::int32_t serial = Date::kMinSerial; serial <= Date::kMaxSerial; ++serial) {
        const Date date(serial);
        ASSERT_EQ(Date(date.DayOfMonth(), date.Month(), date.Year()).SerialNumber(), serial);
    }
}

TEST(Date, NullDateIsEmptyTextAndYear2026) {
    EXPECT_TRUE(Date(std::string_view("")).IsNull());
    EXPECT_EQ(Date().ToString(), "null date");
    EXPECT_EQ(Date().Year(), 2026);
}

TEST(Date, DayZeroCountsBackIntoThePreviousMonth) {
    EXPECT_EQ(Date(std::string_view("00/03/2024")), Date(29, 2, 2024));
    EXPECT_EQ(Date(std::string_view("xx/03/2024")), Date(29, 2, 2024));
}

TEST(Date, AdvanceClampsTheDayWithoutEndOfMonthRule) {
    EXPECT_EQ(Date(31, 1, 2024) + Period(1, Months), Date(29, 2, 2024));
    EXPECT_EQ(Date(29, 2, 2024) + Period(1, Years), Date(28, 2, 2025));
    EXPECT_EQ(Date(31, 3, 2024) + Period(-13, Months), Date(28, 2, 2023));
    EXPECT_EQ(Date(15, 12, 2024) + Period(12, Months), Date(15, 12, 2025));
    EXPECT_EQ(Date(15, 1, 2024) + Period(-1, Months), Date(15, 12, 2023));
    EXPECT_EQ(zep::testing::BareText([] { Date(1, 6, 2199) + Period(7, Months); }),
              "Year out of bounds after increasing date");
}

TEST(Date, RangeFailuresAreErrorsNamingTheOperator) {
    try {
        Date(31, 12, 2199) + 1;
        FAIL();
    } catch (const std::exception& e) {
        EXPECT_EQ(std::string(e.what()).rfind(" Date (109575) outside of range. (zep::Date::operator +: Date.cpp, l.", 0), 0u)
            << e.what();
    }
    Date last(31, 12, 2199);
    EXPECT_THROW(++last, std::exception);
    EXPECT_EQ(last, Date(31, 12, 2199));  // a failed step leaves the date as it was
}

TEST(Date, TenorStringPrefersMonthsYearsThenDays) {
    const Date base(15, 1, 2024);
    EXPECT_EQ(base.TenorString(base), "0D");
    EXPECT_EQ(Date(15, 4, 2024).TenorString(base), "3M");
    EXPECT_EQ(Date(15, 1, 2025).TenorString(base), "1Y");
    EXPECT_EQ(Date(15, 3, 2025).TenorString(base), "14M");
    EXPECT_EQ(Date(25, 1, 2024).TenorString(base), "10D");
    // November to February of a later year has a negative month difference: printed in days.
    EXPECT_EQ(Date(15, 2, 2025).TenorString(Date(15, 11, 2024)), "92D");
    EXPECT_THROW(base.TenorString(Date(16, 1, 2024)), std::exception);
}

TEST(Period, ConversionsAreExactOrRefused) {
    EXPECT_DOUBLE_EQ(Period(2, Weeks).Days(), 14.0);
    EXPECT_DOUBLE_EQ(Period(3, Days).Weeks(), 3.0 / 7.0);
    EXPECT_DOUBLE_EQ(Period(2, Years).Months(), 24.0);
    EXPECT_DOUBLE_EQ(Period(0, Years).Days(), 0.0);
    EXPECT_EQ(zep::testing::BareText([] { Period(1, Months).Days(); }), "Cannot convert Months into Days");
    EXPECT_EQ(zep::testing::BareText([] { Period(1, Days).Months(); }), "Cannot convert Days into Months");
}

TEST(Period, FromFrequencyGivesTheCouponPeriod) {
    EXPECT_EQ(Period(Quarterly).Text(), "3M");
    EXPECT_EQ(Period(Biweekly).Text(), "2W");
    EXPECT_EQ(Period(Annual).Text(), "1Y");
    EXPECT_EQ(Period(Daily).Text(), "1D");
    EXPECT_EQ(Period(Continuous).Length(), 0);
    EXPECT_EQ(zep::testing::BareText([] { Period(static_cast<Frequency>(5)); }), "unknown frequency");
}

}  // namespace zep
