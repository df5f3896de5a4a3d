#include "lum-monte-carlo/SimulationGrid.hpp"

#include <algorithm>

#include "lum-auxiliary/Error.hpp"

namespace zep {

SimulationGrid BuildSimulationGrid(const std::vector<std::int32_t>& eventDays, double dayBasis,
                                   std::int32_t maxStepDays) {
    ZEP_REQUIRE(eventDays.size() <= kMaxObservationDays,
                "The supported maxium oberservation days is 1098!");
    std::vector<std::int32_t> days(eventDays.size());
    std::transform(eventDays.begin(), eventDays.end(), days.begin(),
                   [](std::int32_t d) { return std::max(d, 0); });

    std::vector<std::int32_t> eventSteps;
    for (std::int32_t d : days)
        if (d > 0) eventSteps.push_back(d);
    std::sort(eventSteps.begin(), eventSteps.end());
    eventSteps.erase(std::unique(eventSteps.begin(), eventSteps.end()), eventSteps.end());

    std::vector<std::int32_t> stepDays;
    std::int32_t previous = 0;
    for (std::int32_t d : eventSteps) {
        if (maxStepDays > 0) {
            // Equal sub-steps of at most maxStepDays whole days up to the event.
            const std::int32_t pieces = (d - previous + maxStepDays - 1) / maxStepDays;
            for (std::int32_t k = 1; k < pieces; ++k)
                stepDays.push_back(previous + static_cast<std::int32_t>(
                                                  static_cast<std::int64_t>(d - previous) * k / pieces));
        }
        stepDays.push_back(d);
        previous = d;
    }

    SimulationGrid grid;
    grid.times.reserve(stepDays.size());
    for (std::int32_t d : stepDays) grid.times.push_back(d / dayBasis);
    for (std::int32_t d : days) {
        const auto found = std::lower_bound(stepDays.begin(), stepDays.end(), d);
        grid.eventStep.push_back(d == 0 ? -1 : static_cast<std::int32_t>(found - stepDays.begin()));
        grid.eventTimes.push_back(d / dayBasis);
    }
    return grid;
}

}  // namespace zep
