#include "lum-interest-rates/BondFuture.hpp"

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

BondFuture::BondFuture(std::vector<Bond> basket, const Date& delivery, double notionalCoupon)
    : m_basket(std::move(basket)), m_delivery(delivery), m_notionalCoupon(notionalCoupon) {
    ZEP_REQUIRE(!m_basket.empty(), "Bond future: the delivery basket is empty.");
    ZEP_REQUIRE(std::isfinite(notionalCoupon) && notionalCoupon > 0.0,
                "Bond future: the notional coupon '" + std::to_string(notionalCoupon) + "' must be positive.");
    for (const Bond& bond : m_basket) m_conversionFactors.push_back(bond.CleanPrice(notionalCoupon, delivery) / 100.0);
}

const Bond& BondFuture::BondAt(std::size_t bond) const {
    ZEP_REQUIRE(bond < m_basket.size(), "Bond future: bond " + std::to_string(bond) + " is not in the basket of " +
                                            std::to_string(m_basket.size()) + ".");
    return m_basket[bond];
}

double BondFuture::ConversionFactor(std::size_t bond) const {
    BondAt(bond);
    return m_conversionFactors[bond];
}

// Cost now: the dirty price. Proceeds at delivery: the invoice F * CF + accrued, plus each coupon
// received on the way with its interest at the repo rate r to delivery. Solving
// dirty (1 + r t) = invoice + sum c_i (1 + r t_i) for r.
double BondFuture::ImpliedRepo(std::size_t bond, double futuresPrice, double cleanPrice, const Date& settlement) const {
    const Bond& deliverable = BondAt(bond);
    ZEP_REQUIRE(std::isfinite(futuresPrice) && futuresPrice > 0.0,
                "Bond future: futures price '" + std::to_string(futuresPrice) + "' must be positive.");
    ZEP_REQUIRE(std::isfinite(cleanPrice) && cleanPrice > 0.0,
                "Bond future: clean price '" + std::to_string(cleanPrice) + "' must be positive.");
    ZEP_REQUIRE(settlement < m_delivery, "Bond future: settlement " + settlement.ToString() +
                                             " is not before the delivery date " + m_delivery.ToString() + ".");
    const double dirty = cleanPrice + deliverable.AccruedAmount(settlement);
    const double invoice = futuresPrice * m_conversionFactors[bond] + deliverable.AccruedAmount(m_delivery);
    const DayCounter moneyMarket(Act360);
    double received = 0.0, reinvested = 0.0;
    for (const auto& [date, amount] : deliverable.PaymentsBetween(settlement, m_delivery)) {
        received += amount;
        reinvested += amount * moneyMarket.YearFraction(date, m_delivery);
    }
    const double t = moneyMarket.YearFraction(settlement, m_delivery);
    return (invoice + received - dirty) / (dirty * t - reinvested);
}

std::size_t BondFuture::CheapestToDeliver(double futuresPrice, const std::vector<double>& cleanPrices,
                                          const Date& settlement) const {
    ZEP_REQUIRE(cleanPrices.size() == m_basket.size(), "Bond future: give one clean price per bond of the basket (" +
                                                           std::to_string(m_basket.size()) + ").");
    std::size_t cheapest = 0;
    double best = ImpliedRepo(0, futuresPrice, cleanPrices[0], settlement);
    for (std::size_t i = 1; i < m_basket.size(); ++i) {
        const double repo = ImpliedRepo(i, futuresPrice, cleanPrices[i], settlement);
        if (repo > best) best = repo, cheapest = i;
    }
    return cheapest;
}

}  // namespace zep
