// Curve building in C++: a 120-period coupon schedule on TARGET and a 30-quote bootstrap.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "lum-interest-rates/CurveBootstrap.hpp"
#include "lum-time/Schedule.hpp"

namespace {

void Schedule120Periods(benchmark::State& state) {
    const zep::Calendar& calendar = zep::Calendar::Shared();
    zep::ScheduleRules rules;
    rules.tenor = zep::Period(3, zep::Months);
    rules.centres = "TARGET";
    const zep::Date effective(std::string("2024-01-15")), termination(std::string("2054-01-15"));
    for (auto _ : state) {
        const zep::Schedule schedule(effective, termination, rules, calendar);
        benchmark::DoNotOptimize(schedule.Size());
    }
}
BENCHMARK(Schedule120Periods)->Unit(benchmark::kMicrosecond);

std::vector<zep::RateQuote> ThirtyQuotes() {
    std::vector<zep::RateQuote> quotes;
    for (int months : {1, 2, 3})
        quotes.push_back({zep::RateInstrument::Deposit, zep::Period(), zep::Period(months, zep::Months), 0.035});
    for (int start : {3, 6, 9, 12, 15, 18})
        quotes.push_back({zep::RateInstrument::FRA, zep::Period(start, zep::Months), zep::Period(start + 3, zep::Months), 0.034});
    for (int years : {6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 70, 80})
        quotes.push_back({zep::RateInstrument::Swap, zep::Period(), zep::Period(years, zep::Years), 0.03 + 0.0001 * years});
    return quotes;
}

// The argument is the interpolation method: 2 linear (pillar by pillar), 6 cubic (global fit).
void Bootstrap30Quotes(benchmark::State& state) {
    const std::vector<zep::RateQuote> quotes = ThirtyQuotes();
    const zep::Calendar& calendar = zep::Calendar::Shared();
    const zep::Date today(std::string("2024-01-15"));
    zep::BootstrapConventions conventions;
    conventions.interpolationMethod = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) {
        const zep::CurveBootstrap bootstrap(today, quotes, conventions, calendar);
        benchmark::DoNotOptimize(bootstrap.Curve().get());
    }
}
BENCHMARK(Bootstrap30Quotes)->Arg(zep::LinearInterpolation)->Arg(zep::CubicInterpolation)->Unit(benchmark::kMicrosecond);

// One quote bumped by a basis point and back, as a risk run does quote after quote: the argument
// is the quote's place in maturity order (0 the first deposit, 29 the 80-year swap).
void Requote30Quotes(benchmark::State& state) {
    zep::CurveBootstrap bootstrap(zep::Date(std::string("2024-01-15")), ThirtyQuotes(), zep::BootstrapConventions{},
                                  zep::Calendar::Shared());
    const auto index = static_cast<std::size_t>(state.range(0));
    const double rate = bootstrap.Quotes()[index].rate;
    bool bumped = false;
    for (auto _ : state) {
        bumped = !bumped;
        bootstrap.Requote(index, bumped ? rate + 1e-4 : rate);
        benchmark::DoNotOptimize(bootstrap.Curve().get());
    }
}
BENCHMARK(Requote30Quotes)->Arg(0)->Arg(15)->Arg(29)->Unit(benchmark::kMicrosecond);

}  // namespace
