// The trading-system holiday export (a header line, then "centre,DD/MM/YYYY[,description]"
// records): what loads is a consistent calendar (HolidayFiles.hpp).
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "HolidayFiles.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto calendar = zep::fuzz::LoadedCalendar(text, zep::fuzz::HolidayFormat::Export))
        zep::fuzz::RequireConsistent(*calendar);
    return 0;
}
