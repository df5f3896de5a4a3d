#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <optional>
#include <string>
#include <vector>

#include "lum-time/Period.hpp"

namespace zep {

namespace {

// Units beyond Years can reach a Period through a cast from an integer code (the Python layer
// passes codes); they must never be ordered silently.
constexpr TimeUnit kUnit4 = static_cast<TimeUnit>(4);
constexpr TimeUnit kUnit5 = static_cast<TimeUnit>(5);

struct ComparisonCase {
    Period left;
    Period right;
    std::optional<bool> less;  // empty: the comparison is undecidable
};

std::string UnitName(TimeUnit units) {
    switch (units) {
        case Days: return "Days";
        case Weeks: return "Weeks";
        case Months: return "Months";
        case Years: return "Years";
    }
    return "Unit" + std::to_string(static_cast<int>(units));
}

std::string PeriodName(const Period& period) {
    const std::string length = std::to_string(period.Length());
    return (period.Length() < 0 ? "minus" + length.substr(1) : length) + UnitName(period.Units());
}

std::string CaseName(const ::testing::TestParamInfo<ComparisonCase>& info) {
    return PeriodName(info.param.left) + "_vs_" + PeriodName(info.param.right);
}

class PeriodOrdering : public ::testing::TestWithParam<ComparisonCase> {};

TEST_P(PeriodOrdering, FollowsTheConversionRules) {
    const auto& [left, right, less] = GetParam();
    if (less) {
        EXPECT_EQ(left < right, *less);
    } else {
        // Captured by name: clang before 16 cannot capture structured bindings.
        const auto compare = [&left = left, &right = right] { (void)(left < right); };
        EXPECT_EQ(testing::ErrorMessage(compare), "undecidable comparison between periods");
        EXPECT_NE(testing::ErrorWhat(compare).find("zep::Period::operator <"), std::string::npos);
    }
}

// Each pair of known units on both sides of the boundary its conversion factor sets.
INSTANTIATE_TEST_SUITE_P(
    KnownUnits, PeriodOrdering,
    ::testing::Values(
        // Same unit: lengths compare.
        ComparisonCase{Period(2, Days), Period(3, Days), true}, ComparisonCase{Period(3, Days), Period(2, Days), false},
        ComparisonCase{Period(2, Weeks), Period(3, Weeks), true}, ComparisonCase{Period(3, Weeks), Period(3, Weeks), false},
        ComparisonCase{Period(-2, Months), Period(1, Months), true}, ComparisonCase{Period(3, Months), Period(2, Months), false},
        ComparisonCase{Period(2, Years), Period(3, Years), true}, ComparisonCase{Period(3, Years), Period(2, Years), false},
        // Exact: a year is 12 months, a week 7 days.
        ComparisonCase{Period(1, Years), Period(13, Months), true}, ComparisonCase{Period(1, Years), Period(12, Months), false},
        ComparisonCase{Period(11, Months), Period(1, Years), true}, ComparisonCase{Period(12, Months), Period(1, Years), false},
        ComparisonCase{Period(-1, Years), Period(-11, Months), true},
        ComparisonCase{Period(1, Weeks), Period(8, Days), true}, ComparisonCase{Period(1, Weeks), Period(7, Days), false},
        ComparisonCase{Period(6, Days), Period(1, Weeks), true}, ComparisonCase{Period(7, Days), Period(1, Weeks), false},
        // Approximate in days: a month is 30 days, a year 365.
        ComparisonCase{Period(1, Months), Period(31, Days), true}, ComparisonCase{Period(1, Months), Period(30, Days), false},
        ComparisonCase{Period(29, Days), Period(1, Months), true}, ComparisonCase{Period(30, Days), Period(1, Months), false},
        ComparisonCase{Period(1, Years), Period(366, Days), true}, ComparisonCase{Period(1, Years), Period(365, Days), false},
        ComparisonCase{Period(364, Days), Period(1, Years), true}, ComparisonCase{Period(365, Days), Period(1, Years), false},
        // Approximate in weeks: a month is 4.345 weeks, a year 52.143; 1000 units pin the third decimal.
        ComparisonCase{Period(1000, Months), Period(4346, Weeks), true},
        ComparisonCase{Period(1000, Months), Period(4344, Weeks), false},
        ComparisonCase{Period(4344, Weeks), Period(1000, Months), true},
        ComparisonCase{Period(4346, Weeks), Period(1000, Months), false},
        ComparisonCase{Period(4, Weeks), Period(1, Months), true},
        ComparisonCase{Period(1000, Years), Period(52144, Weeks), true},
        ComparisonCase{Period(1000, Years), Period(52142, Weeks), false},
        ComparisonCase{Period(52142, Weeks), Period(1000, Years), true},
        ComparisonCase{Period(52144, Weeks), Period(1000, Years), false}),
    CaseName);

// A zero period is decided by the other side's sign before any unit is looked at, so it orders
// even against an unknown unit; deliberately, anything positive is "less" than zero.
INSTANTIATE_TEST_SUITE_P(
    ZeroLength, PeriodOrdering,
    ::testing::Values(ComparisonCase{Period(1, Years), Period(0, Days), true},
                      ComparisonCase{Period(-1, Years), Period(0, Days), false},
                      ComparisonCase{Period(0, Days), Period(-1, Years), true},
                      ComparisonCase{Period(0, Days), Period(1, Years), false},
                      ComparisonCase{Period(2, kUnit5), Period(0, Months), true},
                      ComparisonCase{Period(0, kUnit4), Period(3, Months), false},
                      ComparisonCase{Period(0, Months), Period(-3, kUnit5), true}),
    CaseName);

// Every pairing of units 0..5 in which either side is not a known unit.
std::vector<ComparisonCase> PairsWithAnUnknownUnit() {
    std::vector<ComparisonCase> cases;
    for (int left = 0; left <= 5; ++left)
        for (int right = 0; right <= 5; ++right)
            if (left > Years || right > Years)
                cases.push_back({Period(2, static_cast<TimeUnit>(left)), Period(3, static_cast<TimeUnit>(right)),
                                 std::nullopt});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(UnknownUnits, PeriodOrdering, ::testing::ValuesIn(PairsWithAnUnknownUnit()), CaseName);

}  // namespace

}  // namespace zep
