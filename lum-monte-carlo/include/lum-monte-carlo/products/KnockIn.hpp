// The knock-in of a note's capital protection: KI becomes 1 once the performance SPOT() / S0
// closes below the barrier. Monitored "continuous" (every weekday after the strike date up to
// the last observation, the daily closes) or "discrete" (on the observation dates only).
#pragma once

#include <string>
#include <vector>

#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

struct KnockIn {
    double barrier = 0.0;  // as a fraction of the initial level; 0: no knock-in
    std::string monitoring = "continuous";

    void Check(const std::string& type) const;
    bool Active() const { return barrier > 0.0; }
    // The checks of the daily closes; discrete monitoring adds its check to each observation
    // instead (`ObservationCheck`).
    std::vector<ProductEvent> DailyChecks(const Date& strikeDate, const Date& lastObservation) const;
    // Empty unless monitored on the observation dates.
    std::string ObservationCheck() const;
};

}  // namespace zep
