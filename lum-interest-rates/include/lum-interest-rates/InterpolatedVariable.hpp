// The quantity a curve stores at each pillar and interpolates in time: a zero rate in some
// convention, a discount factor, or (for other curve kinds) a volatility, variance or index.
#pragma once

#include <cstdint>
#include <string>

namespace zep {

enum InterpolatedVariable : std::int32_t {
    AnnualZeroRates = -1,  // yield curves only; has no text name
    SimpleZeroRates = 0,
    ContinuousZeroRates = 1,
    DiscountFactors = 2,
    HazardRates = 3,
    NoDefaultProbability = 4,
    ContinuousZeroRateSpreads = 5,
    YieldVols = 6,
    PriceVols = 7,
    TotalYieldVariance = 8,
    TotalPriceVariance = 9,
    OvernightRates = 10,
    NormalisedYieldVol = 11,
    NormalisedPriceVol = 12,
    YieldVolPtsPerDay = 13,
    PriceVolPtsPerDay = 14,
    SimpleInflationRate = 15,
    SimpleInflationRateTime = 16,
    ContinuousInflationRate = 17,
    ContinuousInflationRateTime = 18,
    InflationIndex = 19,
    FxForwardPoints = 20,
};

std::string InterpolatedVariableToString(std::int32_t variable);
// Case-insensitive; also accepts the decimal code.
InterpolatedVariable stringToInterpolatedVariable(const std::string& text);

}  // namespace zep
