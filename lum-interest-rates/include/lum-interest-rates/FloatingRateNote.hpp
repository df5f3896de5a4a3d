// A floating-rate note: term-rate coupons (index + quoted margin) on the face value, repaid at
// maturity. Its discount margin is the continuous spread over the discount curve's zero rates at
// which the projected coupons and the redemption discount to the dirty price; the projection
// curve is not shifted.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/Leg.hpp"

namespace zep {

class FloatingRateNote {
public:
    // The leg's notional is the face value; its spread is the quoted margin.
    FloatingRateNote(const Schedule& schedule, LegTerms terms, const Calendar& calendar);

    // Dirty value per 100 of face of the flows after the discount curve's reference date.
    double PV(const LegMarket& market) const;
    double DiscountMargin(double dirtyPrice, const LegMarket& market) const;
    std::vector<CashFlow> CashFlows(const LegMarket& market) const;
    std::string Describe() const;

private:
    Leg m_leg;
};

}  // namespace zep
