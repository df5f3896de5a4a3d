// The Python face of a bond future: a basket of fixed-rate bonds (coupon, issue and maturity per
// bond, all on one coupon tenor and day count) delivered on one date. Failures read
// "MBondFuture::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/BondFuture.hpp"

namespace zep::python {

class MBondFuture : public MWrapper<zep::BondFuture> {
public:
    MBondFuture(const DateInput& deliveryDate, const std::vector<double>& coupons,
                const std::vector<zep::python::DateInput>& issueDates,
                const std::vector<zep::python::DateInput>& maturityDates, double notionalCoupon = 0.06,
                const std::string& tenor = "1Y", const zep::DayCounter& dayCounter = zep::DayCounter(zep::ActActICMA));

    double ConversionFactor(int bond) const;
    double ImpliedRepo(int bond, double futuresPrice, double cleanPrice, const DateInput& settlement) const;
    int CheapestToDeliver(double futuresPrice, const std::vector<double>& cleanPrices, const DateInput& settlement) const;
};

}  // namespace zep::python
