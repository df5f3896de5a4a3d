// The generated sections of the scripted product report, by section key.
#pragma once

#include <ctime>
#include <map>
#include <string>

#include "lum-monte-carlo/ScriptReportData.hpp"

namespace zep::detail {

std::map<std::string, std::string> ReportSections(const ScriptReportData& data, std::time_t reportTime);

}  // namespace zep::detail
