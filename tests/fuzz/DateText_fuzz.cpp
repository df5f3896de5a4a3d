// Date texts as market files and users write them (ISO, DD/MM/YYYY, YYYYMMDD, DDMonYY, ...):
// a text the parser accepts names one date, which prints as DD/MM/YYYY and parses back to
// itself, and whose day, month and year build the same date again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-time/Date.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto date = zep::fuzz::Attempt([&] { return zep::Date(text); });
    if (!date) return 0;
    if (date->IsNull()) {
        ZEP_FUZZ_REQUIRE(text.empty(), "only the empty text is the null date");
        return 0;
    }
    const std::string printed = date->ToString();
    ZEP_FUZZ_REQUIRE(zep::Date(std::string_view(printed)) == *date,
                     "'" + std::string(text) + "' prints as " + printed + ", which parses to another date");
    ZEP_FUZZ_REQUIRE(zep::Date(date->DayOfMonth(), date->Month(), date->Year()) == *date,
                     "the day, month and year of " + printed + " build another date");
    return 0;
}
