// The Python face of a caplet volatility strip: caps (or floors) of one strike from startDate to
// each of maturityDates, caplets every `tenor` fixing fixingLagDays business days before their
// periods, quoted at flat volatilities under BLACK, SHIFTEDBLACK or BACHELIER, stripped into one
// volatility per caplet. Failures read "MCapletVolatilityStrip::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/CapletVolatilityStrip.hpp"

namespace zep::python {

class MCapletVolatilityStrip : public MWrapper<zep::CapletVolatilityStrip> {
public:
    MCapletVolatilityStrip(const std::string& capFloor, double strike, const DateInput& startDate,
                           const std::vector<DateInput>& maturityDates, const std::vector<double>& flatVolatilities,
                           boost::shared_ptr<zep::YieldCurve> discountCurve,
                           boost::shared_ptr<zep::YieldCurve> projectionCurve, const std::string& model = "BLACK",
                           double shift = 0.0, const std::string& tenor = "3M",
                           const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360),
                           const std::string& centres = "TARGET", int fixingLagDays = 2);

    // Per caplet of the longest cap still to pay: its expiry in years (Act/365F) and volatility.
    std::vector<double> CapletExpiries() const;
    std::vector<double> CapletVolatilities() const;
    double Volatility(double expiry) const;
    // Each quoted cap, on a notional of 1, valued caplet by caplet at the stripped volatilities.
    std::vector<double> CapPVs() const;

private:
    std::optional<CurvePair> m_curves;
    std::vector<zep::CapFloor> m_caps;
};

}  // namespace zep::python
