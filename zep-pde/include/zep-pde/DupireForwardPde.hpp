// Vanilla prices for every strike and every expiry at once under a local volatility sigma(T, K),
// from Dupire's forward equation in the maturity T:
//   dC/dT = 1/2 sigma^2(T, K) K^2 d2C/dK2 - (rd - rf) K dC/dK - rf C,   C(0, K) = (S - K)+
// (puts start from (K - S)+). In u = C F(0) / (Pd(T) F(T)) the rate terms fold into one drift,
// -(rd - rf) = -d ln F / dT, and the equation is BlackScholesFdSolver's with strikes for spots,
// marched forward: Crank-Nicolson after two implicit half steps, strikes from
// min F exp(-6 sigma sqrt T) to max F exp(6 sigma sqrt T) (sigma the local volatility at the
// money at the last expiry) gathered at the spot, a step ending on every expiry. Every expiry's
// prices are kept, so one solve answers for the whole grid of strikes and expiries.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "lum-auxiliary/Interpolation.hpp"

namespace zep {

// What the forward equation reads from the market; times are years from today.
struct DupireMarket {
    std::function<double(double time, double strike)> localVolatility;
    std::function<double(double time)> forward;           // F(T); F(0) is the spot
    std::function<double(double time)> domesticDiscount;  // Pd(T)
};

class DupireForwardPde {
public:
    // optionType 0 call, 1 put. The market is read while solving and not kept.
    DupireForwardPde(const DupireMarket& market, std::vector<double> expiries, int optionType = 0,
                     int strikeNodes = 400, int timeSteps = 200);

    // The price at the expiry of index `expiryIndex` and a strike within the grid: a natural cubic
    // spline in the strike, exact where prices are linear in it (deep in or out of the money).
    double Price(std::size_t expiryIndex, double strike) const;
    const std::vector<double>& Expiries() const { return m_expiries; }
    double MinStrike() const { return m_minStrike; }
    double MaxStrike() const { return m_maxStrike; }

private:
    std::vector<double> m_expiries;
    double m_minStrike = 0.0, m_maxStrike = 0.0;
    std::vector<Interpolation<double, double, double>> m_prices;  // one per expiry, over the strikes
};

}  // namespace zep
