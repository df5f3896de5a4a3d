// The example autocallable under Black-Scholes against a bare loop that only draws the same
// normals and exponentiates them, both on 2 threads over 100 000 paths of 266 steps.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <thread>
#include <vector>

#include "lum-auxiliary/VectorMath.hpp"
#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace {

constexpr std::size_t kPaths = 100000;
constexpr std::size_t kSteps = 266;
constexpr int kThreads = 2;

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
    for (auto _ : state) {
        std::vector<double> sums(kThreads);
        std::vector<std::thread> workers;
        for (int t = 0; t < kThreads; ++t)
            workers.emplace_back([&, t] {
                sums[t] = BareLoopShare(t * kPaths / kThreads, (t + 1) * kPaths / kThreads);
            });
        for (auto& worker : workers) worker.join();
        benchmark::DoNotOptimize(sums);
    }
    state.SetItemsProcessed(state.iterations() * kPaths * kSteps);
}
BENCHMARK(BareNormalsAndExp)->Unit(benchmark::kMillisecond)->UseRealTime();

void AutocallableBlackScholes(benchmark::State& state) {
    setenv("ZEP_NUM_THREADS", "2", 1);
    auto inputs = zep::ProductDefinitionFromFile(ZEP_SOURCE_DIR "/examples/autocallable.yaml");
    inputs.numSimulations = kPaths;
    const zep::XScriptStructure note(std::move(inputs));
    for (auto _ : state) benchmark::DoNotOptimize(note.Price());
    state.SetItemsProcessed(state.iterations() * kPaths * kSteps);
}
BENCHMARK(AutocallableBlackScholes)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
