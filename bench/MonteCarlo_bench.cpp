// Path generation alone (the generator's normals and the Black-Scholes model's path, no script)
// in nanoseconds per path-step, the example autocallable priced in full, over 100 000 paths,
// on 1 and on 2 threads, and its BasicGreeks and AllGreeks after its price on 1 thread.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/ScriptGreeks.hpp"
#include "lum-monte-carlo/SimpleBlackScholes.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace {

constexpr std::size_t kPaths = 100000;
constexpr std::size_t kSteps = 252;

void PathGenerationBlackScholes(benchmark::State& state) {
    zep::BasicRanGen generator(20240102);
    zep::SimpleBlackScholes<double> model({100.0, 0.2, 0.03, 0.01, {}});
    std::vector<double> times(kSteps);
    for (std::size_t i = 0; i < kSteps; ++i) times[i] = static_cast<double>(i + 1) / kSteps;
    model.SetGrid(times);
    // Four paths at a time, as the pricer hands them to the model.
    constexpr std::size_t kBlock = 4;
    std::vector<double> normals(kBlock * kSteps);
    std::vector<double> spots(kBlock * kSteps);
    for (auto _ : state) {
        for (std::size_t block = 0; block < kPaths; block += kBlock) {
            for (std::size_t p = 0; p < kBlock; ++p) {
                generator.StartPath(block + p);
                generator.NextPath(normals.data() + p * kSteps, kSteps);
            }
            model.SimulatePaths(normals.data(), kBlock, kSteps, spots.data());
            benchmark::DoNotOptimize(spots.data());
        }
    }
    // Items are path-steps: the reported time per item is the cost of one step of one path.
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kPaths * kSteps));
}
BENCHMARK(PathGenerationBlackScholes)->Unit(benchmark::kMillisecond);

void AutocallableBlackScholes(benchmark::State& state) {
    setenv("ZEP_NUM_THREADS", std::to_string(state.range(0)).c_str(), 1);
    auto inputs = zep::ProductDefinitionFromFile(ZEP_SOURCE_DIR "/examples/autocallable.yaml");
    inputs.numSimulations = kPaths;
    for (auto _ : state) {
        // A product keeps the results of its run, so each iteration prices a new one.
        const zep::XScriptStructure note(inputs);
        benchmark::DoNotOptimize(note.Price());
    }
}
BENCHMARK(AutocallableBlackScholes)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

// The Greeks' own simulations: each iteration prices a new note, outside the timing, then asks
// for its Greeks.
template <std::map<std::string, double> (*Greeks)(const zep::XScriptStructure&)>
void AutocallableGreeks(benchmark::State& state) {
    setenv("ZEP_NUM_THREADS", "1", 1);
    auto inputs = zep::ProductDefinitionFromFile(ZEP_SOURCE_DIR "/examples/autocallable.yaml");
    inputs.numSimulations = kPaths;
    for (auto _ : state) {
        state.PauseTiming();
        const zep::XScriptStructure note(inputs);
        benchmark::DoNotOptimize(note.Price());
        state.ResumeTiming();
        benchmark::DoNotOptimize(Greeks(note));
    }
}
BENCHMARK(AutocallableGreeks<zep::BasicGreeks>)->Name("AutocallableBasicGreeks")->Unit(benchmark::kMillisecond);
BENCHMARK(AutocallableGreeks<zep::AllGreeks>)->Name("AutocallableAllGreeks")->Unit(benchmark::kMillisecond);

}  // namespace
