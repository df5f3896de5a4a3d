// The Python face of the Hull-White one-factor model on a discount curve: bond prices and bond
// options in the model's years (the curve's day counter from its reference date), European
// swaptions in closed form, and the model fitted to at-the-money swaption volatilities.
// Failures read "MHullWhite::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/HullWhiteSwap.hpp"

namespace zep::python {

class MHullWhite : public MWrapper<zep::HullWhite> {
public:
    MHullWhite(boost::shared_ptr<zep::YieldCurve> curve, double meanReversion, double sigma);
    // Sigma (and the mean reversion when fitMeanReversion) fitted to at-the-money payers expiring
    // on expiryDates into swaps from there to endDates, quoted at `volatilities` under `model`.
    static MHullWhite Calibrate(boost::shared_ptr<zep::YieldCurve> curve, const std::vector<DateInput>& expiryDates,
                                const std::vector<DateInput>& endDates, const std::vector<double>& volatilities,
                                const std::string& model = "BACHELIER", double shift = 0.0,
                                double meanReversion = 0.03, bool fitMeanReversion = false,
                                const std::string& fixedTenor = "1Y",
                                const zep::DayCounter& fixedDayCounter = zep::DayCounter(zep::Thirty360),
                                const std::string& centres = "TARGET");

    double MeanReversion() const;
    double Sigma() const;
    // Root mean square of model / quoted price - 1 over the calibration swaptions; 0 when given.
    double CalibrationError() const;
    double Time(const DateInput& date) const;
    // P(t, T) when the model factor x (the short rate less its fitted path) stands at x at t.
    double DiscountBond(double t, double T, double x = 0.0) const;
    double DiscountBondOption(const std::string& callPut, double strike, double expiry, double bondMaturity) const;
    // A European swaption exercising on expiryDate into the swap from startDate to endDate.
    double EuropeanSwaption(const std::string& payerReceiver, double notional, double strike,
                            const DateInput& expiryDate, const DateInput& startDate, const DateInput& endDate,
                            const std::string& fixedTenor = "1Y",
                            const zep::DayCounter& fixedDayCounter = zep::DayCounter(zep::Thirty360),
                            const std::string& centres = "TARGET") const;
    std::string Describe() const;

    // The model for the instruments priced on it; fails "not initialized!" like any operation.
    const zep::HullWhite& Model(const char* function) const { return Object(function); }

private:
    MHullWhite(boost::shared_ptr<zep::HullWhite> model, double calibrationError);

    double m_calibrationError = 0.0;
};

// The fixed side of a swap, as the Hull-White pricers read it, from dates and conventions.
zep::HullWhiteSwap HullWhiteSwapOf(const zep::YieldCurve& curve, const std::string& payerReceiver, double notional,
                                   double strike, const DateInput& startDate, const DateInput& endDate,
                                   const std::string& fixedTenor, const zep::DayCounter& fixedDayCounter,
                                   const std::string& centres);

}  // namespace zep::python
