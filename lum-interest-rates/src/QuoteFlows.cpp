#include "QuoteFlows.hpp"

#include "lum-time/Schedule.hpp"

namespace zep {

std::string Describe(const RateQuote& quote) {
    switch (quote.instrument) {
        case RateInstrument::Deposit: return "deposit " + quote.tenor.Text();
        case RateInstrument::FRA: return "FRA " + quote.start.Text() + "x" + quote.tenor.Text();
        case RateInstrument::Future: return "future " + quote.start.Text() + "+" + quote.tenor.Text();
        case RateInstrument::Swap: return "swap " + quote.tenor.Text();
        case RateInstrument::OIS: return "OIS " + quote.tenor.Text();
    }
    return "quote " + quote.tenor.Text();
}

namespace detail {

namespace {

bool IsSwap(const RateQuote& quote) {
    return quote.instrument == RateInstrument::Swap || quote.instrument == RateInstrument::OIS;
}

// The IMM date a future fixes on: the first on or after spot + start.
Date FutureStart(const RateQuote& quote, const QuoteSetting& setting) {
    return setting.calendar.NextFutureRollDate(setting.spotDate + quote.start - 1, "IMM");
}

Date Rolled(const Date& date, const QuoteSetting& setting) {
    return setting.calendar.Adjust(date, setting.conventions.rollRule, setting.conventions.centres);
}

ScheduleRules LegRules(const Period& tenor, const DayCounter& dayCounter, const QuoteSetting& setting) {
    ScheduleRules rules;
    rules.tenor = tenor;
    rules.centres = setting.conventions.centres;
    rules.accrualAdjustment = setting.conventions.rollRule;
    rules.paymentAdjustment = setting.conventions.rollRule;
    rules.dayCounter = dayCounter;
    rules.fixingLagDays = 0;
    return rules;
}

}  // namespace

Date MaturityOf(const RateQuote& quote, const QuoteSetting& setting) {
    if (quote.instrument == RateInstrument::Future) return Rolled(FutureStart(quote, setting) + quote.tenor, setting);
    return Rolled(setting.spotDate + quote.tenor, setting);
}

QuoteFlows LayOutFlows(const RateQuote& quote, const QuoteSetting& setting) {
    const BootstrapConventions& c = setting.conventions;
    const auto timeOf = [&](const Date& date) { return c.curveDayCounter.YearFraction(setting.referenceDate, date); };
    const YieldCurve* discount = setting.discountCurve;
    QuoteFlows flows;
    if (IsSwap(quote)) {
        const bool ois = quote.instrument == RateInstrument::OIS;
        const Date termination = setting.spotDate + quote.tenor;
        const Schedule fixedLeg(setting.spotDate, termination,
                                LegRules(ois ? c.oisTenor : quote.fixedTenor.Length() > 0 ? quote.fixedTenor : c.fixedTenor,
                                         ois ? c.oisDayCounter : c.fixedDayCounter, setting),
                                setting.calendar);
        for (const SchedulePeriod& period : fixedLeg.Periods()) {
            flows.payments.push_back(timeOf(period.payment));
            flows.fractions.push_back(period.accrualFraction);
            if (discount) flows.paymentDiscounts.push_back(discount->DiscountFactor(period.payment));
        }
        flows.start = timeOf(setting.spotDate);
        flows.end = flows.payments.back();
        if (discount) {
            const Schedule floatLeg(setting.spotDate, termination,
                                    LegRules(ois ? c.oisTenor : c.floatTenor, c.depositDayCounter, setting),
                                    setting.calendar);
            for (const SchedulePeriod& period : floatLeg.Periods()) {
                flows.floatStarts.push_back(timeOf(period.accrualStart));
                flows.floatEnds.push_back(timeOf(period.accrualEnd));
                flows.floatDiscounts.push_back(discount->DiscountFactor(period.payment));
            }
        }
        return flows;
    }
    const Date start = quote.instrument == RateInstrument::FRA      ? Rolled(setting.spotDate + quote.start, setting)
                       : quote.instrument == RateInstrument::Future ? Rolled(FutureStart(quote, setting), setting)
                                                                    : setting.spotDate;
    const Date end = MaturityOf(quote, setting);
    flows.start = timeOf(start);
    flows.end = timeOf(end);
    flows.accrual = c.depositDayCounter.YearFraction(start, end);
    return flows;
}

double ImpliedQuote(const RateQuote& quote, const QuoteFlows& flows, const YieldCurve& curve,
                    const SettledFlows& settled) {
    if (!IsSwap(quote)) {
        const double forward = (curve.DiscountFactor(flows.start) / curve.DiscountFactor(flows.end) - 1.0) / flows.accrual;
        return quote.instrument == RateInstrument::Future ? 100.0 * (1.0 - forward - quote.convexityAdjustment) : forward;
    }
    const bool given = !flows.paymentDiscounts.empty();
    double annuity = settled.annuity;
    for (std::size_t i = settled.fixedOpen; i < flows.payments.size(); ++i)
        annuity += flows.fractions[i] * (given ? flows.paymentDiscounts[i] : curve.DiscountFactor(flows.payments[i]));
    if (!given) return (curve.DiscountFactor(flows.start) - curve.DiscountFactor(flows.end)) / annuity;
    double floating = settled.floating;
    for (std::size_t j = settled.floatOpen; j < flows.floatStarts.size(); ++j)
        floating += flows.floatDiscounts[j] *
                    (curve.DiscountFactor(flows.floatStarts[j]) / curve.DiscountFactor(flows.floatEnds[j]) - 1.0);
    return floating / annuity;
}

SettledFlows SettleFlows(const RateQuote& quote, const QuoteFlows& flows, const YieldCurve& curve, double solvedUpTo) {
    SettledFlows settled;
    if (!IsSwap(quote)) return settled;
    const bool given = !flows.paymentDiscounts.empty();
    for (; settled.fixedOpen < flows.payments.size() && (given || flows.payments[settled.fixedOpen] <= solvedUpTo);
         ++settled.fixedOpen) {
        const std::size_t i = settled.fixedOpen;
        settled.annuity += flows.fractions[i] * (given ? flows.paymentDiscounts[i] : curve.DiscountFactor(flows.payments[i]));
    }
    for (; settled.floatOpen < flows.floatEnds.size() && flows.floatEnds[settled.floatOpen] <= solvedUpTo;
         ++settled.floatOpen) {
        const std::size_t j = settled.floatOpen;
        settled.floating += flows.floatDiscounts[j] *
                            (curve.DiscountFactor(flows.floatStarts[j]) / curve.DiscountFactor(flows.floatEnds[j]) - 1.0);
    }
    return settled;
}

}  // namespace detail
}  // namespace zep
