// The payoff script language as the simulator's payoff: parses and prepares one script per
// event date and evaluates the prepared product on each simulated path, with sharp logic for
// prices and smoothed logic for sensitivities.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lum-monte-carlo/PathPayoff.hpp"

namespace zep {

std::shared_ptr<const PathPayoff> CompileScriptPayoff(const std::vector<std::string>& eventScripts);

}  // namespace zep
