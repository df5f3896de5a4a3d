#include "lum-interest-rates/Bond.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

Bond::Bond(const Schedule& schedule, BondTerms terms) : m_terms(std::move(terms)) {
    const auto& periods = schedule.Periods();
    ZEP_REQUIRE(!periods.empty(), "Bond: the schedule has no period.");
    ZEP_REQUIRE(m_terms.notionals.size() == 1 || m_terms.notionals.size() == periods.size(),
                "Bond: give one notional, or one per period (" + std::to_string(periods.size()) + ").");
    for (double notional : m_terms.notionals)
        ZEP_REQUIRE(std::isfinite(notional) && notional > 0.0,
                    "Bond: notional '" + std::to_string(notional) + "' must be a finite number > 0.");
    ZEP_REQUIRE(std::isfinite(m_terms.couponRate), "Bond: the coupon rate must be finite.");
    ZEP_REQUIRE(m_terms.frequency >= Annual && m_terms.frequency <= Monthly,
                "Bond: coupon frequency '" + std::to_string(m_terms.frequency) + "' must be 1 to 12 a year.");
    for (std::size_t i = 0; i < periods.size(); ++i) {
        Flow flow;
        flow.accrualStart = periods[i].accrualStart;
        flow.accrualEnd = periods[i].accrualEnd;
        flow.payment = periods[i].payment;
        flow.notional = m_terms.notionals[m_terms.notionals.size() == 1 ? 0 : i];
        flow.couponFraction = m_terms.dayCounter.YearFraction(flow.accrualStart, flow.accrualEnd, flow.accrualEnd,
                                                              m_terms.frequency);
        flow.coupon = flow.notional * m_terms.couponRate * flow.couponFraction;
        const double next = i + 1 < periods.size() ? m_terms.notionals[m_terms.notionals.size() == 1 ? 0 : i + 1] : 0.0;
        flow.principal = flow.notional - next;
        ZEP_REQUIRE(flow.principal >= 0.0, "Bond: the notional may only step down.");
        m_flows.push_back(flow);
    }
}

Bond::Position Bond::PositionAt(const Date& settlement) const {
    ZEP_REQUIRE(settlement >= m_flows.front().accrualStart && settlement < m_flows.back().accrualEnd,
                "Bond: settlement " + settlement.ToString() + " is outside the bond's life " +
                    m_flows.front().accrualStart.ToString() + " to " + m_flows.back().accrualEnd.ToString() + ".");
    Position position;
    while (m_flows[position.first].accrualEnd <= settlement) ++position.first;
    const Flow& current = m_flows[position.first];
    position.periodsToFirst = static_cast<double>(m_terms.dayCounter.DayCount(settlement, current.accrualEnd)) /
                              static_cast<double>(m_terms.dayCounter.DayCount(current.accrualStart, current.accrualEnd));
    position.outstanding = current.notional;
    return position;
}

// Flow k after settlement is discounted over periodsToFirst + k periods at v = 1 / (1 + y / f):
// one power, then a product per period. Under simple interest in the last period, the one flow
// left is discounted by 1 + y t over the t years to it.
Bond::PriceAndSlopes Bond::PriceAt(double yield, const Position& position) const {
    const double f = static_cast<double>(m_terms.frequency);
    const double scale = 100.0 / position.outstanding;
    if (m_terms.simpleYieldInLastPeriod && position.first + 1 == m_flows.size()) {
        const double years = position.periodsToFirst / f, growth = 1.0 + yield * years;
        const double flow = (m_flows.back().coupon + m_flows.back().principal) * scale;
        PriceAndSlopes out;
        out.price = flow / growth;
        out.timeWeighted = out.price * years;
        out.slope = -out.timeWeighted / growth;
        out.curvature = 2.0 * out.price * years * years / (growth * growth);
        return out;
    }
    const double growth = 1.0 + yield / f;
    const double v = 1.0 / growth;
    double discount = std::pow(v, position.periodsToFirst), periods = position.periodsToFirst;
    PriceAndSlopes out;
    for (std::size_t k = position.first; k < m_flows.size(); ++k, discount *= v, periods += 1.0) {
        const double value = (m_flows[k].coupon + m_flows[k].principal) * discount;
        out.price += value;
        out.timeWeighted += value * periods;
        out.curvature += value * periods * (periods + 1.0);
    }
    out.price *= scale;
    out.timeWeighted *= scale / f;                             // sum t PV, t in years
    out.slope = -out.timeWeighted / growth;                    // dP/dy
    out.curvature *= scale / (f * f * growth * growth);        // d2P/dy2
    return out;
}

double Bond::AccruedAmount(const Date& settlement) const {
    const Position position = PositionAt(settlement);
    const Flow& current = m_flows[position.first];
    if (settlement == current.accrualStart) return 0.0;
    const double fraction = m_terms.dayCounter.YearFraction(current.accrualStart, settlement, current.accrualEnd,
                                                            m_terms.frequency);
    return 100.0 * m_terms.couponRate * fraction * current.notional / position.outstanding;
}

double Bond::DirtyPrice(double yield, const Date& settlement) const {
    ZEP_REQUIRE(std::isfinite(yield) && yield > -static_cast<double>(m_terms.frequency),
                "Bond: yield '" + std::to_string(yield) + "' must be finite and above -frequency.");
    return PriceAt(yield, PositionAt(settlement)).price;
}

double Bond::CleanPrice(double yield, const Date& settlement) const {
    return DirtyPrice(yield, settlement) - AccruedAmount(settlement);
}

double Bond::Yield(double cleanPrice, const Date& settlement) const {
    ZEP_REQUIRE(std::isfinite(cleanPrice) && cleanPrice > 0.0,
                "Bond: clean price '" + std::to_string(cleanPrice) + "' must be a positive number.");
    const Position position = PositionAt(settlement);
    const double dirty = cleanPrice + AccruedAmount(settlement);
    const auto mismatch = [&](double yield) {
        const PriceAndSlopes at = PriceAt(yield, position);
        return std::pair{at.price - dirty, at.slope};
    };
    const double low = -0.99 * static_cast<double>(m_terms.frequency) + 1e-9, high = 10.0;
    if ((mismatch(low).first < 0.0) == (mismatch(high).first < 0.0))
        ZEP_FAIL("Bond: no yield between -99% a period and 1000% gives the clean price '" + std::to_string(cleanPrice) + "'.");
    const double guess = m_terms.couponRate + (100.0 - cleanPrice) / 100.0 / std::max(1.0, MacaulayDuration(m_terms.couponRate, settlement));
    return NewtonSolve(mismatch, guess, low, high, {1e-14, 100});
}

double Bond::MacaulayDuration(double yield, const Date& settlement) const {
    const PriceAndSlopes at = PriceAt(yield, PositionAt(settlement));
    return at.timeWeighted / at.price;
}

double Bond::ModifiedDuration(double yield, const Date& settlement) const {
    const PriceAndSlopes at = PriceAt(yield, PositionAt(settlement));
    return -at.slope / at.price;
}

double Bond::Convexity(double yield, const Date& settlement) const {
    const PriceAndSlopes at = PriceAt(yield, PositionAt(settlement));
    return at.curvature / at.price;
}

double Bond::PV(const YieldCurve& discount) const {
    const Position position = PositionAt(discount.ReferenceDate());
    double value = 0.0;
    for (std::size_t k = position.first; k < m_flows.size(); ++k)
        value += (m_flows[k].coupon + m_flows[k].principal) * discount.DiscountFactor(m_flows[k].payment);
    return 100.0 * value / position.outstanding;
}

double Bond::ZSpread(double cleanPrice, const YieldCurve& discount, const Date& settlement) const {
    ZEP_REQUIRE(std::isfinite(cleanPrice) && cleanPrice > 0.0,
                "Bond: clean price '" + std::to_string(cleanPrice) + "' must be a positive number.");
    const Position position = PositionAt(settlement);
    const double dirty = cleanPrice + AccruedAmount(settlement);
    const double settlementTime = discount.GetDayCounter().YearFraction(discount.ReferenceDate(), settlement);
    const double settlementFactor = discount.DiscountFactor(settlement);
    const auto mismatch = [&](double spread) {
        double value = 0.0;
        for (std::size_t k = position.first; k < m_flows.size(); ++k) {
            const double t = discount.GetDayCounter().YearFraction(discount.ReferenceDate(), m_flows[k].payment);
            value += (m_flows[k].coupon + m_flows[k].principal) * discount.DiscountFactor(m_flows[k].payment) /
                     settlementFactor * std::exp(-spread * (t - settlementTime));
        }
        return 100.0 * value / position.outstanding - dirty;
    };
    if ((mismatch(-1.0) < 0.0) == (mismatch(1.0) < 0.0))
        ZEP_FAIL("Bond: no Z-spread between -100% and 100% gives the clean price '" + std::to_string(cleanPrice) + "'.");
    return BrentSolve(mismatch, -1.0, 1.0, {1e-14, 200});
}

std::vector<CashFlow> Bond::CashFlows(const YieldCurve& discount) const {
    std::vector<CashFlow> rows;
    for (const Flow& flow : m_flows) {
        if (flow.payment <= discount.ReferenceDate()) continue;
        CashFlow row;
        row.accrualStart = flow.accrualStart;
        row.accrualEnd = flow.accrualEnd;
        row.paymentDate = flow.payment;
        row.accrualFraction = flow.couponFraction;
        row.notional = flow.notional;
        row.rate = m_terms.couponRate;
        row.amount = flow.coupon;
        row.discountFactor = discount.DiscountFactor(flow.payment);
        row.presentValue = row.amount * row.discountFactor;
        rows.push_back(row);
        if (flow.principal > 0.0) {
            CashFlow principal = row;
            principal.kind = CashFlowKind::Notional;
            principal.accrualFraction = principal.rate = 0.0;
            principal.notional = principal.amount = flow.principal;
            principal.presentValue = principal.amount * principal.discountFactor;
            rows.push_back(principal);
        }
    }
    return rows;
}

std::vector<std::pair<Date, double>> Bond::PaymentsBetween(const Date& after, const Date& upTo) const {
    const double outstanding = PositionAt(after).outstanding;
    std::vector<std::pair<Date, double>> payments;
    for (const Flow& flow : m_flows)
        if (flow.payment > after && flow.payment <= upTo)
            payments.emplace_back(flow.payment, 100.0 * (flow.coupon + flow.principal) / outstanding);
    return payments;
}

std::string Bond::Describe() const {
    std::ostringstream text;
    text.precision(10);  // notionals in full, rates to a hundredth of a basis point
    text << "Fixed-rate bond, coupon " << m_terms.couponRate << " paid " << m_terms.frequency << " times a year ("
         << m_terms.dayCounter.ToString() << "), notional " << m_terms.notionals.front();
    if (m_terms.notionals.size() > 1) text << " amortising";
    if (m_terms.simpleYieldInLastPeriod) text << ", simple yield in the last period";
    text << ", " << m_flows.front().accrualStart.ToString() << " to " << MaturityDate().ToString() << ".";
    return text.str();
}

}  // namespace zep
