#include "lum-time/Calendar.hpp"

#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "lum-auxiliary/Error.hpp"

namespace {

using zep::Calendar;
using zep::Date;
namespace fs = std::filesystem;

Date D(int day, int month, int year) { return Date(day, month, year); }

// A scratch directory with helpers to write holiday files into it.
class CalendarFiles : public ::testing::Test {
protected:
    void SetUp() override {
        m_root = fs::temp_directory_path() /
                 ("zep_calendar_" + std::to_string(::getpid()) + "_" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(m_root);
        unsetenv("ZEP_HOLIDAYS_PATH");
    }
    void TearDown() override {
        unsetenv("ZEP_HOLIDAYS_PATH");
        Calendar::SetSearchBase("");
        Calendar::SetPackagedHolidayFile("");
        fs::remove_all(m_root);
    }
    std::string Write(const fs::path& relative, const std::string& text) {
        const fs::path path = m_root / relative;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << text;
        return path.string();
    }
    static std::string Table(const std::string& records) {
        return "CALENDAR_C;HOLIDAY_D;GLOBAL_F\n" + records;
    }
    fs::path m_root;
};


bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Calendar, WeekendsFollowTheSerialModuloSeven) {
    const Calendar& calendar = Calendar::Shared();
    EXPECT_FALSE(calendar.IsBusinessDay(D(1, 1, 2000), ""));  // Saturday, serial 36526
    EXPECT_FALSE(calendar.IsBusinessDay(D(2, 1, 2000), ""));  // Sunday
    EXPECT_TRUE(calendar.IsBusinessDay(D(3, 1, 2000), ""));
    EXPECT_FALSE(calendar.IsBusinessDay(Date(), ""));
}

TEST(Calendar, RollsWithoutHolidaysAroundMonthEnds) {
    const Calendar& calendar = Calendar::Shared();
    const Date saturday = D(31, 5, 2025), sunday = D(1, 6, 2025);
    EXPECT_EQ(calendar.Adjust(saturday, zep::ModifiedFollowing, ""), D(30, 5, 2025));
    EXPECT_EQ(calendar.Adjust(saturday, zep::Following, ""), D(2, 6, 2025));
    EXPECT_EQ(calendar.Adjust(saturday, zep::Preceding, ""), D(30, 5, 2025));
    EXPECT_EQ(calendar.Adjust(sunday, zep::ModifiedPreceding, ""), D(2, 6, 2025));
    EXPECT_EQ(calendar.Adjust(sunday, zep::Unadjusted, ""), sunday);
}

TEST(Calendar, BusinessDayIsKeptByEveryRuleButTheMarketRolls) {
    const Calendar& calendar = Calendar::Shared();
    const Date thursday = D(26, 6, 2025);
    for (int rule : {0, 1, 2, 3, 5}) EXPECT_EQ(calendar.Adjust(thursday, rule, "LON+NYC"), thursday) << rule;
    EXPECT_EQ(calendar.Adjust(thursday, zep::IMM, "LON"), D(17, 9, 2025));
    EXPECT_EQ(calendar.Adjust(thursday, zep::LME, "LON"), D(16, 7, 2025));
}

TEST(Calendar, AdjustRejectsNullDatesAndUnknownRules) {
    const Calendar& calendar = Calendar::Shared();
    EXPECT_EQ(zep::testing::BareText([&] { calendar.Adjust(Date(), zep::Following, ""); }), "Can't adjust a null date");
    EXPECT_EQ(zep::testing::BareText([&] { calendar.Adjust(D(2, 6, 2025), 7, ""); }), "Unknown adjusting rule");
    EXPECT_EQ(zep::testing::BareText([&] { calendar.Adjust(D(2, 6, 2025), -1, ""); }), "Unknown adjusting rule");
}

TEST(Calendar, EveryNamedCentreMustBeOpen) {
    const Calendar& calendar = Calendar::Shared();
    const Date independenceDay = D(4, 7, 2024), earlyMay = D(6, 5, 2024);
    EXPECT_TRUE(calendar.IsBusinessDay(independenceDay, "LON"));
    EXPECT_FALSE(calendar.IsBusinessDay(independenceDay, "NYC"));
    for (const char* centres : {"LON+NYC", "NYC,LON", "LON; NYC", "LON NYC"}) {
        EXPECT_FALSE(calendar.IsBusinessDay(independenceDay, centres)) << centres;
        EXPECT_FALSE(calendar.IsBusinessDay(earlyMay, centres)) << centres;
    }
    EXPECT_EQ(calendar.Adjust(D(3, 7, 2024), zep::Following, "NYC+LON"), D(3, 7, 2024));
    EXPECT_EQ(calendar.Adjust(independenceDay, zep::Following, "NYC+LON"), D(5, 7, 2024));
}

TEST(Calendar, UnknownCentreNamesTheCode) {
    const Calendar& calendar = Calendar::Shared();
    const std::string text = zep::testing::ErrorWhat([&] { calendar.IsBusinessDay(D(3, 6, 2025), "LON+XXX"); });
    EXPECT_TRUE(Contains(text, "Can't find the fincancial center code 'XXX' in the calendar (zep::Calendar::Dates: Calendar.cpp"))
        << text;
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.Dates("NOPE"); }), "'NOPE'"));
}

TEST(Calendar, BusinessDaysBetweenChecksItsEnds) {
    const Calendar& calendar = Calendar::Shared();
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.BusinessDaysBetween(D(1, 6, 2025), D(3, 6, 2025), ""); }),
                         "Input 1: Start Date is not a business day"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.BusinessDaysBetween(D(2, 6, 2025), D(7, 6, 2025), ""); }),
                         "Input 2: End Date is not a business day"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.BusinessDaysBetween(D(3, 6, 2025), D(2, 6, 2025), ""); }),
                         "End date must be on or after start date"));
    EXPECT_EQ(calendar.BusinessDaysBetween(D(2, 6, 2025), D(2, 6, 2025), ""), 0);
    EXPECT_EQ(calendar.BusinessDaysBetween(D(2, 6, 2025), D(9, 6, 2025), ""), 5);
    // Christmas week 2024 in London: 23 Dec to 30 Dec passes 24, 27 and 30 only.
    EXPECT_EQ(calendar.BusinessDaysBetween(D(23, 12, 2024), D(30, 12, 2024), "LON"), 3);
}

TEST(Calendar, BusinessDaysBetweenAgreesWithADayByDayWalk) {
    const Calendar& calendar = Calendar::Shared();
    const Date start = D(2, 1, 2023);
    int walked = 0;
    for (Date day = start + 1; day <= D(29, 12, 2023); ++day) {
        if (!calendar.IsBusinessDay(day, "SYB")) continue;
        ++walked;
        ASSERT_EQ(calendar.BusinessDaysBetween(start, day, "SYB"), walked) << day;
    }
}

TEST(Calendar, MoneyMarketAndCommodityRollDates) {
    const Calendar& calendar = Calendar::Shared();
    EXPECT_EQ(calendar.NextFutureRollDate(D(1, 1, 2025), "IMM"), D(19, 3, 2025));
    EXPECT_EQ(calendar.NextFutureRollDate(D(19, 3, 2025), "IMM"), D(18, 6, 2025));
    EXPECT_EQ(calendar.NextFutureRollDate(D(20, 12, 2024), "IMM"), D(19, 3, 2025));
    EXPECT_EQ(calendar.NextCommodityDeliveryDate(D(1, 1, 2025), "LME"), D(15, 1, 2025));
    EXPECT_EQ(calendar.NextCommodityDeliveryDate(D(15, 1, 2025), "LME"), D(19, 2, 2025));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.NextFutureRollDate(D(1, 1, 2025), "CME"); }),
                         "Unknown money market"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.NextCommodityDeliveryDate(D(1, 1, 2025), "COMEX"); }),
                         "Unknown commodity market"));
}

TEST(Calendar, FXOptionDatesFollowTheSpotLag) {
    const Calendar& calendar = Calendar::Shared();
    const Date reference = D(3, 6, 2024), spot = D(5, 6, 2024);
    // One month: delivery spot + 1M, expiry two New York business days earlier (4 July is closed).
    const auto [delivery, expiry] = calendar.FXODeliveryExpiryDates(reference, spot, zep::Period("1M"), "NYC");
    EXPECT_EQ(delivery, D(5, 7, 2024));
    EXPECT_EQ(expiry, D(2, 7, 2024));
    // One week: expiry reference + 1W, delivery two business days later.
    const auto week = calendar.FXODeliveryExpiryDates(reference, spot, zep::Period("1W"), "NYC");
    EXPECT_EQ(week.second, D(10, 6, 2024));
    EXPECT_EQ(week.first, D(12, 6, 2024));
    // Spot on the last business day of May: delivery on the last business day of June.
    const auto endOfMonth =
        calendar.FXODeliveryExpiryDates(D(29, 5, 2024), D(31, 5, 2024), zep::Period("1M"), "");
    EXPECT_EQ(endOfMonth.first, D(28, 6, 2024));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.FXODeliveryExpiryDates(spot, spot, zep::Period("1M"), ""); }),
                         "Spot Date should be later than Reference Date!"));
}

TEST(Calendar, RuleTextsAreReadCaseInsensitively) {
    const std::vector<std::pair<std::string, int>> cases = {
        {"Following", 0}, {"F", 0}, {"next", 0}, {"PRECEDING", 1}, {"p", 1}, {"previous", 1},
        {"modified following", 2}, {"ModFol", 2}, {"MODF", 2}, {"modfl", 2}, {"modfollowing", 2},
        {"Modified Preceding", 3}, {"modp", 3}, {"modpr", 3}, {"modpre", 3}, {"prec eom", 3},
        {"IMM", 4}, {"lme", 6}, {"none", 5}, {"Unadjusted", 5}, {"actual", 5},
        {"indifferent", 5}, {"anniv", 5}, {"unadj", 5}};
    for (const auto& [text, rule] : cases) EXPECT_EQ(zep::stringToDateAdjusterRule(text), rule) << text;
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([] { zep::stringToDateAdjusterRule("sideways"); }),
                         "'sideways' is an invalid date rolling convention (zep::Calendar::stringToDateAdjusterRule"));
}

TEST_F(CalendarFiles, LoadsDelimitedRecordsAndRecurringHolidays) {
    Calendar calendar;
    calendar.LoadHolidaysFromFile(Write("h.txt", Table("XMAS;20200101;N\nXMAS;21901225;Y\nXMAS;20200101;N\n")));
    const auto dates = calendar.Dates("XMAS");
    ASSERT_EQ(dates.size(), 11u);  // one dated holiday, then 25 December of 2190 to 2199
    EXPECT_EQ(dates.front(), D(1, 1, 2020));
    EXPECT_EQ(dates.back(), D(25, 12, 2199));
    EXPECT_FALSE(calendar.IsBusinessDay(D(25, 12, 2195), "XMAS"));
}

TEST_F(CalendarFiles, MalformedLineNamesFileAndLineAndLoadsNothing) {
    Calendar calendar;
    const std::string path = Write("bad.txt", Table("BAD;20240102;N\nBAD;2024-01-03;N\n"));
    const std::string text = zep::testing::ErrorWhat([&] { calendar.LoadHolidaysFromFile(path); });
    EXPECT_TRUE(Contains(text, path) && Contains(text, "line 3")) << text;
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.Dates("BAD"); }), "'BAD'"));
    for (const char* record : {"BAD;20240230;N", "BAD;20240102", "BAD;20240102;X", ";20240102;N"}) {
        EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadHolidaysFromFile(Write("b.txt", Table(record))); }),
                             "line 2")) << record;
    }
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadHolidaysFromFile(Write("h.txt", "CENTRE;DATE\n")); }),
                         "line 1"));
}

TEST_F(CalendarFiles, MissingAndEmptyFiles) {
    Calendar calendar;
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadHolidaysFromFile((m_root / "none.txt").string()); }),
                         "File cannot be found! (zep::Calendar::LoadHolidaysFromFile"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadHolidaysFromFile(Write("empty.txt", "")); }),
                         "Holiday file provided is empty"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadMurexHolidays(""); }), "No holiday file provided"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadMurexHolidays(Write("e.csv", "\n\n")); }),
                         "Holiday file provided is empty"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadMurexHolidays((m_root / "none.csv").string()); }),
                         "File cannot be found!"));
}

TEST_F(CalendarFiles, LoadsTheTradingSystemExport) {
    Calendar calendar;
    calendar.LoadMurexHolidays(Write("mx.csv", "Calendar,Date,Description\nMXA,02/01/2024,New year, observed\n"
                                               "MXA,01/05/2024,Labour day\nMXB,25/12/2024\n"));
    EXPECT_EQ(calendar.Dates("MXA"), (std::vector<Date>{D(2, 1, 2024), D(1, 5, 2024)}));
    EXPECT_FALSE(calendar.IsBusinessDay(D(25, 12, 2024), "MXA+MXB"));
    EXPECT_TRUE(Contains(zep::testing::ErrorWhat([&] { calendar.LoadMurexHolidays(Write("bad.csv", "h\nMXC,2024-12-25\n")); }),
                         "line 2"));
}

TEST_F(CalendarFiles, EnvironmentVariableNamesTheFileOrItsDirectory) {
    const std::string file = Write("env/Holidays.txt", Table("ENV;20240102;N\n"));
    setenv("ZEP_HOLIDAYS_PATH", file.c_str(), 1);
    EXPECT_EQ(Calendar().Dates("ENV").size(), 1u);
    setenv("ZEP_HOLIDAYS_PATH", (m_root / "env").c_str(), 1);
    EXPECT_EQ(Calendar().Dates("ENV").size(), 1u);
    // When set, nothing else is searched: a wrong location fails even though files exist elsewhere.
    const std::string wrong = (m_root / "elsewhere.txt").string();
    setenv("ZEP_HOLIDAYS_PATH", wrong.c_str(), 1);
    const std::string text = zep::testing::ErrorWhat([] { Calendar calendar; });
    EXPECT_TRUE(Contains(text, "Holiday.txt not found. Base=")) << text;
    EXPECT_TRUE(Contains(text, "\nTried paths:\n  - " + wrong)) << text;
    EXPECT_TRUE(Contains(text, "zep::Calendar::Calendar")) << text;
}

TEST_F(CalendarFiles, RelativeDirectoriesAreSearchedInOrderFromTheBase) {
    const fs::path base = m_root / "a" / "b" / "c";
    fs::create_directories(base);
    Calendar::SetSearchBase(base.string());
    Calendar::SetPackagedHolidayFile("");

    const std::string text = zep::testing::ErrorWhat([] { Calendar calendar; });
    EXPECT_TRUE(Contains(text, "Holiday.txt not found. Base=" + base.string() + "\nTried paths:\n")) << text;
    const std::vector<fs::path> expected = {m_root / "a/b/control", m_root / "a/b/data", m_root / "a/control",
                                            m_root / "a/data", m_root / "config"};
    std::size_t position = 0;
    for (const auto& directory : expected) {
        const auto found = text.find("  - " + (directory / "Holidays.txt").string(), position);
        ASSERT_NE(found, std::string::npos) << directory;
        position = found;
    }

    Write("config/Holidays.txt", Table("CFG;20240102;N\n"));
    EXPECT_EQ(Calendar().Centres(), std::vector<std::string>{"CFG"});
    Write("a/data/Holidays.txt", Table("DATA;20240102;N\n"));
    EXPECT_EQ(Calendar().Centres(), std::vector<std::string>{"DATA"});
    Write("a/b/control/Holidays.txt", Table("CTRL;20240102;N\n"));
    EXPECT_EQ(Calendar().Centres(), std::vector<std::string>{"CTRL"});
}

TEST_F(CalendarFiles, PackagedFileIsTheLastResort) {
    Calendar::SetSearchBase((m_root / "x" / "y" / "z").string());
    Calendar::SetPackagedHolidayFile(Write("pkg/Holidays.txt", Table("PKG;20240102;N\n")));
    EXPECT_EQ(Calendar().Centres(), std::vector<std::string>{"PKG"});
}

TEST(Calendar, ConcurrentReadersSeeTheSameMergedCalendars) {
    const Calendar& calendar = Calendar::Shared();
    const std::vector<std::string> texts = {"TKY+SYB", "SYB+TKY", "TARGET,LON", "NYC TKY", "LON+NYC+TARGET"};
    auto count = [&](int t) {
        int open = 0;
        for (Date day = D(1, 1, 2020); day < D(1, 1, 2026); ++day)
            open += calendar.IsBusinessDay(day, texts[(t + day.SerialNumber()) % texts.size()]);
        return open;
    };
    std::vector<int> counts(8, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) threads.emplace_back([&, t] { counts[t] = count(t); });
    for (auto& thread : threads) thread.join();
    for (int t = 0; t < 8; ++t) EXPECT_EQ(counts[t], count(t)) << t;
}

}  // namespace
