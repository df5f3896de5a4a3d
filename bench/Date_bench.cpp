#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include "lum-time/Date.hpp"
#include "lum-time/Period.hpp"

namespace {

void ParseIsoDateText(benchmark::State& state) {
    const std::array<std::string, 4> texts = {"2024-03-15", "1999-12-31", "2031-07-04", "2150-02-28"};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(zep::Date(std::string_view(texts[i++ & 3])).SerialNumber());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ParseIsoDateText);

void AddMonthsPeriod(benchmark::State& state) {
    const zep::Date start(31, 1, 2024);
    const zep::Period periods[] = {zep::Period(1, zep::Months), zep::Period(7, zep::Months),
                                   zep::Period(-13, zep::Months), zep::Period(25, zep::Months)};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize((start + periods[i++ & 3]).SerialNumber());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(AddMonthsPeriod);

}  // namespace
