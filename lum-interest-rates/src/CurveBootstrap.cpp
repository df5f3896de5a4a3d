#include "lum-interest-rates/CurveBootstrap.hpp"

#include <algorithm>
#include <cmath>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"
#include "lum-solvers/RootFinders.hpp"
#include "QuoteFlows.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

namespace {

// Interpolations whose value between two pillars reads only those two pillars.
bool IsLocal(std::int32_t interpolationMethod) {
    return interpolationMethod == FlatInterpolation || interpolationMethod == LinearInterpolation ||
           interpolationMethod == LinearXYInterpolation || interpolationMethod == LogLinearInterpolation;
}

// The trial curve's node of pillar i is i + 1, after the reference date's; the first pillar's
// rate also stands at the reference date.
std::size_t NodeOf(std::size_t pillar) { return pillar == 0 ? 0 : pillar + 1; }

}  // namespace

CurveBootstrap::CurveBootstrap(const Date& referenceDate, std::vector<RateQuote> quotes,
                               const BootstrapConventions& conventions, const Calendar& calendar,
                               boost::shared_ptr<const YieldCurve> discountCurve)
    : m_referenceDate(referenceDate),
      m_spotDate(AdvanceBusinessDays(calendar, referenceDate, conventions.spotLagDays, conventions.centres)),
      m_conventions(conventions),
      m_calendar(calendar),
      m_discountCurve(std::move(discountCurve)),
      m_localInterpolation(IsLocal(conventions.interpolationMethod)) {
    ZEP_REQUIRE(!quotes.empty(), "BootstrapYieldCurve: no quotes");
    const detail::QuoteSetting setting{referenceDate, m_spotDate, m_conventions, calendar, m_discountCurve.get()};
    const auto MaturityOf = [&](const RateQuote& quote) { return detail::MaturityOf(quote, setting); };
    for (const RateQuote& quote : quotes) {
        ZEP_REQUIRE(std::isfinite(quote.rate), "BootstrapYieldCurve: the " + Describe(quote) + " quote is not a number");
        ZEP_REQUIRE(quote.tenor.Length() > 0, "BootstrapYieldCurve: the " + Describe(quote) + " quote has no tenor");
    }
    // A quote table out of maturity order is most likely a mistyped tenor: refused, not sorted.
    m_quotes = std::move(quotes);
    for (std::size_t i = 0; i < m_quotes.size(); ++i) {
        const Date maturity = MaturityOf(m_quotes[i]);
        ZEP_REQUIRE(maturity > referenceDate, "BootstrapYieldCurve: the " + Describe(m_quotes[i]) + " quote matures on the reference date");
        if (i > 0 && maturity == m_pillars.back())
            ZEP_FAIL("BootstrapYieldCurve: the " + Describe(m_quotes[i]) + " quote matures on the date of the " +
                     Describe(m_quotes[i - 1]) + " quote");
        if (i > 0 && maturity < m_pillars.back())
            ZEP_FAIL("BootstrapYieldCurve: the " + Describe(m_quotes[i]) + " quote matures before the " +
                     Describe(m_quotes[i - 1]) + " quote listed ahead of it: quotes go in maturity order");
        m_pillars.push_back(maturity);
    }
    for (const RateQuote& quote : m_quotes) m_flows.push_back(detail::LayOutFlows(quote, setting));

    m_zeroRates.assign(m_quotes.size(), 0.01);
    m_trial.emplace(referenceDate, m_pillars, m_zeroRates, Continuous, conventions.curveDayCounter,
                    conventions.interpolatedVariable, conventions.interpolationMethod);
    // The first guess: a money-market rate of a few percent.
    for (std::size_t i = 0; i < m_quotes.size(); ++i) SolvePillar(i, i == 0 ? 0.03 : m_zeroRates[i - 1]);
    FitGlobally();
    PublishCurve();
}

CurveBootstrap::~CurveBootstrap() = default;

void CurveBootstrap::Requote(std::size_t index, double rate) {
    ZEP_REQUIRE(index < m_quotes.size(), "BootstrapYieldCurve: no quote at that index");
    const RateQuote& quote = m_quotes[index];
    ZEP_REQUIRE(std::isfinite(rate), "BootstrapYieldCurve: the " + Describe(quote) + " quote is not a number");
    const std::vector<double> solved = m_zeroRates;
    const double previous = quote.rate;
    m_quotes[index].rate = rate;
    try {
        for (std::size_t i = index; i < m_quotes.size(); ++i) SolvePillar(i, solved[i]);
        FitGlobally();
        PublishCurve();
    } catch (...) {
        // Back to the curve of the quotes before the change, whole.
        m_quotes[index].rate = previous;
        m_zeroRates = solved;
        SetTrialRates(solved, 0);
        throw;
    }
}

// Under a local interpolation the curve up to the previous pillar no longer moves.
double CurveBootstrap::SolvedUpTo(std::size_t pillar) const {
    return m_localInterpolation && pillar > 0 ? m_trial->Times()[NodeOf(pillar - 1)] : -1.0;
}

void CurveBootstrap::SolvePillar(std::size_t pillar, double guess) {
    const RateQuote& quote = m_quotes[pillar];
    const detail::QuoteFlows& flows = m_flows[pillar];
    const detail::SettledFlows settled = detail::SettleFlows(quote, flows, *m_trial, SolvedUpTo(pillar));
    const std::size_t firstNode = NodeOf(pillar);
    const auto mismatch = [&](double zero) {
        m_trial->SetContinuousZeroRateFrom(firstNode, zero);
        const double difference = detail::ImpliedQuote(quote, flows, *m_trial, settled) - quote.rate;
        if (!std::isfinite(difference))
            ZEP_FAIL("the curve gives no implied rate at a zero rate of " + std::to_string(zero));
        return difference;
    };
    try {
        // A pillar's rate lies near its guess (its neighbour's, or its own before a requote): a
        // bracket of a hundred basis points around it saves Brent several steps. Failing that the
        // bracket doubles, up to -50% to 100%: under a non-local interpolation the mismatch need
        // not be monotone, and the root nearest the guess is the one wanted.
        double low = guess, high = guess, atLow = 0.0, atHigh = 0.0;
        for (double width = 0.01;; width *= 2.0) {
            low = std::max(guess - width, -0.5), high = std::min(guess + width, 1.0);
            atLow = mismatch(low), atHigh = mismatch(high);
            if (atLow * atHigh <= 0.0 || (low == -0.5 && high == 1.0)) break;
        }
        m_zeroRates[pillar] = BrentSolve(mismatch, low, high, atLow, atHigh, {1e-14, 200});
    } catch (const Error& error) {
        ZEP_FAIL("BootstrapYieldCurve: no discount factor reprices the " + Describe(quote) + " quote (" +
                 error.Message() + ")");
    }
    m_trial->SetContinuousZeroRateFrom(firstNode, m_zeroRates[pillar]);
}

void CurveBootstrap::SetTrialRates(const std::vector<double>& zeroRates, std::size_t fromPillar) {
    for (std::size_t i = fromPillar; i < zeroRates.size(); ++i) m_trial->SetContinuousZeroRateFrom(NodeOf(i), zeroRates[i]);
}

void CurveBootstrap::FitGlobally() {
    if (m_localInterpolation || !m_conventions.globalFit) return;
    // Residuals in rate: a future's price is 100 times its rate.
    const auto scale = [](const RateQuote& quote) { return quote.instrument == RateInstrument::Future ? 0.01 : 1.0; };
    const Residuals residuals = [&](const std::vector<double>& zeroRates) {
        SetTrialRates(zeroRates, 0);
        std::vector<double> r(m_quotes.size());
        for (std::size_t i = 0; i < r.size(); ++i)
            r[i] = (detail::ImpliedQuote(m_quotes[i], m_flows[i], *m_trial, detail::SettledFlows{}) - m_quotes[i].rate) *
                   scale(m_quotes[i]);
        return r;
    };
    const Box box{std::vector<double>(m_quotes.size(), -0.5), std::vector<double>(m_quotes.size(), 1.0)};
    OptimizationResult fit;
    try {
        fit = LevenbergMarquardt({200, 1e-15, 1e-7}).Minimize(residuals, m_zeroRates, box);
    } catch (const Error& error) {
        SetTrialRates(m_zeroRates, 0);
        ZEP_FAIL("BootstrapYieldCurve: the global fit failed (" + error.Message() + ")");
    }
    const std::vector<double> off = residuals(fit.x);
    for (std::size_t i = 0; i < off.size(); ++i)
        if (!(std::abs(off[i]) <= 1e-10)) {
            SetTrialRates(m_zeroRates, 0);
            ZEP_FAIL("BootstrapYieldCurve: the global fit (LevenbergMarquardt) leaves the " + Describe(m_quotes[i]) +
                     " quote off by " + std::to_string(off[i]));
        }
    m_zeroRates = fit.x;
}

void CurveBootstrap::PublishCurve() {
    m_curve = boost::make_shared<YieldCurve>(m_referenceDate, m_pillars, m_zeroRates, Continuous,
                                             m_conventions.curveDayCounter, m_conventions.interpolatedVariable,
                                             m_conventions.interpolationMethod);
}

std::vector<double> CurveBootstrap::ImpliedQuotes() const {
    std::vector<double> implied;
    for (std::size_t i = 0; i < m_quotes.size(); ++i)
        implied.push_back(detail::ImpliedQuote(m_quotes[i], m_flows[i], *m_curve, detail::SettledFlows{}));
    return implied;
}

}  // namespace zep
