#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "lum-auxiliary/Interpolation.hpp"

namespace {

using Interp = zep::Interpolation<double, double, double>;

// 30 nodes over 30 years, discount-factor shaped, and query points spread over the range in
// an order the branch predictor cannot learn.
struct ThirtyNodes {
    std::vector<double> x, y, queries;
    ThirtyNodes() {
        for (int i = 0; i < 30; ++i) {
            x.push_back(0.1 + i * (30.0 / 29.0));
            y.push_back(std::exp(-0.03 * x.back()));
        }
        std::mt19937_64 rng(42);
        std::uniform_real_distribution<double> uniform(0.2, 30.0);
        for (int i = 0; i < 1024; ++i) queries.push_back(uniform(rng));
    }
};

void Evaluate1D(benchmark::State& state, zep::InterpolationMethod method) {
    const ThirtyNodes data;
    const Interp interp(data.x, data.y, method, zep::FlatExtrapolation);
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(interp.Evaluate(data.queries[i++ & 1023]));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(Evaluate1D, Linear30, zep::LinearInterpolation);
BENCHMARK_CAPTURE(Evaluate1D, LogLinear30, zep::LogLinearInterpolation);
BENCHMARK_CAPTURE(Evaluate1D, NaturalCubic30, zep::CubicInterpolation);
BENCHMARK_CAPTURE(Evaluate1D, ClampedCubic30, zep::ClampedCubicInterpolation);
BENCHMARK_CAPTURE(Evaluate1D, FFQ30, zep::FFQInterpolation);

}  // namespace
