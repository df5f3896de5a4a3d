// Where the holiday file is looked for when a calendar is built: ZEP_HOLIDAYS_PATH, then fixed
// directories relative to a search base, then the file a package installed.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zep::detail {

struct HolidayFileSearch {
    std::string base;                  // the base of the relative directories
    std::vector<std::string> tried;    // every path looked at, in order
    std::optional<std::string> found;  // the first that exists
};

HolidayFileSearch FindHolidayFile();

void SetHolidaySearchBase(const std::string& directory);
std::string HolidaySearchBase();
void SetPackagedHolidayFile(const std::string& path);
std::string PackagedHolidayFile();

}  // namespace zep::detail
