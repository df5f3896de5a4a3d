// Payoff scripts: parsing and preparing an autocallable, evaluating one event date of it per
// path through the compiled stream and through the tree-walking evaluator (same run), and a
// block of paths path by path against side by side.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace {

// A 40-line autocallable observation with memory coupons, knock-in and a few path statistics.
const std::string kAutocallable40Lines = R"(
S0 = 100 NOTIONAL = 100 COUPON = 0.05 ALIVE = 1 WORST = 10
CALLBARRIER = 1 COUPONBARRIER = 0.8 KIBARRIER = 0.6 ISLAST = 1
IF ALIVE > 0.5 THEN
  PERF = SPOT() / S0
  WORST = MIN(WORST, PERF)
  BEST = MAX(BEST, PERF)
  IF PERF >= CALLBARRIER THEN
    PAYOFF PAYS NOTIONAL * (1 + COUPON * PERIOD)
    CALLED = 1
    ALIVE = 0
  ELSE
    IF PERF >= COUPONBARRIER THEN
      PAYOFF PAYS NOTIONAL * COUPON * (1 + MISSED)
      MISSED = 0
    ELSE
      MISSED = MISSED + 1
    ENDIF
    IF PERF < KIBARRIER; 0.01 THEN
      KI = 1
    ENDIF
    PERIOD = PERIOD + 1
  ENDIF
ENDIF
IF ALIVE > 0.5 AND ISLAST > 0.5 THEN
  IF KI > 0.5 AND PERF < 1 THEN
    PAYOFF PAYS NOTIONAL * PERF
  ELSE
    PAYOFF PAYS NOTIONAL
  ENDIF
  ALIVE = 0
ENDIF
SPREAD = BEST - WORST
LOGRET = LOG(PERF)
VOLPROXY = SQRT(LOGRET * LOGRET)
DIGI = SMOOTH(PERF - 1, 1, 0, 0.02)
FLAG = MAX(SPREAD - 0.5, VOLPROXY - 0.3)
TOTAL = TOTAL + DIGI * 0.01
COUNT = COUNT + 1
AVG = TOTAL / COUNT
)";

void ParseAndPrepareAutocallable40Lines(benchmark::State& state) {
    const std::vector<zep::Date> dates = {zep::Date(15, 1, 2030)};
    const std::vector<std::string> scripts = {kAutocallable40Lines};
    for (auto _ : state) {
        zep::ScriptProduct product(dates, scripts);
        benchmark::DoNotOptimize(product.VariableCount());
    }
}
BENCHMARK(ParseAndPrepareAutocallable40Lines)->Unit(benchmark::kMicrosecond);

// A typical observation date: about ten statements around one IF/ELSE.
const std::vector<std::string> kObservation = {
    "S0 = SPOT() NOTIONAL = 100 ALIVE = 1 PERIOD = 1 WORST = 10",
    R"(IF ALIVE > 0.5 THEN
         PERF = SPOT() / S0
         WORST = MIN(WORST, PERF)
         IF PERF >= 1.0 THEN
           PAYOFF PAYS NOTIONAL * (1 + 0.08 * PERIOD)
           ALIVE = 0
         ELSE
           IF PERF < 0.6 THEN KI = 1 ENDIF
           MEMO = MEMO + 0.02
           PERIOD = PERIOD + 1
         ENDIF
       ENDIF)"};

template <bool Compiled>
void EvaluateOneObservation(benchmark::State& state) {
    const zep::ScriptProduct product({zep::Date(15, 1, 2030), zep::Date(15, 4, 2030)}, kObservation);
    zep::ScriptPathEvaluator evaluator(product);
    std::vector<double> start(product.VariableCount()), variables(product.VariableCount());
    evaluator.EvaluateEvent(0, {100.0, 1.0}, start);
    std::mt19937 random(17);
    std::uniform_real_distribution<double> spot(50.0, 150.0);
    std::vector<zep::ScenarioPoint> points(256);
    for (auto& point : points) point = {spot(random), 0.97};
    std::size_t i = 0;
    for (auto _ : state) {
        variables = start;
        if constexpr (Compiled) evaluator.EvaluateEvent(1, points[i++ & 255], variables);
        else evaluator.EvaluateEventTree(1, points[i++ & 255], variables);
        benchmark::DoNotOptimize(variables.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_TEMPLATE(EvaluateOneObservation, true)->Name("EvaluateOneObservation/Compiled");
BENCHMARK_TEMPLATE(EvaluateOneObservation, false)->Name("EvaluateOneObservation/TreeEvaluator");

// The 40-line observation on twelve monthly dates, for a block of 64 random-walk paths: path by
// path through RunPath against side by side through RunLanes (same values), sharp and smoothed.
// Items are paths.
template <bool Lanes, bool Smoothed>
void EvaluateBlockOf64Paths(benchmark::State& state) {
    constexpr std::size_t kPaths = 64, kDates = 12;
    std::vector<zep::Date> dates;
    for (std::size_t d = 0; d < kDates; ++d) dates.push_back(zep::Date(15, 1, 2030).Advance(static_cast<int>(d), zep::Months));
    const zep::ScriptProduct product(dates, std::vector<std::string>(kDates, kAutocallable40Lines));
    const zep::CompiledScript& script = Smoothed ? product.CompiledSmoothed() : product.Compiled();
    const std::size_t variables = product.VariableCount();
    std::mt19937 random(23);
    std::normal_distribution<double> step(0.0, 0.06);
    std::vector<double> spots(kDates * kPaths), numeraires(kDates, 0.99);
    std::vector<zep::ScenarioPoint> points(kDates * kPaths);
    for (std::size_t p = 0; p < kPaths; ++p) {
        double spot = 100.0;
        for (std::size_t d = 0; d < kDates; ++d) {
            spot *= std::exp(step(random));
            spots[d * kPaths + p] = spot;
            points[p * kDates + d] = {spot, 0.99};
        }
    }
    auto pathScratch = script.MakeScratch(zep::kDefaultFuzzyEps);
    auto laneScratch = script.MakeLaneScratch(kPaths, zep::kDefaultFuzzyEps);
    std::vector<double> values(variables * kPaths);
    for (auto _ : state) {
        std::fill(values.begin(), values.end(), 0.0);
        if constexpr (Lanes) {
            script.RunLanes(spots.data(), numeraires.data(), kPaths, values.data(), laneScratch);
        } else {
            for (std::size_t p = 0; p < kPaths; ++p)
                script.RunPath(points.data() + p * kDates, values.data() + p * variables, pathScratch);
        }
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kPaths));
}
BENCHMARK_TEMPLATE(EvaluateBlockOf64Paths, false, false)->Name("EvaluateBlockOf64Paths/Sharp/PathByPath");
BENCHMARK_TEMPLATE(EvaluateBlockOf64Paths, true, false)->Name("EvaluateBlockOf64Paths/Sharp/Lanes");
BENCHMARK_TEMPLATE(EvaluateBlockOf64Paths, false, true)->Name("EvaluateBlockOf64Paths/Smoothed/PathByPath");
BENCHMARK_TEMPLATE(EvaluateBlockOf64Paths, true, true)->Name("EvaluateBlockOf64Paths/Smoothed/Lanes");

}  // namespace
