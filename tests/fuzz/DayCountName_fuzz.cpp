// Day count convention names (stringToConvention): an accepted name gives a known convention
// whose canonical name and decimal code both read back as it, and which counts a year fraction
// or fails in the library's way.
#include <cstddef>
#include <cstdint>
#include <string>

#include <boost/shared_ptr.hpp>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/DayCounter.hpp"

namespace {

// Act252 counts business days on its own calendar, so no holiday file is needed.
const boost::shared_ptr<const zep::Calendar> kExchangeCalendar(
    zep::Calendar::FromHolidays({{"SYB", {zep::Date(1, 5, 2024), zep::Date(25, 12, 2024)}}}).release());

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto code = zep::fuzz::Attempt([&] { return zep::stringToConvention(text); });
    if (!code) return 0;
    ZEP_FUZZ_REQUIRE(*code >= zep::NoConvention && *code <= zep::Act365Inclusive,
                     "'" + text + "' gives the unknown convention " + std::to_string(*code));

    const zep::DayCounter counter(*code, kExchangeCalendar);
    const std::string name = counter.ToString();
    ZEP_FUZZ_REQUIRE(zep::stringToConvention(name) == *code, "the name '" + name + "' of '" + text + "' reads back otherwise");
    ZEP_FUZZ_REQUIRE(zep::stringToConvention(std::to_string(*code)) == *code,
                     "the code of '" + text + "' reads back otherwise");

    zep::fuzz::Attempt([&] {
        (void)counter.YearFraction(zep::Date(31, 1, 2024), zep::Date(29, 2, 2028), zep::Date(31, 7, 2024),
                                   zep::Semiannual);
    });
    return 0;
}
