// A fixed-rate bond its issuer may redeem early: on each call date, at that date's clean call
// price plus the interest accrued to it. On a Hull-White tree the issuer calls wherever the bond
// is worth more to the holder than the call pays, so the callable is worth at most its
// non-callable twin. The option-adjusted spread (OAS) is the constant added to every short rate
// of the tree, continuously compounded, at which the model price meets a quoted price.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-interest-rates/HullWhiteSwap.hpp"
#include "lum-interest-rates/HullWhiteTree.hpp"

namespace zep {

class CallableBond {
public:
    // The coupons and redemption are the fixed side of `coupons` (strike the coupon rate,
    // notional the face); call times in years, each after today and before maturity, with clean
    // call prices in the face's units.
    CallableBond(const HullWhite& model, HullWhiteSwap coupons, std::vector<double> callTimes,
                 std::vector<double> callPrices, std::size_t steps = 200);

    // Prices in the face's units, the flows after today discounted on the tree at spread `oas`.
    double DirtyPrice(double oas = 0.0) const;
    double CleanPrice(double oas = 0.0) const { return DirtyPrice(oas) - AccruedAt(0.0); }
    // The same bond without its calls, on the same tree.
    double StraightCleanPrice(double oas = 0.0) const;
    // The spread at which CleanPrice meets `cleanPrice`; fails, naming the price, when none in
    // [-100%, 100%] does.
    double OAS(double cleanPrice) const;
    // Coupon interest accrued at time t in the period running over it, linear in time.
    double AccruedAt(double t) const;

private:
    double Induce(double oas, bool callable) const;

    HullWhiteSwap m_coupons;
    std::vector<double> m_callTimes, m_callPrices;
    HullWhiteTree m_tree;
    std::vector<std::size_t> m_paymentLevels, m_callLevels;  // per period paid after today, per call
    std::size_t m_firstPaid;                                 // the first period paid after today
};

}  // namespace zep
