#include "lum-monte-carlo/SimulationGrid.hpp"

#include <algorithm>

#include "lum-auxiliary/Error.hpp"

namespace zep {

SimulationGrid BuildSimulationGrid(const std::vector<std::int32_t>& eventDays, double dayBasis,
                                   bool dailySteps) {
    ZEP_REQUIRE(eventDays.size() <= kMaxObservationDays,
                "The supported maxium oberservation days is 1098!");
    std::vector<std::int32_t> days(eventDays.size());
    std::transform(eventDays.begin(), eventDays.end(), days.begin(),
                   [](std::int32_t d) { return std::max(d, 0); });

    std::vector<std::int32_t> stepDays;
    const std::int32_t lastDay = days.empty() ? 0 : *std::max_element(days.begin(), days.end());
    if (dailySteps) {
        for (std::int32_t d = 1; d <= lastDay; ++d) stepDays.push_back(d);
    } else {
        for (std::int32_t d : days)
            if (d > 0) stepDays.push_back(d);
        std::sort(stepDays.begin(), stepDays.end());
        stepDays.erase(std::unique(stepDays.begin(), stepDays.end()), stepDays.end());
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
