// The swap a Hull-White swaption exercises into, on the model's time axis. Exercised at time e,
// it runs over the fixed periods that start at or after e: a payer receives the floating leg,
// worth the notional at the first of those starts (one curve projects and discounts), and pays
// strike * accrual * notional on each period and the notional back at the end.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-interest-rates/HullWhite.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

struct HullWhiteSwap {
    std::vector<double> starts;    // accrual start of each fixed period, years
    std::vector<double> payments;  // its payment time
    std::vector<double> accruals;  // its year fraction
    double strike = 0.0;
    double notional = 1.0;
    bool isPayer = true;

    // Fails unless the periods are ordered, paid after they start and the figures finite.
    void Validate() const;
    // The first period starting at or after `exerciseTime` (a day's tolerance); fails when none does.
    std::size_t FirstPeriodFrom(double exerciseTime) const;
    // What the fixed side pays at payments[i]: the coupon, and the notional with the last one.
    double FixedAmount(std::size_t period) const;
};

// The fixed side of `schedule` on the curve's time axis (its day counter from its reference date).
HullWhiteSwap SwapOnCurve(const YieldCurve& curve, const Schedule& schedule, double strike, double notional,
                          bool isPayer);

// The swap's value at an exercise time as a function of the model factor x there: the start
// bond and each fixed payment's bond, each weight * exp(-slope x), combined with their amounts.
class SwapExerciseValue {
public:
    SwapExerciseValue(const HullWhite& model, const HullWhiteSwap& swap, double exerciseTime);

    // The holder's value of entering the swap in state x (payer or receiver side).
    double operator()(double x) const;
    // The par rate of the swap in state x: the fixed rate at which it would be worth zero.
    double ParRate(double x) const;
    // The strikes of Jamshidian's decomposition: the bond prices, in units of the start bond,
    // at the state where the swap is worth zero; fails when no state is.
    std::vector<double> BreakEvenBondRatios() const;
    double StartTime() const { return m_startTime; }
    const std::vector<double>& PaymentTimes() const { return m_paymentTimes; }
    const std::vector<double>& Amounts() const { return m_amounts; }

private:
    double m_startTime;
    double m_sign;               // +1 payer, -1 receiver
    double m_notional;
    double m_startWeight, m_startSlope;  // the start bond: weight * exp(-slope x)
    std::vector<double> m_paymentTimes, m_amounts, m_accruals;
    std::vector<double> m_weights, m_slopes;  // each payment's bond, likewise
};

// A European swaption in closed form (Jamshidian): the swap's break-even state splits the option
// on the coupon bond into options on each zero-coupon bond. Needs a non-negative strike.
double JamshidianSwaption(const HullWhite& model, const HullWhiteSwap& swap, double expiry);

}  // namespace zep
