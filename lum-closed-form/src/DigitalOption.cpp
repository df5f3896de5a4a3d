#include "lum-closed-form/DigitalOption.hpp"

#include <cmath>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep {

namespace {

bool IsCall(int type) { return type == 0 || type == 2; }
bool IsCash(int type) { return type == 0 || type == 1; }

}  // namespace

DigitalOption::DigitalOption(const Terms& terms, double spot, double domesticRate, double foreignRate,
                             boost::shared_ptr<const VolatilitySource> volatility)
    : m_terms(terms), m_spot(spot), m_domesticRate(domesticRate), m_foreignRate(foreignRate),
      m_source(std::move(volatility)), m_timeToExpiry(0.0), m_timeToDelivery(0.0), m_volatility(0.0) {
    ZEP_REQUIRE(m_source != nullptr, "DigitalOption: no volatility source");
    ZEP_REQUIRE(terms.expiryDate >= terms.referenceDate && terms.deliveryDate >= terms.expiryDate,
                "DigitalOption: dates must run reference <= expiry <= delivery");
    ZEP_REQUIRE(terms.buySell == 1 || terms.buySell == -1, "DigitalOption: side must be +1 (buy) or -1 (sell)");
    ZEP_REQUIRE(terms.digitalType >= 0 && terms.digitalType <= 3, "Unsupported digital option type");
    m_timeToExpiry = terms.dayCounter.YearFraction(terms.referenceDate, terms.expiryDate);
    m_timeToDelivery = terms.dayCounter.YearFraction(terms.referenceDate, terms.deliveryDate);
    m_volatility = m_source->Volatility(terms.strike, m_timeToExpiry);
    // The engine checks the market and the strike once, here, rather than at the first price.
    Engine(Analytic).Price();
}

DigitalOptionBS DigitalOption::Engine(int pricingMethod) const {
    return DigitalOptionBS(m_terms.digitalType, m_terms.strike, m_volatility, m_timeToExpiry, m_timeToDelivery,
                           m_domesticRate, m_foreignRate, m_spot, m_terms.payout, pricingMethod);
}

double DigitalOption::SmilePrice() const {
    const Terms& t = m_terms;
    // Black-Scholes pieces at the strike's own volatility; the smile enters through its slope.
    BSVanilla vanilla(IsCall(t.digitalType) ? BSVanilla::Call : BSVanilla::Put, t.strike, m_volatility,
                      m_timeToExpiry, m_timeToDelivery, m_domesticRate, m_foreignRate, m_spot);
    const double step = kSmileSlopeStep * t.strike;
    const double slope = (m_source->Volatility(t.strike + step, m_timeToExpiry) -
                          m_source->Volatility(t.strike - step, m_timeToExpiry)) /
                         (2.0 * step);
    const int cashType = IsCall(t.digitalType) ? 0 : 1;
    const double bsCash = DigitalOptionBS(cashType, t.strike, m_volatility, m_timeToExpiry, m_timeToDelivery,
                                          m_domesticRate, m_foreignRate, m_spot)
                              .Price();
    const double vegaTerm = vanilla.Vega() * slope;
    const double cash = IsCall(t.digitalType) ? bsCash - vegaTerm : bsCash + vegaTerm;
    if (IsCash(t.digitalType)) return t.payout * cash;
    const double asset = IsCall(t.digitalType) ? vanilla.Price() + t.strike * cash : t.strike * cash - vanilla.Price();
    return t.payout * asset;
}

double DigitalOption::Price(int pricingMethod) const {
    // Expired, the digital is its payoff whatever the smile says.
    if (pricingMethod == Smile && m_timeToExpiry > BSVanilla::kExpiryThreshold) return SmilePrice();
    return Engine(pricingMethod == Smile ? Analytic : pricingMethod).Price();
}

double DigitalOption::PV(int pricingMethod) const { return m_terms.buySell * Price(pricingMethod); }
double DigitalOption::Delta() const { return Engine(Analytic).Delta(); }
double DigitalOption::Gamma() const { return Engine(Analytic).Gamma(); }
double DigitalOption::Vega() const { return Engine(Analytic).Vega(); }
double DigitalOption::Theta() const { return Engine(Analytic).Theta(); }
double DigitalOption::Rho() const { return Engine(Analytic).Rho(); }

DigitalOption DigitalOption::OnMovedMarket(double spot, double volatilityShift) const {
    ZEP_REQUIRE(spot > 0.0, "DigitalOption: the moved spot must be above zero");
    DigitalOption moved = *this;
    moved.m_spot = spot;
    moved.m_source = boost::make_shared<ShiftedVolatility>(m_source, volatilityShift);
    moved.m_volatility = m_volatility + volatilityShift;
    return moved;
}

}  // namespace zep
