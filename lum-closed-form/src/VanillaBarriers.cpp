#include "lum-closed-form/VanillaBarriers.hpp"

#include <cmath>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/EuropeanBarrierBS.hpp"
#include "lum-closed-form/EuropeanBarrierVV_Fisher.hpp"
#include "zep-pde/FdmBarrierEngine.hpp"

namespace zep {

namespace {

bool IsCorridor(int type) { return type == 6 || type == 7; }

}  // namespace

VanillaBarriers::VanillaBarriers(const Terms& terms, double spot, double domesticRate, double foreignRate,
                                 boost::shared_ptr<const VolatilitySource> volatility, std::optional<SmileQuotes> smile)
    : m_terms(terms), m_spot(spot), m_domesticRate(domesticRate), m_foreignRate(foreignRate),
      m_volatility(std::move(volatility)), m_smile(smile), m_timeToExpiry(0.0), m_timeToDelivery(0.0) {
    ZEP_REQUIRE(m_volatility != nullptr, "VanillaBarriers: no volatility source");
    ZEP_REQUIRE(!(terms.premiumDate > terms.settlementDate), "Premium date should not later than settlement date!");
    ZEP_REQUIRE(terms.expiryDate >= terms.referenceDate && terms.deliveryDate >= terms.expiryDate,
                "VanillaBarriers: dates must run reference <= expiry <= delivery");
    ZEP_REQUIRE(terms.buySell == 1 || terms.buySell == -1, "VanillaBarriers: side must be +1 (buy) or -1 (sell)");
    m_timeToExpiry = terms.dayCounter.YearFraction(terms.referenceDate, terms.expiryDate);
    m_timeToDelivery = terms.dayCounter.YearFraction(terms.referenceDate, terms.deliveryDate);
    // The terms are checked once by the pricer they will meet.
    PriceAt(0.0, BlackScholes);
}

double VanillaBarriers::PriceAt(double volatilityShift, int pricingMethod) const {
    if (pricingMethod == BSReplicate) ZEP_FAIL("BSREPLICATE not supported for VanillaBarrier!");
    if (pricingMethod != BlackScholes && pricingMethod != VannaVolga && pricingMethod != FiniteDifference)
        ZEP_FAIL("PricingMethod not supported for VanillaBarrier!");
    const Terms& t = m_terms;
    const double sigma = m_volatility->Volatility(t.strike, m_timeToExpiry) + volatilityShift;
    const bool corridor = IsCorridor(t.barrierType);
    if (pricingMethod == VannaVolga) {
        ZEP_REQUIRE(m_smile.has_value(), "VanillaBarriers: Vanna-Volga needs the 25-delta smile quotes");
        const SmileQuotes& q = *m_smile;
        const double forward = m_spot * std::exp((m_domesticRate - m_foreignRate) * m_timeToDelivery);
        const double atm = q.atmVolatility.value_or(m_volatility->Volatility(forward, m_timeToExpiry)) + volatilityShift;
        if (corridor)
            return EuropeanBarrierVV_Fisher(m_spot, m_domesticRate, m_foreignRate, atm, m_timeToExpiry, m_timeToDelivery,
                                            q.riskReversal25, q.butterfly25, t.strike, t.callPut, t.barrierType,
                                            t.barrier, t.barrierUp, q.deltaType, q.premiumAdjusted)
                .Price();
        return EuropeanBarrierVV_Fisher(m_spot, m_domesticRate, m_foreignRate, atm, m_timeToExpiry, m_timeToDelivery,
                                        q.riskReversal25, q.butterfly25, t.strike, t.callPut, t.barrierType, t.barrier,
                                        q.deltaType, q.premiumAdjusted)
            .Price();
    }
    if (pricingMethod == FiniteDifference) {
        ZEP_REQUIRE(!corridor, "PricingMethod not supported for VanillaBarrier!");
        return FdmBarrierEngine(t.callPut, t.barrierType, t.strike, t.barrier, sigma, m_timeToExpiry, m_timeToDelivery,
                                m_domesticRate, m_foreignRate, m_spot, 400, 400)
            .Price();
    }
    if (corridor)
        return EuropeanBarrierBS(t.callPut, t.barrierType, t.strike, t.barrier, t.barrierUp, sigma, m_timeToExpiry,
                                 m_timeToDelivery, m_domesticRate, m_foreignRate, m_spot)
            .Price();
    return EuropeanBarrierBS(t.callPut, t.barrierType, t.strike, t.barrier, sigma, m_timeToExpiry, m_timeToDelivery,
                             m_domesticRate, m_foreignRate, m_spot)
        .Price();
}

double VanillaBarriers::Price(int pricingMethod) const { return PriceAt(0.0, pricingMethod); }

double VanillaBarriers::PV(int pricingMethod) const { return m_terms.buySell * m_terms.faceValue * Price(pricingMethod); }

double VanillaBarriers::DeltaPrice(const std::string& fieldName, double bump, int pricingMethod) const {
    if (fieldName != "spot_Volatility") ZEP_FAIL("not supported fieldName!");
    if (bump == 0.0) return 0.0;
    return (PriceAt(bump, pricingMethod) - PriceAt(-bump, pricingMethod)) / (2.0 * bump);
}

VanillaBarriers VanillaBarriers::OnMovedMarket(double spot, double volatilityShift, double riskReversal25Shift,
                                               double butterfly25Shift) const {
    ZEP_REQUIRE(spot > 0.0, "VanillaBarriers: the moved spot must be above zero");
    VanillaBarriers moved = *this;
    moved.m_spot = spot;
    moved.m_volatility = boost::make_shared<ShiftedVolatility>(m_volatility, volatilityShift);
    if (moved.m_smile) {
        if (moved.m_smile->atmVolatility) *moved.m_smile->atmVolatility += volatilityShift;
        moved.m_smile->riskReversal25 += riskReversal25Shift;
        moved.m_smile->butterfly25 += butterfly25Shift;
    }
    return moved;
}

}  // namespace zep
