#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "PayoffFixtures.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/RunObserver.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {
namespace {

XScriptInputs CallInputs(std::int64_t paths) {
    XScriptInputs in;
    in.today = Date(2, 1, 2024);
    in.spot = 100.0;
    in.volatility = 0.2;
    in.rate1 = 0.03;
    in.rate2 = 0.01;
    in.model = 1;
    in.eventDates = {in.today + 365};
    in.eventScripts = {"V PAYS MAX(SPOT() - 100, 0)"};
    in.numSimulations = paths;
    return in;
}

// Records what the frame tells it and asks for a stop after `stopAfter` progress reports.
class RecordingObserver final : public RunObserver {
public:
    explicit RecordingObserver(int stopAfter) : m_stopAfter(stopAfter) { SetRunObserver(this); }
    ~RecordingObserver() override { SetRunObserver(nullptr); }

    void Started(std::uint64_t total) noexcept override { starts.push_back(total); }
    bool StopRequested() override { return static_cast<int>(done.size()) >= m_stopAfter; }
    void Progress(std::uint64_t paths, std::uint64_t) override { done.push_back(paths); }
    void Finished() noexcept override { ++finishes; }

    std::vector<std::uint64_t> starts;
    std::vector<std::uint64_t> done;
    int finishes = 0;

private:
    int m_stopAfter;
};

class ScopedThreads {
public:
    explicit ScopedThreads(int threads) { setenv("ZEP_NUM_THREADS", std::to_string(threads).c_str(), 1); }
    ~ScopedThreads() { unsetenv("ZEP_NUM_THREADS"); }
};

class RunObserverThreads : public ::testing::TestWithParam<int> {};

TEST_P(RunObserverThreads, AStopEndsTheRunAndLeavesTheProductUsable) {
    const ScopedThreads threads(GetParam());
    const XScriptStructure product(CallInputs(1'000'000'000), testing::CallPayoff(100.0));
    {
        RecordingObserver observer(3);
        EXPECT_THROW(product.Price(), RunInterrupted);
        EXPECT_EQ(observer.starts, std::vector<std::uint64_t>{1'000'000'000});
        EXPECT_EQ(observer.finishes, 1);
        ASSERT_GE(observer.done.size(), 3U);
        for (std::size_t i = 1; i < observer.done.size(); ++i) EXPECT_GE(observer.done[i], observer.done[i - 1]);
        EXPECT_LT(observer.done.back(), 1'000'000'000U);
    }
    // An interrupted run leaves no result behind: the next request runs afresh.
    RecordingObserver again(1);
    EXPECT_THROW(product.Price(), RunInterrupted);
    EXPECT_EQ(again.starts.size(), 1U);
}

TEST_P(RunObserverThreads, AFailingPathStopsEveryThreadWithItsMessage) {
    const ScopedThreads threads(GetParam());
    const auto failing = std::make_shared<testing::FunctionPayoff>(
        [](const ScenarioPoint* s, std::size_t) -> double {
            if (s[0].spot > 160.0) ZEP_FAIL("spot out of range");
            return 1.0;
        },
        1);
    const XScriptStructure product(CallInputs(200'000), failing);
    try {
        product.Price();
        FAIL() << "no failure";
    } catch (const Error& error) {
        EXPECT_EQ(error.Message(), "spot out of range");
    }
}

INSTANTIATE_TEST_SUITE_P(OneToThreeThreads, RunObserverThreads, ::testing::Values(1, 2, 3),
                         [](const ::testing::TestParamInfo<int>& info) { return std::to_string(info.param) + "Threads"; });

}  // namespace
}  // namespace zep
