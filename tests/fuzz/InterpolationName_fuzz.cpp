// Interpolation and extrapolation method names as market files spell them: an accepted name
// prints as its canonical name, which reads back as the same method; an interpolation of a
// small discount curve with the method evaluates or fails in the library's way.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-auxiliary/Interpolation.hpp"

namespace {

void Evaluate(zep::InterpolationMethod method, zep::ExtrapolationMethod extrapolation) {
    zep::fuzz::Attempt([&] {
        const zep::Interpolation<double, double, double> curve({0.5, 1.0, 2.0, 5.0}, {0.99, 0.98, 0.95, 0.9},
                                                               method, extrapolation);
        for (const double t : {0.1, 0.5, 1.5, 5.0, 7.0}) (void)curve.Evaluate(t);
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (const auto method = zep::fuzz::Attempt([&] { return zep::stringToInterpolationMethod(text); })) {
        const std::string name = zep::InterpolationMethodToString(*method);
        ZEP_FUZZ_REQUIRE(zep::stringToInterpolationMethod(name) == *method,
                         "the name '" + name + "' of '" + text + "' reads back as another method");
        Evaluate(*method, zep::FlatExtrapolation);
    }
    if (const auto extrapolation = zep::fuzz::Attempt([&] { return zep::stringToExtrapolationMethod(text); })) {
        const std::string name = zep::ExtrapolationMethodToString(*extrapolation);
        ZEP_FUZZ_REQUIRE(zep::stringToExtrapolationMethod(name) == *extrapolation,
                         "the name '" + name + "' of '" + text + "' reads back as another extrapolation");
        Evaluate(zep::LinearInterpolation, *extrapolation);
    }
    return 0;
}
