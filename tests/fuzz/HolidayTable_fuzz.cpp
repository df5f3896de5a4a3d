// The holiday table ("CALENDAR_C;HOLIDAY_D;GLOBAL_F" and "code;YYYYMMDD;Y|N" records), the
// format of the shipped data/Holidays.txt: what loads is a consistent calendar (HolidayFiles.hpp).
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "HolidayFiles.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto calendar = zep::fuzz::LoadedCalendar(text, zep::fuzz::HolidayFormat::Table))
        zep::fuzz::RequireConsistent(*calendar);
    return 0;
}
