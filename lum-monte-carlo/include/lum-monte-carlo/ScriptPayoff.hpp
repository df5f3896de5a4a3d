// The payoff script language as the simulator's payoff: parses and prepares one script per
// event date and evaluates the prepared product on each simulated path, with sharp logic for
// prices and smoothed logic for sensitivities.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lum-monte-carlo/PathPayoff.hpp"
#include "lum-time/Date.hpp"

namespace zep {

// Smoothed comparisons without their own width use kDefaultFuzzyEps: scripts that compare
// performances (spot / initial) get a 1% band; scripts comparing levels should give ";eps".
std::shared_ptr<const PathPayoff> CompileScriptPayoff(const std::vector<Date>& eventDates,
                                                      const std::vector<std::string>& eventScripts);

}  // namespace zep
