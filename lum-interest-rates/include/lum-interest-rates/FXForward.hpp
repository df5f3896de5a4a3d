// An outright FX forward on a pair BASE/QUOTE (EUR/USD: USD per EUR): buy (+1) or sell (-1) the
// base notional on the delivery date at the contract rate. The fair rate follows from spot and
// covered interest parity, spot * DF_base / DF_quote between the spot and delivery dates, or
// from quoted forward points; the PV is in the quote currency.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace zep {

// The two curves of the pair, spot and the date spot settles.
struct FXMarket {
    double spot = 0.0;
    Date spotDate;
    const YieldCurve* quoteCurve = nullptr;  // discounts the quote currency (USD of EUR/USD)
    const YieldCurve* baseCurve = nullptr;   // discounts the base currency (EUR)
};

class FXForward {
public:
    FXForward(int buySell, double baseNotional, double contractRate, const Date& delivery);

    static double Outright(const FXMarket& market, const Date& delivery);
    // Spot plus the points over their scale (1e4 for EUR/USD pips).
    static double OutrightFromPoints(double spot, double points, double pointScale = 1e4);
    double PV(const FXMarket& market) const;
    // The PV when the outright is quoted directly (from forward points).
    double PV(double outright, const YieldCurve& quoteCurve) const;
    // Receive the base notional, pay its price in the quote currency (signs for a buyer).
    std::vector<CashFlow> CashFlows(const FXMarket& market) const;
    std::string Describe() const;

    int BuySell() const { return m_buySell; }
    double Notional() const { return m_notional; }
    const Date& Delivery() const { return m_delivery; }

private:
    int m_buySell;
    double m_notional;
    double m_contractRate;
    Date m_delivery;
};

void RequireFXMarket(const FXMarket& market);

}  // namespace zep
