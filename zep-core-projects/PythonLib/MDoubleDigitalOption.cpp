#include "MDoubleDigitalOption.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MDoubleDigitalOption::MDoubleDigitalOption(const DateInput& referenceDate, const DateInput& expiryDate,
                                           const DateInput& deliveryDate, double lowBarrier, double highBarrier,
                                           double payout, double spot, double volatility, double rd, double rf,
                                           const zep::DayCounter& dayCounter)
    : MWrapper(Guarded("MDoubleDigitalOption::MDoubleDigitalOption", [&] {
          return boost::make_shared<zep::DoubleDigitalOption>(referenceDate.Value(), expiryDate.Value(),
                                                              deliveryDate.Value(), lowBarrier, highBarrier, payout,
                                                              spot, volatility, rd, rf, dayCounter);
      })) {}

double MDoubleDigitalOption::Price(int method) const { return ZEP_M_OPERATION(MDoubleDigitalOption, Price, method); }
double MDoubleDigitalOption::GetTimeToExpiry() const {
    return ZEP_M_OPERATION(MDoubleDigitalOption, GetTimeToExpiry);
}
double MDoubleDigitalOption::GetTimeToDelivery() const {
    return ZEP_M_OPERATION(MDoubleDigitalOption, GetTimeToDelivery);
}

}  // namespace zep::python
