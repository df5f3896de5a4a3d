// A European option on a forward rate, valued per unit of annuity (undiscounted): the building
// block of caplets, floorlets and swaptions. Three quotes of the volatility are in use: Black's
// lognormal one (forward and strike must be positive), the shifted lognormal one (forward + shift
// and strike + shift must be positive, which admits negative rates down to -shift) and Bachelier's
// normal one, quoted in rate units, which admits any forward.
#pragma once

#include <cstdint>
#include <functional>

namespace zep {

enum class RateVolatilityModel : std::int32_t { Black = 0, ShiftedBlack = 1, Bachelier = 2 };

struct RateVolatility {
    RateVolatilityModel model = RateVolatilityModel::Black;
    double volatility = 0.0;
    double shift = 0.0;  // shifted lognormal only; Black is the shift 0
};

// "BLACK", "SHIFTEDBLACK" (or "SHIFTED") and "BACHELIER" (or "NORMAL"), any case.
RateVolatilityModel RateVolatilityModelOf(const char* name);
// The first of those names.
const char* RateVolatilityModelName(RateVolatilityModel model);

// The call (max(F - K, 0)) or put value at expiry `expiry` years, per unit annuity.
double ForwardOptionValue(bool isCall, double forward, double strike, double expiry, const RateVolatility& volatility);

// The volatility under `model` (with its shift) at which the option is worth `value`; fails
// naming the solver when the value lies outside the no-arbitrage bounds or no root is found.
double ImpliedForwardVolatility(bool isCall, double forward, double strike, double expiry, double value,
                                RateVolatilityModel model, double shift = 0.0);

// The volatility at which `valueAt`, a value rising with the volatility (a strip of options), reaches
// `target`; `what` names the instrument in the failure.
double SolveImpliedVolatility(const std::function<double(double)>& valueAt, double target, RateVolatilityModel model,
                              const char* what);

}  // namespace zep
