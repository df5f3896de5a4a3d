#include "lum-time/Schedule.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FailureText.hpp"

namespace zep {
namespace {

Date D(const char* text) { return Date(std::string(text)); }

std::vector<Date> Dates(std::initializer_list<const char*> texts) {
    std::vector<Date> dates;
    for (const char* text : texts) dates.push_back(D(text));
    return dates;
}

ScheduleRules Rules(DateGeneration generation, StubKind stub = StubKind::Short, const char* tenor = "6M",
                    bool endOfMonth = false) {
    ScheduleRules rules;
    rules.tenor = Period(std::string(tenor));
    rules.generation = generation;
    rules.stub = stub;
    rules.endOfMonth = endOfMonth;
    return rules;
}

struct StubCase {
    std::string name;
    DateGeneration generation;
    StubKind stub;
    std::vector<Date> expected;
};

// Worked by hand: 10 Jan 2024 to 15 Mar 2025 in six-month periods.
class Stubs : public ::testing::TestWithParam<StubCase> {};
TEST_P(Stubs, FallWhereTheGenerationEnds) {
    const StubCase& c = GetParam();
    EXPECT_EQ(Schedule::UnadjustedDates(D("2024-01-10"), D("2025-03-15"), Rules(c.generation, c.stub)), c.expected);
}
INSTANTIATE_TEST_SUITE_P(
    BothDirections, Stubs,
    ::testing::Values(
        StubCase{"BackwardShortFront", DateGeneration::Backward, StubKind::Short,
                 Dates({"2024-01-10", "2024-03-15", "2024-09-15", "2025-03-15"})},
        StubCase{"BackwardLongFront", DateGeneration::Backward, StubKind::Long,
                 Dates({"2024-01-10", "2024-09-15", "2025-03-15"})},
        StubCase{"ForwardShortBack", DateGeneration::Forward, StubKind::Short,
                 Dates({"2024-01-10", "2024-07-10", "2025-01-10", "2025-03-15"})},
        StubCase{"ForwardLongBack", DateGeneration::Forward, StubKind::Long,
                 Dates({"2024-01-10", "2024-07-10", "2025-03-15"})}),
    [](const ::testing::TestParamInfo<StubCase>& info) { return info.param.name; });

TEST(Schedule, EndOfMonthKeepsMonthEndsWithoutDrift) {
    EXPECT_EQ(Schedule::UnadjustedDates(D("2024-02-29"), D("2024-06-30"), Rules(DateGeneration::Forward, StubKind::Short, "1M", true)),
              Dates({"2024-02-29", "2024-03-31", "2024-04-30", "2024-05-31", "2024-06-30"}));
    // Without the rule the day is clamped once per date from the anchor: 29th, not 28th or 31st.
    EXPECT_EQ(Schedule::UnadjustedDates(D("2024-01-31"), D("2024-05-15"), Rules(DateGeneration::Forward, StubKind::Short, "1M")),
              Dates({"2024-01-31", "2024-02-29", "2024-03-31", "2024-04-30", "2024-05-15"}));
}

TEST(Schedule, ImmGenerationTakesTheThirdWednesdays) {
    EXPECT_EQ(Schedule::UnadjustedDates(D("2024-01-05"), D("2024-12-31"), Rules(DateGeneration::IMM)),
              Dates({"2024-01-05", "2024-03-20", "2024-06-19", "2024-09-18", "2024-12-18", "2024-12-31"}));
}

TEST(Schedule, AdjustsAccrualPaymentAndFixingDatesOnTheCalendar) {
    const Calendar& calendar = Calendar::Shared();
    ScheduleRules rules = Rules(DateGeneration::Backward);
    rules.paymentLagDays = 2;
    const Schedule schedule(D("2024-03-15"), D("2025-03-15"), rules, calendar);
    ASSERT_EQ(schedule.Size(), 2U);
    const SchedulePeriod& first = schedule.Periods()[0];
    // 15 Sep 2024 is a Sunday: modified following gives Monday the 16th; payment two business
    // days on; the fixing two business days before Friday 15 March is Wednesday the 13th.
    EXPECT_EQ(first.accrualEnd, D("2024-09-16"));
    EXPECT_EQ(first.payment, D("2024-09-18"));
    EXPECT_EQ(first.fixing, D("2024-03-13"));
    EXPECT_DOUBLE_EQ(first.accrualFraction, 185.0 / 360.0);
    // 15 Mar 2025 is a Saturday; the 29th-31st rule keeps March: Monday the 17th.
    EXPECT_EQ(schedule.Periods()[1].accrualEnd, D("2025-03-17"));
}

TEST(Schedule, RefusesBackwardsDatesAndEmptyTenors) {
    const Calendar& calendar = Calendar::Shared();
    EXPECT_EQ(testing::ErrorMessage([&] { Schedule(D("2025-01-01"), D("2024-01-01"), Rules(DateGeneration::Forward), calendar); }),
              "Schedule: termination date must be after effective date");
    EXPECT_EQ(testing::ErrorMessage([&] {
                  Schedule(D("2024-01-01"), D("2025-01-01"), Rules(DateGeneration::Forward, StubKind::Short, "0M"), calendar);
              }),
              "Schedule: tenor must be positive");
}

}  // namespace
}  // namespace zep
