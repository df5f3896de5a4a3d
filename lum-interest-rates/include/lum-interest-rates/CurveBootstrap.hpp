// A discount curve bootstrapped from market quotes, pillar by pillar: each quote, in maturity
// order, fixes the discount factor at its maturity so that the instrument reprices exactly on
// the curve built so far, the later pillars held at the same zero rate (solved by Brent's method
// on the pillar's zero rate, so that a non-local interpolation between the pillars is honoured
// too). The trial curve is one curve whose newest pillars change in place; with a local
// interpolation (flat, linear, log-linear) the flows on or before the previous pillar are summed
// once per pillar, not once per trial. Since a pillar depends only on the quotes before it,
// changing one quote re-solves from its pillar on.
//
// Instruments, all starting at the spot date (reference date + spotLagDays business days):
// - deposit "3M": DF(spot) / DF(end) = 1 + rate * tau(spot, end), tau by the deposit day count;
// - FRA with start "3M" and tenor "6M" (a 3x6): DF(start) / DF(end) = 1 + rate * tau;
// - par swap "5Y": rate * sum tau_i DF(pay_i) = DF(spot) - DF(maturity), the fixed leg on a
//   backward schedule of fixedTenor; the floating leg on the same curve is worth DF(spot) -
//   DF(maturity) whatever its frequency (one curve projects and discounts).
// End dates roll by the roll rule on the centres. The curve interpolates the chosen variable
// by the chosen method between the pillars.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/Period.hpp"

namespace zep {

enum class RateInstrument : std::int32_t { Deposit = 0, FRA = 1, Swap = 2 };

struct RateQuote {
    RateInstrument instrument = RateInstrument::Deposit;
    Period start;   // FRA only: from the spot date to the accrual start
    Period tenor;   // deposit and swap: from the spot date to maturity; FRA: to the accrual end
    double rate = 0.0;
};

struct BootstrapConventions {
    std::int32_t spotLagDays = 2;
    std::string centres = "TARGET";
    std::int32_t rollRule = ModifiedFollowing;
    DayCounter depositDayCounter = DayCounter(Act360);
    Period fixedTenor = Period(1, Years);
    DayCounter fixedDayCounter = DayCounter(Thirty360);
    DayCounter curveDayCounter = DayCounter(Act365Fixed);
    std::int32_t interpolatedVariable = ContinuousZeroRates;
    std::int32_t interpolationMethod = LinearInterpolation;
};

class CurveBootstrap {
public:
    CurveBootstrap(const Date& referenceDate, std::vector<RateQuote> quotes, const BootstrapConventions& conventions,
                   const Calendar& calendar);

    const boost::shared_ptr<YieldCurve>& Curve() const { return m_curve; }
    // A new rate for the quote at `index` (in the sorted order of Quotes()): the pillars from its
    // own on are solved again and Curve() is a new curve; a curve handed out before is unchanged.
    void Requote(std::size_t index, double rate);
    // The rate each quote implies on the finished curve, in the quotes' order after sorting.
    std::vector<double> ImpliedRates() const;
    const std::vector<RateQuote>& Quotes() const { return m_quotes; }
    const std::vector<Date>& Pillars() const { return m_pillars; }

private:
    // A quote's cash flows laid out once, as the curve's times of the dates the implied rate
    // reads off the curve.
    struct Flows {
        double start = 0.0;            // the spot date, or an FRA's accrual start
        double end = 0.0;              // the maturity (the last fixed payment of a swap)
        double accrual = 0.0;          // deposit and FRA: tau(start, end)
        std::vector<double> payments;  // swap: the fixed leg's payment dates
        std::vector<double> fractions;
    };
    // The part of a swap's annuity that the pillars already solved fix: the payments before
    // `firstOpen`.
    struct Settled {
        std::size_t firstOpen = 0;
        double annuity = 0.0;
    };
    Flows FlowsOf(const RateQuote& quote) const;
    double ImpliedRate(const RateQuote& quote, const Flows& flows, const YieldCurve& curve,
                       const Settled& settled) const;
    Date MaturityOf(const RateQuote& quote) const;
    Settled SettledBefore(std::size_t pillar) const;
    static std::size_t NodeOf(std::size_t pillar);
    void SolvePillar(std::size_t pillar, double guess);
    void PublishCurve();

    Date m_referenceDate;
    Date m_spotDate;
    std::vector<RateQuote> m_quotes;
    BootstrapConventions m_conventions;
    const Calendar& m_calendar;
    std::vector<Date> m_pillars;
    std::vector<Flows> m_flows;
    std::vector<double> m_zeroRates;  // continuous, one per pillar
    bool m_localInterpolation = false;
    std::optional<YieldCurve> m_trial;  // every pillar; the ones not yet solved at the last rate tried
    boost::shared_ptr<YieldCurve> m_curve;
};

}  // namespace zep
