// Gathers, from a scripted product, everything its pricing report shows: the base pricing with
// standard errors, a half-size pricing for convergence, and a recorded sample of paths for the
// path charts, spot statistics and the three paths shown variable by variable.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lum-monte-carlo/ScriptReportData.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {

// At most this many paths are recorded for the statistics and the shown paths.
inline constexpr std::int64_t kReportRecordedPaths = 4000;

// The shown paths are those with the lowest, the median and the highest final spot among the
// recorded ones, so the report shows the spread of outcomes whatever the thread split.
ScriptReportData CollectReportData(const XScriptStructure& product, const std::string& productName,
                                   std::vector<ScriptReportData::Level> levels,
                                   std::vector<std::pair<std::string, double>> greeks);

}  // namespace zep
