#include <benchmark/benchmark.h>

#include <array>

#include "lum-time/Calendar.hpp"
#include "lum-time/DayCounter.hpp"

namespace {

using zep::Calendar;
using zep::Date;

// Dates spread over six years so that the holiday search does not always hit the same entry.
std::array<Date, 64> SampleDates() {
    std::array<Date, 64> dates;
    for (std::size_t i = 0; i < dates.size(); ++i)
        dates[i] = Date(static_cast<std::int32_t>(Date(2, 1, 2024).SerialNumber() + i * 37));
    return dates;
}

void IsBusinessDayCachedCentres(benchmark::State& state) {
    const Calendar& calendar = Calendar::Shared();
    const auto dates = SampleDates();
    calendar.IsBusinessDay(dates[0], "LON+NYC");  // builds the merged list once
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(calendar.IsBusinessDay(dates[i++ & 63], "LON+NYC"));
}
BENCHMARK(IsBusinessDayCachedCentres);

void AdjustModifiedFollowing(benchmark::State& state) {
    const Calendar& calendar = Calendar::Shared();
    const auto dates = SampleDates();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(calendar.Adjust(dates[i++ & 63], zep::ModifiedFollowing, "TARGET"));
}
BENCHMARK(AdjustModifiedFollowing);

void YearFraction(benchmark::State& state) {
    const zep::DayCounter counter(static_cast<std::int32_t>(state.range(0)));
    const auto dates = SampleDates();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(counter.YearFraction(dates[i & 63], dates[(i + 17) & 63]));
        ++i;
    }
    state.SetLabel(counter.ToString());
}
BENCHMARK(YearFraction)->Arg(zep::Act360)->Arg(zep::Act365Fixed)->Arg(zep::ActActISDA)
    ->Arg(zep::Thirty360)->Arg(zep::ThirtyE360ISDA)->Arg(zep::ThirtyEPlus360)->Arg(zep::ThirtyU360);

// A calendar built from scratch: the file search, reading and parsing every record.
void LoadShippedHolidayFile(benchmark::State& state) {
    for (auto _ : state) {
        const Calendar calendar;
        benchmark::DoNotOptimize(&calendar);
    }
}
BENCHMARK(LoadShippedHolidayFile)->Unit(benchmark::kMillisecond);

}  // namespace
