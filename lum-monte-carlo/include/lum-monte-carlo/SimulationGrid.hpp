// The time grid of a simulation: the event dates as year fractions from the valuation date
// (floored at 0: a past event sees today's spot) and the steps the model takes between them:
// one step per distinct event day, with extra days inserted so that no step is longer than
// `maxStepDays` (0: no limit; 1: daily steps).
#pragma once

#include <cstdint>
#include <vector>

namespace zep {

struct SimulationGrid {
    std::vector<double> times;               // step end times in years, increasing, all > 0
    std::vector<std::int32_t> eventStep;     // per event: the step ending on it, -1 for today
    std::vector<double> eventTimes;          // per event: its year fraction

    std::size_t Steps() const { return times.size(); }
};

// At most this many observation (event) dates per product.
inline constexpr std::size_t kMaxObservationDays = 1098;

// `eventDays`: each event date minus the valuation date, in days, in date order.
SimulationGrid BuildSimulationGrid(const std::vector<std::int32_t>& eventDays, double dayBasis,
                                   std::int32_t maxStepDays);

}  // namespace zep
