#include "lum-interest-rates/CurveBootstrap.hpp"

#include <algorithm>
#include <cmath>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

namespace {

std::string Describe(const RateQuote& quote) {
    static const char* kNames[] = {"deposit", "FRA", "swap"};
    const std::string name = kNames[static_cast<int>(quote.instrument)];
    return quote.instrument == RateInstrument::FRA ? name + " " + quote.start.Text() + "x" + quote.tenor.Text()
                                                   : name + " " + quote.tenor.Text();
}

}  // namespace

Date CurveBootstrap::MaturityOf(const RateQuote& quote) const {
    return m_calendar.Adjust(m_spotDate + quote.tenor, m_conventions.rollRule, m_conventions.centres);
}

CurveBootstrap::Flows CurveBootstrap::FlowsOf(const RateQuote& quote) const {
    const BootstrapConventions& c = m_conventions;
    const auto timeOf = [&](const Date& date) { return c.curveDayCounter.YearFraction(m_referenceDate, date); };
    Flows flows;
    if (quote.instrument == RateInstrument::Swap) {
        ScheduleRules rules;
        rules.tenor = c.fixedTenor;
        rules.centres = c.centres;
        rules.accrualAdjustment = c.rollRule;
        rules.paymentAdjustment = c.rollRule;
        rules.dayCounter = c.fixedDayCounter;
        rules.fixingLagDays = 0;
        const Schedule fixedLeg(m_spotDate, m_spotDate + quote.tenor, rules, m_calendar);
        for (const SchedulePeriod& period : fixedLeg.Periods()) {
            flows.payments.push_back(timeOf(period.payment));
            flows.fractions.push_back(period.accrualFraction);
        }
        flows.start = timeOf(m_spotDate);
        flows.end = flows.payments.back();
        return flows;
    }
    const Date start = quote.instrument == RateInstrument::FRA
                           ? m_calendar.Adjust(m_spotDate + quote.start, c.rollRule, c.centres)
                           : m_spotDate;
    const Date end = MaturityOf(quote);
    flows.start = timeOf(start);
    flows.end = timeOf(end);
    flows.accrual = c.depositDayCounter.YearFraction(start, end);
    return flows;
}

double CurveBootstrap::ImpliedRate(const RateQuote& quote, const Flows& flows, const YieldCurve& curve,
                                   const Settled& settled) const {
    if (quote.instrument == RateInstrument::Swap) {
        double annuity = settled.annuity;
        for (std::size_t i = settled.firstOpen; i < flows.payments.size(); ++i)
            annuity += flows.fractions[i] * curve.DiscountFactor(flows.payments[i]);
        return (curve.DiscountFactor(flows.start) - curve.DiscountFactor(flows.end)) / annuity;
    }
    return (curve.DiscountFactor(flows.start) / curve.DiscountFactor(flows.end) - 1.0) / flows.accrual;
}

namespace {

// Interpolations whose value between two pillars reads only those two pillars.
bool IsLocal(std::int32_t interpolationMethod) {
    return interpolationMethod == FlatInterpolation || interpolationMethod == LinearInterpolation ||
           interpolationMethod == LinearXYInterpolation || interpolationMethod == LogLinearInterpolation;
}

}  // namespace

CurveBootstrap::CurveBootstrap(const Date& referenceDate, std::vector<RateQuote> quotes,
                               const BootstrapConventions& conventions, const Calendar& calendar)
    : m_referenceDate(referenceDate),
      m_spotDate(AdvanceBusinessDays(calendar, referenceDate, conventions.spotLagDays, conventions.centres)),
      m_conventions(conventions),
      m_calendar(calendar),
      m_localInterpolation(IsLocal(conventions.interpolationMethod)) {
    ZEP_REQUIRE(!quotes.empty(), "BootstrapYieldCurve: no quotes");
    for (const RateQuote& quote : quotes) {
        ZEP_REQUIRE(std::isfinite(quote.rate), "BootstrapYieldCurve: the " + Describe(quote) + " quote is not a number");
        ZEP_REQUIRE(quote.tenor.Length() > 0, "BootstrapYieldCurve: the " + Describe(quote) + " quote has no tenor");
    }
    std::stable_sort(quotes.begin(), quotes.end(),
                     [&](const RateQuote& a, const RateQuote& b) { return MaturityOf(a) < MaturityOf(b); });
    m_quotes = std::move(quotes);
    for (std::size_t i = 0; i < m_quotes.size(); ++i) {
        const Date maturity = MaturityOf(m_quotes[i]);
        ZEP_REQUIRE(maturity > referenceDate, "BootstrapYieldCurve: the " + Describe(m_quotes[i]) + " quote matures on the reference date");
        if (i > 0 && maturity == m_pillars.back())
            ZEP_FAIL("BootstrapYieldCurve: the " + Describe(m_quotes[i]) + " quote matures on the date of the " +
                     Describe(m_quotes[i - 1]) + " quote");
        m_pillars.push_back(maturity);
    }
    for (const RateQuote& quote : m_quotes) m_flows.push_back(FlowsOf(quote));

    m_zeroRates.assign(m_quotes.size(), 0.01);
    m_trial.emplace(referenceDate, m_pillars, m_zeroRates, Continuous, conventions.curveDayCounter,
                         conventions.interpolatedVariable, conventions.interpolationMethod);
    for (std::size_t i = 0; i < m_quotes.size(); ++i) SolvePillar(i, i == 0 ? m_quotes[0].rate : m_zeroRates[i - 1]);
    PublishCurve();
}

void CurveBootstrap::Requote(std::size_t index, double rate) {
    ZEP_REQUIRE(index < m_quotes.size(), "BootstrapYieldCurve: no quote at that index");
    const RateQuote& quote = m_quotes[index];
    ZEP_REQUIRE(std::isfinite(rate), "BootstrapYieldCurve: the " + Describe(quote) + " quote is not a number");
    const std::vector<double> solved = m_zeroRates;
    const double previous = quote.rate;
    m_quotes[index].rate = rate;
    try {
        for (std::size_t i = index; i < m_quotes.size(); ++i) SolvePillar(i, solved[i]);
        PublishCurve();
    } catch (...) {
        // Back to the curve of the quotes before the change, whole.
        m_quotes[index].rate = previous;
        m_zeroRates = solved;
        for (std::size_t i = index; i < m_quotes.size(); ++i) m_trial->SetContinuousZeroRateFrom(NodeOf(i), solved[i]);
        throw;
    }
}

// The trial curve's node of pillar i is i + 1, after the reference date's; the first pillar's
// rate also stands at the reference date.
std::size_t CurveBootstrap::NodeOf(std::size_t pillar) { return pillar == 0 ? 0 : pillar + 1; }

CurveBootstrap::Settled CurveBootstrap::SettledBefore(std::size_t pillar) const {
    Settled settled;
    const RateQuote& quote = m_quotes[pillar];
    if (!m_localInterpolation || pillar == 0 || quote.instrument != RateInstrument::Swap) return settled;
    const double solvedUpTo = m_trial->Times()[NodeOf(pillar - 1)];
    const Flows& flows = m_flows[pillar];
    for (; settled.firstOpen < flows.payments.size() && flows.payments[settled.firstOpen] <= solvedUpTo; ++settled.firstOpen)
        settled.annuity += flows.fractions[settled.firstOpen] * m_trial->DiscountFactor(flows.payments[settled.firstOpen]);
    return settled;
}

void CurveBootstrap::SolvePillar(std::size_t pillar, double guess) {
    const RateQuote& quote = m_quotes[pillar];
    const Flows& flows = m_flows[pillar];
    const Settled settled = SettledBefore(pillar);
    const std::size_t firstNode = NodeOf(pillar);
    const auto mismatch = [&](double zero) {
        m_trial->SetContinuousZeroRateFrom(firstNode, zero);
        const double difference = ImpliedRate(quote, flows, *m_trial, settled) - quote.rate;
        if (!std::isfinite(difference))
            ZEP_FAIL("the curve gives no implied rate at a zero rate of " + std::to_string(zero));
        return difference;
    };
    try {
        // A pillar's rate lies near its guess (its neighbour's, or its own before a requote): a
        // bracket of a hundred basis points around it saves Brent several steps; the wide one,
        // from -50% to 100%, is the fallback.
        double low = guess - 0.01, high = guess + 0.01;
        double atLow = mismatch(low), atHigh = mismatch(high);
        if (!(atLow * atHigh <= 0.0)) {
            low = -0.5, high = 1.0;
            atLow = mismatch(low), atHigh = mismatch(high);
        }
        m_zeroRates[pillar] = BrentSolve(mismatch, low, high, atLow, atHigh, {1e-14, 200});
    } catch (const Error& error) {
        ZEP_FAIL("BootstrapYieldCurve: no discount factor reprices the " + Describe(quote) + " quote (" +
                 error.Message() + ")");
    }
    m_trial->SetContinuousZeroRateFrom(firstNode, m_zeroRates[pillar]);
}

void CurveBootstrap::PublishCurve() {
    m_curve = boost::make_shared<YieldCurve>(m_referenceDate, m_pillars, m_zeroRates, Continuous,
                                             m_conventions.curveDayCounter, m_conventions.interpolatedVariable,
                                             m_conventions.interpolationMethod);
}

std::vector<double> CurveBootstrap::ImpliedRates() const {
    std::vector<double> rates;
    for (std::size_t i = 0; i < m_quotes.size(); ++i) rates.push_back(ImpliedRate(m_quotes[i], m_flows[i], *m_curve, Settled{}));
    return rates;
}

}  // namespace zep
