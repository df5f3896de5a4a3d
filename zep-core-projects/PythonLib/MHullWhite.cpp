#include "MHullWhite.hpp"

#include <cmath>
#include <sstream>

#include <boost/make_shared.hpp>

#include "lum-interest-rates/HullWhiteCalibration.hpp"

namespace zep::python {

zep::HullWhiteSwap HullWhiteSwapOf(const zep::YieldCurve& curve, const std::string& payerReceiver, double notional,
                                   double strike, const DateInput& startDate, const DateInput& endDate,
                                   const std::string& fixedTenor, const zep::DayCounter& fixedDayCounter,
                                   const std::string& centres) {
    const bool isPayer = ChoiceOf(payerReceiver, {"PAYER", "RECEIVER"}, "swaption kind") == 0;
    return zep::SwapOnCurve(curve, MakeSchedule(startDate, endDate, {fixedTenor, fixedDayCounter, centres, 0, 0}),
                            strike, notional, isPayer);
}

namespace {

const zep::YieldCurve& CurveOf(const boost::shared_ptr<zep::YieldCurve>& curve) {
    ZEP_REQUIRE(curve, "the curve is None");
    return *curve;
}

}  // namespace

MHullWhite::MHullWhite(boost::shared_ptr<zep::YieldCurve> curve, double meanReversion, double sigma) {
    Guarded("MHullWhite::MHullWhite", [&] {
        CurveOf(curve);
        m_object = boost::make_shared<zep::HullWhite>(curve, meanReversion, sigma);
    });
}

MHullWhite::MHullWhite(boost::shared_ptr<zep::HullWhite> model, double calibrationError)
    : MWrapper(std::move(model)), m_calibrationError(calibrationError) {}

MHullWhite MHullWhite::Calibrate(boost::shared_ptr<zep::YieldCurve> curve, const std::vector<DateInput>& expiryDates,
                                 const std::vector<DateInput>& endDates, const std::vector<double>& volatilities,
                                 const std::string& model, double shift, double meanReversion, bool fitMeanReversion,
                                 const std::string& fixedTenor, const zep::DayCounter& fixedDayCounter,
                                 const std::string& centres) {
    return Guarded("MHullWhite::Calibrate", [&] {
        const zep::YieldCurve& onCurve = CurveOf(curve);
        ZEP_REQUIRE(expiryDates.size() == endDates.size() && expiryDates.size() == volatilities.size(),
                    "give as many expiry dates, end dates and volatilities");
        const zep::RateVolatilityModel quoted = zep::RateVolatilityModelOf(model.c_str());
        std::vector<zep::HullWhiteSwaptionQuote> quotes;
        for (std::size_t i = 0; i < expiryDates.size(); ++i) {
            const zep::HullWhiteSwap swap = HullWhiteSwapOf(onCurve, "PAYER", 1.0, 0.0, expiryDates[i], endDates[i],
                                                            fixedTenor, fixedDayCounter, centres);
            quotes.push_back(zep::AtTheMoneyQuote(onCurve, swap, zep::CurveTime(onCurve, expiryDates[i].Value()),
                                                  {quoted, volatilities[i], shift}));
        }
        const double sigmaGuess = 0.01;
        const zep::HullWhiteFit fit =
            zep::CalibrateHullWhite(curve, quotes, meanReversion, sigmaGuess, fitMeanReversion);
        return MHullWhite(boost::make_shared<zep::HullWhite>(fit.model), fit.rootMeanSquareError);
    });
}

double MHullWhite::MeanReversion() const { return ZEP_M_OPERATION(MHullWhite, MeanReversion); }
double MHullWhite::Sigma() const { return ZEP_M_OPERATION(MHullWhite, Sigma); }

double MHullWhite::CalibrationError() const {
    return Guarded("MHullWhite::CalibrationError", [&] {
        Object("zep::python::MHullWhite::CalibrationError");
        return m_calibrationError;
    });
}

double MHullWhite::Time(const DateInput& date) const {
    return Guarded("MHullWhite::Time", [&] { return Object("zep::python::MHullWhite::Time").Time(date.Value()); });
}

double MHullWhite::DiscountBond(double t, double T, double x) const {
    return Guarded("MHullWhite::DiscountBond", [&] {
        ZEP_REQUIRE(t >= 0.0 && T >= t && std::isfinite(T) && std::isfinite(x),
                    "the bond needs 0 <= t <= T and a finite factor");
        return Object("zep::python::MHullWhite::DiscountBond").DiscountBond(t, T, x);
    });
}

double MHullWhite::DiscountBondOption(const std::string& callPut, double strike, double expiry,
                                      double bondMaturity) const {
    return Guarded("MHullWhite::DiscountBondOption", [&] {
        const bool isCall = ChoiceOf(callPut, {"CALL", "PUT"}, "option kind") == 0;
        return Object("zep::python::MHullWhite::DiscountBondOption").DiscountBondOption(isCall, strike, expiry,
                                                                                          bondMaturity);
    });
}

double MHullWhite::EuropeanSwaption(const std::string& payerReceiver, double notional, double strike,
                                    const DateInput& expiryDate, const DateInput& startDate,
                                    const DateInput& endDate, const std::string& fixedTenor,
                                    const zep::DayCounter& fixedDayCounter, const std::string& centres) const {
    return Guarded("MHullWhite::EuropeanSwaption", [&] {
        const zep::HullWhite& model = Object("zep::python::MHullWhite::EuropeanSwaption");
        const zep::HullWhiteSwap swap = HullWhiteSwapOf(model.Curve(), payerReceiver, notional, strike, startDate,
                                                        endDate, fixedTenor, fixedDayCounter, centres);
        return zep::JamshidianSwaption(model, swap, model.Time(expiryDate.Value()));
    });
}

std::string MHullWhite::Describe() const {
    return Guarded("MHullWhite::Describe", [&] {
        const zep::HullWhite& model = Object("zep::python::MHullWhite::Describe");
        std::ostringstream text;
        text.precision(10);
        text << "Hull-White, mean reversion " << model.MeanReversion() << ", sigma " << model.Sigma() << ", curve "
             << model.Curve().ReferenceDate().ToString();
        return text.str();
    });
}

}  // namespace zep::python
