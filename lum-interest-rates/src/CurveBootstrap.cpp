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

double CurveBootstrap::ImpliedRate(const RateQuote& quote, const Flows& flows, const YieldCurve& curve) const {
    if (quote.instrument == RateInstrument::Swap) {
        double annuity = 0.0;
        for (std::size_t i = 0; i < flows.payments.size(); ++i)
            annuity += flows.fractions[i] * curve.DiscountFactor(flows.payments[i]);
        return (curve.DiscountFactor(flows.start) - curve.DiscountFactor(flows.end)) / annuity;
    }
    return (curve.DiscountFactor(flows.start) / curve.DiscountFactor(flows.end) - 1.0) / flows.accrual;
}

CurveBootstrap::CurveBootstrap(const Date& referenceDate, std::vector<RateQuote> quotes,
                               const BootstrapConventions& conventions, const Calendar& calendar)
    : m_referenceDate(referenceDate), m_conventions(conventions), m_calendar(calendar) {
    ZEP_REQUIRE(!quotes.empty(), "BootstrapYieldCurve: no quotes");
    m_spotDate = AdvanceBusinessDays(calendar, referenceDate, conventions.spotLagDays, conventions.centres);
    for (const RateQuote& quote : quotes) {
        ZEP_REQUIRE(std::isfinite(quote.rate), "BootstrapYieldCurve: the " + Describe(quote) + " quote is not a number");
        ZEP_REQUIRE(quote.tenor.Length() > 0, "BootstrapYieldCurve: the " + Describe(quote) + " quote has no tenor");
    }
    std::stable_sort(quotes.begin(), quotes.end(),
                     [&](const RateQuote& a, const RateQuote& b) { return MaturityOf(a) < MaturityOf(b); });
    for (std::size_t i = 0; i < quotes.size(); ++i) {
        const Date maturity = MaturityOf(quotes[i]);
        ZEP_REQUIRE(maturity > referenceDate, "BootstrapYieldCurve: the " + Describe(quotes[i]) + " quote matures on the reference date");
        if (i > 0 && maturity == m_pillars.back())
            ZEP_FAIL("BootstrapYieldCurve: the " + Describe(quotes[i]) + " quote matures on the date of the " +
                     Describe(quotes[i - 1]) + " quote");
        m_pillars.push_back(maturity);
    }
    m_quotes = std::move(quotes);
    for (const RateQuote& quote : m_quotes) m_flows.push_back(FlowsOf(quote));

    // Pillar by pillar: the zero rate at the new pillar that reprices its quote; the later
    // pillars, not yet known, continue flat.
    std::vector<double> zeroRates;
    for (std::size_t i = 0; i < m_quotes.size(); ++i) {
        const auto curveWith = [&](double zero) {
            std::vector<Date> dates(m_pillars.begin(), m_pillars.begin() + static_cast<std::ptrdiff_t>(i + 1));
            std::vector<double> rates = zeroRates;
            rates.push_back(zero);
            return YieldCurve(referenceDate, dates, rates, Continuous, conventions.curveDayCounter,
                              conventions.interpolatedVariable, conventions.interpolationMethod);
        };
        const RateQuote& quote = m_quotes[i];
        const auto mismatch = [&](double zero) { return ImpliedRate(quote, m_flows[i], curveWith(zero)) - quote.rate; };
        double zero;
        try {
            zero = BrentSolve(mismatch, -0.5, 1.0, {1e-14, 200});
        } catch (const Error& error) {
            ZEP_FAIL("BootstrapYieldCurve: no discount factor reprices the " + Describe(quote) + " quote (" +
                     error.Message() + ")");
        }
        zeroRates.push_back(zero);
    }
    m_curve = boost::make_shared<YieldCurve>(referenceDate, m_pillars, zeroRates, Continuous,
                                             conventions.curveDayCounter, conventions.interpolatedVariable,
                                             conventions.interpolationMethod);
}

std::vector<double> CurveBootstrap::ImpliedRates() const {
    std::vector<double> rates;
    for (std::size_t i = 0; i < m_quotes.size(); ++i) rates.push_back(ImpliedRate(m_quotes[i], m_flows[i], *m_curve));
    return rates;
}

}  // namespace zep
