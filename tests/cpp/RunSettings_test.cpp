#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include <tuple>

#include "lum-monte-carlo/RunSettings.hpp"
#include "lum-monte-carlo/SimulationGrid.hpp"
#include "lum-auxiliary/Error.hpp"

namespace zep {
namespace {

using Setting = std::optional<std::string>;

class ThreadRule
    : public ::testing::TestWithParam<std::tuple<std::size_t, unsigned, Setting, std::size_t>> {};
TEST_P(ThreadRule, FollowsSettingOrAutomaticRule) {
    const auto& [paths, hardware, setting, expected] = GetParam();
    EXPECT_EQ(ThreadCount(paths, hardware, setting), expected)
        << "paths=" << paths << " hardware=" << hardware << " setting=" << setting.value_or("-");
}
INSTANTIATE_TEST_SUITE_P(
    Cases, ThreadRule,
    ::testing::Values(std::make_tuple(100000, 8, Setting("64"), 64),
                      std::make_tuple(100000, 8, Setting("1"), 1),
                      std::make_tuple(100000, 8, Setting("0"), 4),
                      std::make_tuple(100000, 8, Setting("65"), 4),
                      std::make_tuple(100000, 8, Setting("two"), 4),
                      std::make_tuple(100000, 8, Setting("3x"), 4),
                      std::make_tuple(24, 8, Setting(), 1), std::make_tuple(25, 8, Setting(), 1),
                      std::make_tuple(26, 8, Setting(), 2), std::make_tuple(26, 2, Setting(), 1),
                      std::make_tuple(100000, 2, Setting(), 1),
                      std::make_tuple(100000, 7, Setting(), 4),
                      std::make_tuple(100000, 0, Setting(), 1),
                      std::make_tuple(100, 16, Setting(), 4)),
    [](const ::testing::TestParamInfo<ThreadRule::ParamType>& info) {
        const Setting& setting = std::get<2>(info.param);
        return std::to_string(std::get<0>(info.param)) + "Paths_" + std::to_string(std::get<1>(info.param)) +
               "Cores_Setting" + (setting ? zep::testing::NameOf(*setting) : std::string("Unset"));
    });

TEST(RunMode, ReadsTheModeTable) {
    EXPECT_EQ(RunModeFromText(std::nullopt), RunMode::MultithreadCPU);
    EXPECT_EQ(RunModeFromText("CPU"), RunMode::SingleThread);
    EXPECT_EQ(RunModeFromText("SINGLETHREAD"), RunMode::SingleThread);
    EXPECT_EQ(RunModeFromText("MULTITHREADCPU"), RunMode::MultithreadCPU);
    EXPECT_EQ(RunModeFromText("GPU"), RunMode::GPU);
    EXPECT_EQ(RunModeFromText("whatever"), RunMode::MultithreadCPU);
}

TEST(DailySteps, NeedsOneAsFirstCharacter) {
    EXPECT_TRUE(DailyStepsForced("1"));
    EXPECT_TRUE(DailyStepsForced("1yes"));
    EXPECT_FALSE(DailyStepsForced("0"));
    EXPECT_FALSE(DailyStepsForced(""));
    EXPECT_FALSE(DailyStepsForced(std::nullopt));
}

TEST(SimulationGrid, FloorsPastEventsAtTodayAndStepsEventToEvent) {
    const auto grid = BuildSimulationGrid({-3, 0, 73, 73, 365}, 365.0, 0);
    EXPECT_EQ(grid.times, (std::vector<double>{73 / 365.0, 1.0}));
    EXPECT_EQ(grid.eventStep, (std::vector<std::int32_t>{-1, -1, 0, 0, 1}));
    EXPECT_EQ(grid.eventTimes, (std::vector<double>{0, 0, 73 / 365.0, 73 / 365.0, 1.0}));
}

TEST(SimulationGrid, DailyStepsPickEventsOutOfTheDays) {
    const auto grid = BuildSimulationGrid({2, 5}, 365.0, 1);
    EXPECT_EQ(grid.Steps(), 5u);
    EXPECT_DOUBLE_EQ(grid.times[0], 1 / 365.0);
    EXPECT_EQ(grid.eventStep, (std::vector<std::int32_t>{1, 4}));
}

TEST(SimulationGrid, LongGapsAreSplitIntoEqualWholeDaySteps) {
    const auto grid = BuildSimulationGrid({3, 4, 11}, 365.0, 3);
    std::vector<double> days;
    for (double t : grid.times) days.push_back(t * 365.0);
    ASSERT_EQ(days.size(), 5u);
    EXPECT_NEAR(days[0], 3, 1e-12);
    EXPECT_NEAR(days[1], 4, 1e-12);
    EXPECT_NEAR(days[2], 6, 1e-12);
    EXPECT_NEAR(days[3], 8, 1e-12);
    EXPECT_NEAR(days[4], 11, 1e-12);
    EXPECT_EQ(grid.eventStep, (std::vector<std::int32_t>{0, 1, 4}));
}

TEST(SimulationGrid, AcceptsAtMost1098ObservationDays) {
    std::vector<std::int32_t> days(1098);
    for (std::size_t i = 0; i < days.size(); ++i) days[i] = static_cast<std::int32_t>(i + 1);
    EXPECT_EQ(BuildSimulationGrid(days, 365.0, 0).Steps(), 1098u);
    days.push_back(1099);
    try {
        BuildSimulationGrid(days, 365.0, 0);
        FAIL() << "expected a failure";
    } catch (const Error& e) {
        EXPECT_EQ(e.Message(), "The supported maxium oberservation days is 1098!");
    }
}

}  // namespace
}  // namespace zep
