#include "MDigitalOption.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MDigitalOption::MDigitalOption(int buySell, int digitalType, double payout, double strike, double spot,
                               const DateInput& referenceDate, const DateInput& expiryDate,
                               const DateInput& deliveryDate, double rd, double rf,
                               const VolatilityInput& volatility, const zep::DayCounter& dayCounter)
    : MWrapper(Guarded("MDigitalOption::MDigitalOption", [&] {
          zep::DigitalOption::Terms terms;
          terms.buySell = buySell;
          terms.digitalType = digitalType;
          terms.payout = payout;
          terms.strike = strike;
          terms.referenceDate = referenceDate.Value();
          terms.expiryDate = expiryDate.Value();
          terms.deliveryDate = deliveryDate.Value();
          terms.dayCounter = dayCounter;
          return boost::make_shared<zep::DigitalOption>(terms, spot, rd, rf, volatility.Source());
      })) {}

double MDigitalOption::Price(int method) const { return ZEP_M_OPERATION(MDigitalOption, Price, method); }
double MDigitalOption::PV(int method) const { return ZEP_M_OPERATION(MDigitalOption, PV, method); }
double MDigitalOption::Delta() const { return ZEP_M_OPERATION(MDigitalOption, Delta); }
double MDigitalOption::Gamma() const { return ZEP_M_OPERATION(MDigitalOption, Gamma); }
double MDigitalOption::Vega() const { return ZEP_M_OPERATION(MDigitalOption, Vega); }
double MDigitalOption::Theta() const { return ZEP_M_OPERATION(MDigitalOption, Theta); }
double MDigitalOption::Rho() const { return ZEP_M_OPERATION(MDigitalOption, Rho); }
double MDigitalOption::GetVolatility() const { return ZEP_M_OPERATION(MDigitalOption, GetVolatility); }

}  // namespace zep::python
