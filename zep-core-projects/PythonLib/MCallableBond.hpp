// The Python face of a callable fixed-rate bond under Hull-White: coupons at couponRate every
// `tenor` from issueDate to maturityDate (accruing unadjusted, paid on the following business
// day), face 100, redeemable by the issuer on callDates at callPrices (clean, per 100) plus
// accrued interest; valued on a trinomial tree of about `steps` steps. Prices are per 100; an
// option-adjusted spread is a continuously compounded spread over every short rate.
// Failures read "MCallableBond::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include "MHullWhite.hpp"
#include "lum-interest-rates/CallableBond.hpp"

namespace zep::python {

class MCallableBond : public MWrapper<zep::CallableBond> {
public:
    MCallableBond(double couponRate, const DateInput& issueDate, const DateInput& maturityDate,
                  const std::vector<DateInput>& callDates, const std::vector<double>& callPrices,
                  const MHullWhite* model, int steps = 200, const std::string& tenor = "1Y",
                  const zep::DayCounter& dayCounter = zep::DayCounter(zep::Thirty360),
                  const std::string& centres = "TARGET");

    double CleanPrice(double oas = 0.0) const;
    double DirtyPrice(double oas = 0.0) const;
    double PV() const { return DirtyPrice(); }
    double NPV() const { return PV(); }
    // The same bond without its calls.
    double StraightCleanPrice(double oas = 0.0) const;
    // Interest accrued today, per 100.
    double AccruedAmount() const;
    // The option-adjusted spread at which the bond's clean price is `cleanPrice`.
    double OAS(double cleanPrice) const;
    std::string Describe() const;

private:
    std::string m_description;
};

}  // namespace zep::python
