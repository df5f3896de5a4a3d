#include "lum-interest-rates/Leg.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

#include "lum-auxiliary/Error.hpp"

namespace zep {

// The discount factors of a leg's dates on one curve, read in one block call: a 10-year
// quarterly leg asks for each date up to three times (index start, index end, payment) and the
// block interpolates them in one pass. Legs with more dates than the buffer read one by one.
class Leg::Factors {
public:
    static constexpr std::size_t kCapacity = 512;

    Factors(const YieldCurve& curve, const std::vector<Date>& dates) : m_curve(curve), m_dates(dates) {
        m_buffered = dates.size() <= kCapacity;
        if (!m_buffered) return;
        double times[kCapacity];
        const Date reference = curve.ReferenceDate();
        const DayCounter& dayCounter = curve.GetDayCounter();
        for (std::size_t i = 0; i < dates.size(); ++i) times[i] = dayCounter.YearFraction(reference, dates[i]);
        curve.DiscountFactorArray(times, m_factors, dates.size());
    }
    double At(std::uint32_t slot) const { return m_buffered ? m_factors[slot] : m_curve.DiscountFactor(m_dates[slot]); }

private:
    const YieldCurve& m_curve;
    const std::vector<Date>& m_dates;
    bool m_buffered = false;
    double m_factors[kCapacity];
};

Leg::Leg(const Schedule& schedule, LegTerms terms, const Calendar& calendar) : m_terms(std::move(terms)) {
    const auto& periods = schedule.Periods();
    ZEP_REQUIRE(!periods.empty(), "Leg: the schedule has no period.");
    ZEP_REQUIRE(m_terms.notionals.size() == 1 || m_terms.notionals.size() == periods.size(),
                "Leg: give one notional, or one per period (" + std::to_string(periods.size()) + ").");
    for (double notional : m_terms.notionals)
        ZEP_REQUIRE(std::isfinite(notional) && notional >= 0.0,
                    "Leg: notional '" + std::to_string(notional) + "' must be a finite number >= 0.");
    ZEP_REQUIRE(std::isfinite(m_terms.fixedRate) && std::isfinite(m_terms.spread) && std::isfinite(m_terms.gearing),
                "Leg: rate, spread and gearing must be finite.");
    const bool floating = m_terms.kind != CouponKind::Fixed;
    ZEP_REQUIRE(!floating || !m_terms.index.empty(), "Leg: a floating leg needs an index name.");
    ZEP_REQUIRE(m_terms.lookbackDays >= 0 && m_terms.lockoutDays >= 0, "Leg: lookback and lockout days must be >= 0.");
    if (!m_terms.resetIndex.empty()) {
        ZEP_REQUIRE(std::isfinite(m_terms.resetNotional) && m_terms.resetNotional > 0.0,
                    "Leg: the notional a leg resets from '" + std::to_string(m_terms.resetNotional) +
                        "' must be a positive number.");
        ZEP_REQUIRE(m_terms.exchangeNotional && m_terms.notionals.size() == 1,
                    "Leg: a leg whose notional resets exchanges one notional, not an amortising one.");
    }
    m_centres = schedule.Rules().centres;
    const DayCounter& dayCounter = schedule.Rules().dayCounter;
    for (std::size_t i = 0; i < periods.size(); ++i) {
        const SchedulePeriod& period = periods[i];
        Coupon coupon;
        coupon.accrualStart = period.accrualStart;
        coupon.accrualEnd = period.accrualEnd;
        coupon.payment = period.payment;
        coupon.fixing = period.fixing;
        if (!m_terms.resetIndex.empty()) m_resetFixings.push_back(period.fixing);
        coupon.accrualFraction = period.accrualFraction;
        coupon.notional = m_terms.notionals[m_terms.notionals.size() == 1 ? 0 : i];
        coupon.indexStart = period.accrualStart;
        coupon.indexEnd = period.accrualEnd;
        if (m_terms.kind == CouponKind::Floating && m_terms.inArrears) {
            coupon.indexStart = period.accrualEnd;
            coupon.indexEnd = calendar.Adjust(period.accrualEnd + m_terms.indexTenor, schedule.Rules().accrualAdjustment,
                                              m_centres);
            coupon.fixing = AdvanceBusinessDays(calendar, period.accrualEnd, -schedule.Rules().fixingLagDays, m_centres);
        }
        coupon.indexFraction = dayCounter.YearFraction(coupon.indexStart, coupon.indexEnd);
        if (m_terms.kind == CouponKind::Overnight) AddObservations(coupon, calendar, dayCounter);
        m_coupons.push_back(coupon);
    }
    IndexDates();
}

void Leg::IndexDates() {
    for (const Coupon& coupon : m_coupons)
        for (const Date& date : {coupon.indexStart, coupon.indexEnd, coupon.payment, coupon.accrualStart})
            m_dates.push_back(date);
    std::sort(m_dates.begin(), m_dates.end());
    m_dates.erase(std::unique(m_dates.begin(), m_dates.end()), m_dates.end());
    const auto slot = [&](const Date& date) {
        return static_cast<std::uint32_t>(std::lower_bound(m_dates.begin(), m_dates.end(), date) - m_dates.begin());
    };
    for (Coupon& coupon : m_coupons) {
        coupon.indexStartSlot = slot(coupon.indexStart);
        coupon.indexEndSlot = slot(coupon.indexEnd);
        coupon.paymentSlot = slot(coupon.payment);
    }
}

// Each business day of the interest period accrues the overnight rate of the day `lookback`
// business days earlier. Without a shift the rate accrues over the interest day's length; with
// one, over the observed day's. Under a lockout the last days repeat the rate before them. Days
// count as the leg's coupons do (Act/360 for ESTR and SOFR, Act/365 Fixed for SONIA).
void Leg::AddObservations(Coupon& coupon, const Calendar& calendar, const DayCounter& dayCounter) {
    std::vector<Date> days;
    for (Date day = coupon.accrualStart; day < coupon.accrualEnd; day = AdvanceBusinessDays(calendar, day, 1, m_centres))
        days.push_back(day);
    ZEP_REQUIRE(!days.empty(), "Leg: an overnight period from " + coupon.accrualStart.ToString() + " has no business day.");
    ZEP_REQUIRE(static_cast<std::size_t>(m_terms.lockoutDays) < days.size(),
                "Leg: the lockout of " + std::to_string(m_terms.lockoutDays) + " days is not shorter than the period from " +
                    coupon.accrualStart.ToString() + ".");
    coupon.firstObservation = m_observations.size();
    const std::size_t locked = days.size() - static_cast<std::size_t>(m_terms.lockoutDays);
    for (std::size_t d = 0; d < days.size(); ++d) {
        const Date interestEnd = d + 1 < days.size() ? days[d + 1] : coupon.accrualEnd;
        const Date observed = AdvanceBusinessDays(calendar, days[std::min(d, locked - 1)], -m_terms.lookbackDays, m_centres);
        Observation observation;
        observation.rateStart = observed;
        observation.rateEnd = AdvanceBusinessDays(calendar, observed, 1, m_centres);
        observation.rateFraction = dayCounter.YearFraction(observation.rateStart, observation.rateEnd);
        if (m_terms.observationShift) {
            const Date shiftedStart = AdvanceBusinessDays(calendar, days[d], -m_terms.lookbackDays, m_centres);
            observation.weight = dayCounter.YearFraction(shiftedStart, AdvanceBusinessDays(calendar, shiftedStart, 1, m_centres));
        } else {
            observation.weight = dayCounter.YearFraction(days[d], interestEnd);
        }
        m_observations.push_back(observation);
    }
    coupon.endObservation = m_observations.size();
}

double Leg::IndexRate(const Coupon& coupon, const LegMarket& market, const Factors& projection) const {
    if (const auto fixed = KnownFixing(market.fixings, m_terms.index, coupon.fixing, market.discount->ReferenceDate()))
        return *fixed;
    const double growth = projection.At(coupon.indexStartSlot) / projection.At(coupon.indexEndSlot);
    return (growth - 1.0) / coupon.indexFraction;
}

// The compounded rate: (prod (1 + r_d w_d) - 1) / sum w_d over the days of the period.
double Leg::OvernightRate(const Coupon& coupon, const LegMarket& market) const {
    const Date valuation = market.discount->ReferenceDate();
    double growth = 1.0, span = 0.0;
    for (std::size_t d = coupon.firstObservation; d < coupon.endObservation; ++d) {
        const Observation& day = m_observations[d];
        const auto fixed = KnownFixing(market.fixings, m_terms.index, day.rateStart, valuation);
        const double rate = fixed ? *fixed
                                  : (market.projection->DiscountFactor(day.rateStart) /
                                         market.projection->DiscountFactor(day.rateEnd) - 1.0) / day.rateFraction;
        growth *= 1.0 + rate * day.weight;
        span += day.weight;
    }
    return (growth - 1.0) / span;
}

double Leg::CouponRate(const Coupon& coupon, const LegMarket& market, const Factors& projection) const {
    switch (m_terms.kind) {
        case CouponKind::Fixed: return m_terms.fixedRate;
        case CouponKind::Floating: return m_terms.gearing * IndexRate(coupon, market, projection) + m_terms.spread;
        case CouponKind::Overnight: return m_terms.gearing * OvernightRate(coupon, market) + m_terms.spread;
    }
    return 0.0;
}

void Leg::RequireMarket(const LegMarket& market, bool needsProjection) const {
    ZEP_REQUIRE(market.discount != nullptr, "Leg: no discount curve.");
    ZEP_REQUIRE(!needsProjection || market.projection != nullptr, "Leg: no projection curve.");
    ZEP_REQUIRE(std::isfinite(market.fxRate) && market.fxRate > 0.0, "Leg: the FX rate must be positive.");
    ZEP_REQUIRE(!ResetsNotional() || market.resetFX != nullptr, "Leg: a leg whose notional resets needs an FX market.");
}

// The first notional is the one traded; each later one is struck at the FX rate fixed on the
// period's fixing date, which is the outright for the period's start until it is published.
double Leg::ResetNotional(std::size_t i, const LegMarket& market) const {
    const Date valuation = market.discount->ReferenceDate();
    const auto fixed = KnownFixing(market.fixings, m_terms.resetIndex, m_resetFixings[i], valuation);
    ZEP_REQUIRE(!fixed || *fixed > 0.0, "Leg: the FX fixing of index '" + m_terms.resetIndex + "' on " +
                                            m_resetFixings[i].ToString() + " must be positive.");
    const double rate = fixed ? *fixed : FXForward::Outright(*market.resetFX, m_coupons[i].accrualStart);
    return m_terms.resetRateInverted ? m_terms.resetNotional / rate : m_terms.resetNotional * rate;
}

template <class Visit>
void Leg::ForEachFlow(const LegMarket& market, Visit&& visit) const {
    RequireMarket(market, m_terms.kind != CouponKind::Fixed);
    const Date valuation = market.discount->ReferenceDate();
    const Factors discount(*market.discount, m_dates);
    // A fixed leg reads no projection curve: it shares the discount factors rather than read one.
    const bool ownProjection = m_terms.kind != CouponKind::Fixed && market.projection != market.discount;
    std::optional<Factors> projectionFactors;
    if (ownProjection) projectionFactors.emplace(*market.projection, m_dates);
    const Factors& projection = projectionFactors ? *projectionFactors : discount;
    const Coupon& first = m_coupons.front();
    if (m_terms.exchangeNotional && first.accrualStart > valuation)
        visit(nullptr, first.accrualStart, first.notional, 0.0, -first.notional,
              market.discount->DiscountFactor(first.accrualStart));
    std::size_t i = 0;
    while (i < m_coupons.size() && m_coupons[i].payment <= valuation) ++i;
    // Each notional is read once: a reset one costs an FX forward.
    double notional = i < m_coupons.size() ? NotionalOf(i, market) : 0.0;
    for (; i < m_coupons.size(); ++i) {
        const Coupon& coupon = m_coupons[i];
        const double rate = CouponRate(coupon, market, projection);
        const double factor = discount.At(coupon.paymentSlot);
        visit(&coupon, coupon.payment, notional, rate, notional * rate * coupon.accrualFraction, factor);
        // Principal returns as the notional steps down (or resets), the rest at maturity.
        const double next = i + 1 < m_coupons.size() ? NotionalOf(i + 1, market) : 0.0;
        if (m_terms.exchangeNotional && notional != next)
            visit(nullptr, coupon.payment, std::abs(notional - next), 0.0, notional - next, factor);
        notional = next;
    }
}

double Leg::PV(const LegMarket& market) const {
    double pv = 0.0;
    ForEachFlow(market, [&](const Coupon*, const Date&, double, double, double amount, double factor) { pv += amount * factor; });
    return pv * market.fxRate;
}

double Leg::Annuity(const LegMarket& market) const {
    RequireMarket(market, false);
    const Date valuation = market.discount->ReferenceDate();
    const Factors discount(*market.discount, m_dates);
    double annuity = 0.0;
    for (std::size_t i = 0; i < m_coupons.size(); ++i) {
        const Coupon& coupon = m_coupons[i];
        if (coupon.payment > valuation)
            annuity += NotionalOf(i, market) * coupon.accrualFraction * discount.At(coupon.paymentSlot);
    }
    return annuity * market.fxRate;
}

std::vector<CashFlow> Leg::CashFlows(const LegMarket& market) const {
    std::vector<CashFlow> rows;
    ForEachFlow(market, [&](const Coupon* coupon, const Date& payment, double notional, double rate, double amount,
                            double factor) {
        CashFlow row;
        row.paymentDate = payment;
        row.notional = notional;
        row.amount = amount;
        row.discountFactor = factor;
        row.presentValue = amount * row.discountFactor;
        if (coupon) {
            row.accrualStart = coupon->accrualStart;
            row.accrualEnd = coupon->accrualEnd;
            row.fixingDate = m_terms.kind == CouponKind::Fixed ? Date() : coupon->fixing;
            row.accrualFraction = coupon->accrualFraction;
            row.rate = rate;
        } else {
            row.kind = CashFlowKind::Notional;
        }
        rows.push_back(row);
    });
    return rows;
}

}  // namespace zep
