#include "lum-interest-rates/Swaption.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

LegTerms FixedTerms(double strike, double notional) {
    LegTerms terms;
    terms.notionals = {notional};
    terms.fixedRate = strike;
    return terms;
}

LegTerms FloatingTerms(double notional, const std::string& index) {
    LegTerms terms;
    terms.kind = CouponKind::Floating;
    terms.notionals = {notional};
    terms.index = index;
    return terms;
}

// Fixed periods per year from the schedule's tenor, which must divide a year.
double PeriodsPerYear(const Schedule& schedule) {
    const Period& tenor = schedule.Rules().tenor;
    const int months = tenor.Units() == Years ? 12 * tenor.Length() : tenor.Units() == Months ? tenor.Length() : 0;
    ZEP_REQUIRE(months > 0 && 12 % months == 0, "the fixed leg's tenor " + tenor.Text() +
                                                    " must divide a year for the par-yield annuity of cash settlement");
    return 12.0 / months;
}

}  // namespace

Swaption::Swaption(const Schedule& fixedSchedule, const Schedule& floatingSchedule, SwaptionKind kind, double strike,
                   double notional, const Date& expiry, SwaptionSettlement settlement, const Calendar& calendar,
                   const std::string& index)
    : m_fixed(fixedSchedule, FixedTerms(strike, notional), calendar),
      m_floating(floatingSchedule, FloatingTerms(notional, index), calendar),
      m_kind(kind),
      m_settlement(settlement),
      m_strike(strike),
      m_notional(notional),
      m_expiry(expiry),
      m_fixedPerYear(settlement == SwaptionSettlement::Cash ? PeriodsPerYear(fixedSchedule) : 0.0) {
    ZEP_REQUIRE(kind == SwaptionKind::Payer || kind == SwaptionKind::Receiver, "the kind must be payer or receiver");
    ZEP_REQUIRE(settlement == SwaptionSettlement::Physical || settlement == SwaptionSettlement::Cash,
                "the settlement must be physical or cash");
    ZEP_REQUIRE(std::isfinite(strike), "the strike must be finite");
    ZEP_REQUIRE(std::isfinite(notional) && notional > 0.0, "the notional must be positive");
    ZEP_REQUIRE(expiry <= m_fixed.StartDate() && expiry <= m_floating.StartDate(),
                "the expiry " + expiry.ToString() + " must not be after the swap's start date " +
                    m_fixed.StartDate().ToString());
    for (const SchedulePeriod& period : fixedSchedule.Periods()) m_fixedAccruals.push_back(period.accrualFraction);
}

double Swaption::ForwardRate(const LegMarket& market) const {
    ZEP_REQUIRE(market.discount && market.projection, "the swaption needs a discount and a projection curve");
    const double annuity = m_fixed.Annuity(market);
    ZEP_REQUIRE(annuity > 0.0, "the underlying swap has no fixed coupon left to pay");
    return m_floating.PV(market) / annuity;
}

double Swaption::CashAnnuity(const LegMarket& market, double forward) const {
    const double growth = 1.0 + forward / m_fixedPerYear;
    ZEP_REQUIRE(growth > 0.0, "the forward swap rate " + std::to_string(forward) +
                                  " leaves no par-yield annuity for cash settlement");
    double sum = 0.0, discount = 1.0;
    for (double accrual : m_fixedAccruals) {
        discount /= growth;
        sum += accrual * discount;
    }
    return m_notional * sum * market.discount->DiscountFactor(m_fixed.StartDate());
}

double Swaption::AnnuityAt(const LegMarket& market, double forward) const {
    return m_settlement == SwaptionSettlement::Cash ? CashAnnuity(market, forward) : m_fixed.Annuity(market);
}

double Swaption::Annuity(const LegMarket& market) const { return AnnuityAt(market, ForwardRate(market)); }

double Swaption::ExpiryTime(const LegMarket& market) const {
    const Date& today = market.discount->ReferenceDate();
    return m_expiry > today ? DayCounter(Act365Fixed).YearFraction(today, m_expiry) : 0.0;
}

double Swaption::PV(const LegMarket& market, const RateVolatility& volatility) const {
    const double forward = ForwardRate(market);
    return AnnuityAt(market, forward) *
           ForwardOptionValue(m_kind == SwaptionKind::Payer, forward, m_strike, ExpiryTime(market), volatility);
}

std::vector<CashFlow> Swaption::CashFlows(const LegMarket& market, const RateVolatility& volatility) const {
    const double value = PV(market, volatility);
    const Date& start = m_fixed.StartDate();
    const double discountFactor = market.discount->DiscountFactor(start);
    return {{CashFlowKind::Coupon, start, m_fixed.EndDate(), m_expiry, start, 0.0, m_notional, ForwardRate(market),
             value / discountFactor, discountFactor, value}};
}

double Swaption::ForwardSwapValue(const LegMarket& market) const {
    const double payer = m_floating.PV(market) - m_fixed.PV(market);
    return m_kind == SwaptionKind::Payer ? payer : -payer;
}

double Swaption::ImpliedVolatility(double price, const LegMarket& market, RateVolatilityModel model,
                                   double shift) const {
    const double forward = ForwardRate(market), annuity = AnnuityAt(market, forward), expiry = ExpiryTime(market);
    ZEP_REQUIRE(expiry > 0.0, "the swaption has expired: no volatility is implied");
    return ImpliedForwardVolatility(m_kind == SwaptionKind::Payer, forward, m_strike, expiry, price / annuity, model,
                                    shift);
}

std::string Swaption::Describe() const {
    std::ostringstream text;
    text.precision(10);
    text << (m_kind == SwaptionKind::Payer ? "payer" : "receiver") << " swaption, "
         << (m_settlement == SwaptionSettlement::Cash ? "cash" : "physical") << " settled, notional " << m_notional
         << ", strike " << m_strike << ", expiry " << m_expiry.ToString() << ", swap "
         << m_fixed.StartDate().ToString() << " to " << m_fixed.EndDate().ToString();
    return text.str();
}

}  // namespace zep
