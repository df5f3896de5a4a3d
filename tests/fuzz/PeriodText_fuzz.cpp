// Tenor texts ("3M", "-1Y", "O/N", ...): a text the parser accepts keeps its spelling, prints in
// the canonical form <length><unit> and parses back to the same period; it moves a date or
// fails in the library's way, and it never is both less and greater than another tenor.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-time/Period.hpp"

namespace {

const zep::Period kOtherTenors[] = {zep::Period(0, zep::Days),   zep::Period(1, zep::Days),
                                    zep::Period(-7, zep::Days),  zep::Period(2, zep::Weeks),
                                    zep::Period(1, zep::Months), zep::Period(-3, zep::Months),
                                    zep::Period(12, zep::Months), zep::Period(1, zep::Years)};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto period = zep::fuzz::Attempt([&] { return zep::Period(text); });
    if (!period) return 0;
    ZEP_FUZZ_REQUIRE(period->Text() == text, "'" + text + "' is kept as '" + period->Text() + "'");

    const std::string printed = zep::Period(period->Length(), period->Units()).Text();
    const zep::Period reparsed(printed);
    ZEP_FUZZ_REQUIRE(reparsed.Length() == period->Length() && reparsed.Units() == period->Units(),
                     "'" + text + "' prints as '" + printed + "', which parses to another period");

    zep::fuzz::Attempt([&] { (void)(zep::Date(15, 6, 2024) + *period); });
    for (const zep::Period& other : kOtherTenors) {
        const auto less = zep::fuzz::Attempt([&] { return *period < other; });
        const auto greater = zep::fuzz::Attempt([&] { return other < *period; });
        ZEP_FUZZ_REQUIRE(!(less && greater && *less && *greater),
                         "'" + text + "' is both less and greater than " + other.Text());
    }
    return 0;
}
