#include <benchmark/benchmark.h>

#include <array>

#include "lum-closed-form/BSVanilla.hpp"

namespace {

struct Quote {
    int type;
    double strike, vol, expiry, delivery, rd, rf, spot;
};

// A few options across moneyness and maturity, cycled so that no single input is memorised.
constexpr std::array<Quote, 4> kQuotes = {{{0, 100.0, 0.20, 1.00, 1.01, 0.05, 0.01, 100.0},
                                          {1, 90.0, 0.35, 0.25, 0.25, 0.03, 0.00, 102.0},
                                          {0, 1.25, 0.08, 2.00, 2.01, 0.04, 0.02, 1.10},
                                          {1, 120.0, 0.25, 0.50, 0.51, 0.01, 0.03, 100.0}}};

void PriceAndFourGreeks(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const Quote& q = kQuotes[i++ & 3];
        zep::BSVanilla engine(q.type, q.strike, q.vol, q.expiry, q.delivery, q.rd, q.rf, q.spot);
        benchmark::DoNotOptimize(engine.Price());
        benchmark::DoNotOptimize(engine.Delta());
        benchmark::DoNotOptimize(engine.Gamma());
        benchmark::DoNotOptimize(engine.Vega());
        benchmark::DoNotOptimize(engine.Theta());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(PriceAndFourGreeks);

void ImpliedVolatilityByBisection(benchmark::State& state) {
    std::array<double, 4> prices{};
    for (std::size_t k = 0; k < 4; ++k) {
        const Quote& q = kQuotes[k];
        prices[k] = zep::BSVanilla(q.type, q.strike, q.vol, q.expiry, q.delivery, q.rd, q.rf, q.spot).Price();
    }
    std::size_t i = 0;
    for (auto _ : state) {
        const std::size_t k = i++ & 3;
        const Quote& q = kQuotes[k];
        benchmark::DoNotOptimize(zep::BSVanilla::VolImpliedFromPrice(
            q.type, q.strike, q.expiry, q.delivery, q.rd, q.rf, q.spot, prices[k]));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ImpliedVolatilityByBisection);

}  // namespace
