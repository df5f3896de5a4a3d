// A cap or floor: a strip of caplets (calls on the period's forward rate) or floorlets (puts),
// one per period of a schedule. Each pays notional * accrual * max(+-(L - K), 0) on its payment
// date, L being the simple rate of the projection curve over the period's accrual dates, fixed on
// its fixing date. A caplet whose fixing date is not after the discount curve's reference date
// has no optionality left and counts at its intrinsic value; one paid by then counts nothing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-closed-form/ForwardOption.hpp"
#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

enum class CapFloorKind : std::int32_t { Cap = 0, Floor = 1 };

// One caplet or floorlet as valued: its forward, expiry in years (Act/365F from the discount
// curve's reference date), discounted accrual and value.
struct CapletValue {
    Date fixing, payment;
    double forward = 0.0, expiry = 0.0, annuity = 0.0, value = 0.0;
};

class CapFloor {
public:
    CapFloor(const Schedule& schedule, CapFloorKind kind, double strike, double notional);

    double PV(const YieldCurve& discount, const YieldCurve& projection, const RateVolatility& volatility) const;
    std::vector<CapletValue> Caplets(const YieldCurve& discount, const YieldCurve& projection,
                                     const RateVolatility& volatility) const;
    // One row per caplet still to pay: its forward rate as the rate, its option value at the
    // payment date as the amount (the present value over the discount factor).
    std::vector<CashFlow> CashFlows(const YieldCurve& discount, const YieldCurve& projection,
                                    const RateVolatility& volatility) const;
    // The flat volatility under `model` at which the whole strip is worth `price`.
    double ImpliedVolatility(double price, const YieldCurve& discount, const YieldCurve& projection,
                             RateVolatilityModel model, double shift = 0.0) const;
    CapFloorKind Kind() const { return m_kind; }
    double Strike() const { return m_strike; }
    std::string Describe() const;

private:
    template <class Visit>
    void ForEachCaplet(const YieldCurve& discount, const YieldCurve& projection, Visit&& visit) const;

    std::vector<SchedulePeriod> m_periods;
    CapFloorKind m_kind;
    double m_strike;
    double m_notional;
};

}  // namespace zep
