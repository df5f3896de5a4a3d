// A curve bootstrapped from market quotes (RateQuote.hpp), pillar by pillar: each quote, given in
// maturity order (a quote maturing on or before the one listed ahead of it is refused), fixes the discount factor at its maturity so that the instrument reprices
// exactly on the curve built so far, the later pillars held at the same zero rate (solved by
// Brent's method on the pillar's zero rate, so that a non-local interpolation between the
// pillars is honoured too). Given a discount curve, the curve built is a projection curve: it
// gives the floating legs' forwards while the given curve discounts (OIS discounting).
//
// The trial curve is one curve whose newest pillars change in place; with a local interpolation
// (flat, linear, log-linear) the flows on or before the previous pillar are summed once per
// pillar, not once per trial. Since a pillar depends only on the quotes before it, changing one
// quote re-solves from its pillar on (and fits globally again when the interpolation is not local).
#pragma once

#include <optional>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/RateQuote.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace zep {

namespace detail {
struct QuoteFlows;
}

class CurveBootstrap {
public:
    CurveBootstrap(const Date& referenceDate, std::vector<RateQuote> quotes, const BootstrapConventions& conventions,
                   const Calendar& calendar, boost::shared_ptr<const YieldCurve> discountCurve = nullptr);
    ~CurveBootstrap();

    const boost::shared_ptr<YieldCurve>& Curve() const { return m_curve; }
    // A new rate for the quote at `index` (in the order of Quotes()): the pillars from its
    // own on are solved again and Curve() is a new curve; a curve handed out before is unchanged.
    // On failure nothing changes.
    void Requote(std::size_t index, double rate);
    // Each quote in its own terms (a rate, a future's price) on the finished curve, in the order
    // of Quotes().
    std::vector<double> ImpliedQuotes() const;
    const std::vector<RateQuote>& Quotes() const { return m_quotes; }
    const std::vector<Date>& Pillars() const { return m_pillars; }

private:
    double SolvedUpTo(std::size_t pillar) const;
    void SolvePillar(std::size_t pillar, double guess);
    void SetTrialRates(const std::vector<double>& zeroRates, std::size_t fromPillar);
    void FitGlobally();
    void PublishCurve();

    Date m_referenceDate;
    Date m_spotDate;
    std::vector<RateQuote> m_quotes;
    BootstrapConventions m_conventions;
    const Calendar& m_calendar;
    boost::shared_ptr<const YieldCurve> m_discountCurve;
    std::vector<Date> m_pillars;
    std::vector<detail::QuoteFlows> m_flows;
    std::vector<double> m_zeroRates;  // continuous, one per pillar
    bool m_localInterpolation = false;
    std::optional<YieldCurve> m_trial;  // every pillar; the ones not yet solved at the last rate tried
    boost::shared_ptr<YieldCurve> m_curve;
};

}  // namespace zep
