// Payment frequency texts (stringToFrequency): an accepted text gives a code that reads back as
// itself from its number, and, when the code has a name, from that name.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-time/Frequency.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto frequency = zep::fuzz::Attempt([&] { return zep::stringToFrequency(text); });
    if (!frequency) return 0;
    ZEP_FUZZ_REQUIRE(zep::longToFrequency(*frequency) == *frequency,
                     "the code of '" + text + "' reads back otherwise");
    if (const auto name = zep::fuzz::Attempt([&] { return zep::FrequencyToString(*frequency); }))
        ZEP_FUZZ_REQUIRE(zep::stringToFrequency(*name) == *frequency,
                         "the name '" + *name + "' of '" + text + "' reads back otherwise");
    return 0;
}
