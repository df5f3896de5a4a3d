// The cash flows of a scripted product: the present value it is expected to pay on each event
// date. The product is re-priced on the same paths (same seed and settings) with each date's
// payments to the price variable routed to a variable of that date, so the flows add up to the
// price.
#pragma once

#include <utility>
#include <vector>

#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {

// Dates that pay nothing in their script are left out. Raises when no script pays.
std::vector<std::pair<Date, double>> PresentValuesByDate(const XScriptInputs& inputs);

}  // namespace zep
