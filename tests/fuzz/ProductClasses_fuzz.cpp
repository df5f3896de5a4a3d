// Term sheets of the product classes (AutoCall, Snowball, TargetRedemptionForward, AsianPayoff),
// JSON or YAML, booked in a fixed equity market. A definition the loader accepts is consistent:
// the product it books builds, describes itself, and its script listing names its type.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "ProductChecks.hpp"
#include "lum-monte-carlo/products/ProductLoader.hpp"

namespace {

const std::string kMarket = R"({"valuation_date": "2024-01-02",
  "market": {"spot": 100.0, "volatility": 0.22, "rate1": 0.03, "rate2": 0.015},
  "model": {"type": "BlackScholes"}, "simulation": {"paths": 1000, "seed": 1}})";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 8192) return 0;  // a term sheet is a page, not a book
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto booked = zep::fuzz::Attempt([&] { return zep::BookProductFromText(text, kMarket); });
    if (!booked || !booked->product) return 0;
    zep::fuzz::RequireDescribed(booked->inputs);
    const auto listing = zep::fuzz::Attempt([&] { return booked->Script(); });
    ZEP_FUZZ_REQUIRE(listing.has_value(), "a booked " + booked->product->TypeName() + " cannot list its script");
    return 0;
}
