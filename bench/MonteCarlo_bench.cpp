// The example autocallable under Black-Scholes against a bare loop that only draws the same
// normals and exponentiates them, over 100 000 paths of 266 steps, on 1 and on 2 threads (the
// bare loop's own scaling shows what the machine gives a second thread).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "lum-auxiliary/VectorMath.hpp"
#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace {

constexpr std::size_t kPaths = 100000;
constexpr std::size_t kSteps = 266;

double BareLoopShare(std::size_t first, std::size_t last) {
    zep::BasicRanGen generator(20240102);
    std::vector<double> normals(kSteps);
    std::vector<double> spots(kSteps);
    double sum = 0.0;
    for (std::size_t path = first; path < last; ++path) {
        generator.StartPath(path);
        generator.NextPath(normals.data(), kSteps);
        double logSpot = std::log(100.0);
        for (std::size_t i = 0; i < kSteps; ++i) {
            logSpot += -0.0001 + 0.0105 * normals[i];
            spots[i] = logSpot;
        }
        // The models' own batched exp, so that the comparison isolates the pricer's overhead.
        zep::ExpInPlace(spots.data(), kSteps);
        for (std::size_t i = 0; i < kSteps; ++i) sum += spots[i];
    }
    return sum;
}

void BareNormalsAndExp(benchmark::State& state) {
    const auto threads = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        std::vector<double> sums(threads);
        std::vector<std::thread> workers;
        for (std::size_t t = 0; t < threads; ++t)
            workers.emplace_back([&, t] {
                sums[t] = BareLoopShare(t * kPaths / threads, (t + 1) * kPaths / threads);
            });
        for (auto& worker : workers) worker.join();
        benchmark::DoNotOptimize(sums);
    }
    state.SetItemsProcessed(state.iterations() * kPaths * kSteps);
}
BENCHMARK(BareNormalsAndExp)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

void AutocallableBlackScholes(benchmark::State& state) {
    setenv("ZEP_NUM_THREADS", std::to_string(state.range(0)).c_str(), 1);
    auto inputs = zep::ProductDefinitionFromFile(ZEP_SOURCE_DIR "/examples/autocallable.yaml");
    inputs.numSimulations = kPaths;
    const zep::XScriptStructure note(std::move(inputs));
    for (auto _ : state) benchmark::DoNotOptimize(note.Price());
    state.SetItemsProcessed(state.iterations() * kPaths * kSteps);
}
BENCHMARK(AutocallableBlackScholes)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
