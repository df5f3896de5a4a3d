#include "zep-pde/DupireForwardPde.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "zep-pde/BlackScholesFdSolver.hpp"
#include "CellAveragePayoff.hpp"

namespace zep {
namespace {

// Beyond this a grid is a mistake, not a finer price: refused before allocating it.
constexpr int kMaxGridSize = 100000;
// Strikes gather at the spot, where the starting payoff has its kink.
constexpr double kSpotConcentration = 0.05;
// The grid's reach in standard deviations, and the least volatility that sets it: a near-zero
// local volatility at the money must not collapse the grid onto the spot.
constexpr double kReach = 6.0;
constexpr double kLeastReachVolatility = 0.01;

void RequireMarket(const DupireMarket& market, const std::vector<double>& expiries, int optionType, int strikeNodes,
                   int timeSteps) {
    ZEP_REQUIRE(market.localVolatility && market.forward && market.domesticDiscount,
                "DupireForwardPde: the local volatility, forward and discount functions are required");
    ZEP_REQUIRE(optionType == 0 || optionType == 1, "DupireForwardPde: option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(strikeNodes >= 5 && strikeNodes <= kMaxGridSize,
                "DupireForwardPde: the grid needs at least 5 strike nodes, at most 100000");
    ZEP_REQUIRE(!expiries.empty(), "DupireForwardPde: no expiries");
    ZEP_REQUIRE(timeSteps >= 2 && timeSteps <= kMaxGridSize && static_cast<std::size_t>(timeSteps) >= expiries.size(),
                "DupireForwardPde: the grid needs at least 2 time steps and one per expiry, at most 100000");
    for (std::size_t j = 0; j < expiries.size(); ++j)
        ZEP_REQUIRE(std::isfinite(expiries[j]) && expiries[j] > (j == 0 ? 0.0 : expiries[j - 1]),
                    "DupireForwardPde: expiries must be finite, positive and increasing");
}

double RequirePositive(double value, const char* what, double time) {
    ZEP_REQUIRE(std::isfinite(value) && value > 0.0, std::string("DupireForwardPde: the ") + what + " at time " +
                                                         std::to_string(time) + " is not a finite positive number");
    return value;
}

// (phi (S - K))+ = (phi (S - K) + |S - K|) / 2 with the kink |S - K| averaged over each
// strike's cell (midpoint to midpoint), less what averaging does to a straight line on an uneven
// cell: away from the spot the payoff stays exact, and calls less puts are S - K at every node.
std::vector<double> SmoothedPayoff(const std::vector<double>& strikes, double spot, double phi) {
    const std::size_t last = strikes.size() - 1;
    std::vector<double> values(strikes.size());
    for (std::size_t i = 0; i <= last; ++i) {
        const double from = i == 0 ? strikes[0] : 0.5 * (strikes[i - 1] + strikes[i]);
        const double to = i == last ? strikes[last] : 0.5 * (strikes[i] + strikes[i + 1]);
        const double kink = detail::CellAveragePayoff(1.0, spot, from, to) +
                            detail::CellAveragePayoff(-1.0, spot, from, to) - std::abs(spot - 0.5 * (from + to)) +
                            std::abs(spot - strikes[i]);
        values[i] = 0.5 * (phi * (spot - strikes[i]) + kink);
    }
    return values;
}

}  // namespace

DupireForwardPde::DupireForwardPde(const DupireMarket& market, std::vector<double> expiries, int optionType,
                                   int strikeNodes, int timeSteps)
    : m_expiries(std::move(expiries)) {
    RequireMarket(market, m_expiries, optionType, strikeNodes, timeSteps);
    const double horizon = m_expiries.back();
    const double spot = RequirePositive(market.forward(0.0), "forward", 0.0);
    const double lastForward = RequirePositive(market.forward(horizon), "forward", horizon);
    const auto localVolatility = [&](double time, double strike) {
        const double volatility = market.localVolatility(time, strike);
        ZEP_REQUIRE(std::isfinite(volatility) && volatility >= 0.0,
                    "DupireForwardPde: the local volatility at time " + std::to_string(time) + ", strike " +
                        std::to_string(strike) + " is not a finite non-negative number");
        return volatility;
    };
    const double reachVolatility = std::max(localVolatility(horizon, lastForward), kLeastReachVolatility);
    const double reach = std::exp(kReach * reachVolatility * std::sqrt(horizon));
    FdGridSpec grid{static_cast<std::size_t>(strikeNodes), static_cast<std::size_t>(timeSteps),
                    std::min(spot, lastForward) / reach, std::max(spot, lastForward) * reach};
    ZEP_REQUIRE(std::isfinite(grid.spotMax) && grid.spotMin > 0.0,
                "DupireForwardPde: the local volatility at the money is too high for a strike grid");
    grid.concentration = kSpotConcentration;
    grid.centre = spot;
    // u carries the forward's growth as a drift of -d ln F / dT, exact over each step.
    const auto drift = [&](double from, double to) {
        const double growth = std::log(RequirePositive(market.forward(to), "forward", to) /
                                       RequirePositive(market.forward(from), "forward", from));
        return -growth / (to - from);
    };
    const BlackScholesFdSolver solver(grid, FdCoefficients{localVolatility, drift}, m_expiries);
    const std::vector<double>& strikes = solver.Spots();
    m_minStrike = strikes.front();
    m_maxStrike = strikes.back();
    std::vector<double> values = SmoothedPayoff(strikes, spot, optionType == 0 ? 1.0 : -1.0);
    m_prices.reserve(m_expiries.size());
    std::size_t next = 0;
    solver.March(values, [&](std::size_t done, std::vector<double>& u) {
        if (next == m_expiries.size() || done != solver.StopSteps()[next]) return;
        const double expiry = m_expiries[next++];
        for (const double value : u)
            ZEP_REQUIRE(std::isfinite(value), "DupireForwardPde: the march gave a non-finite price by time " +
                                                  std::to_string(expiry));
        const double toPrice = RequirePositive(market.domesticDiscount(expiry), "domestic discount factor", expiry) *
                               market.forward(expiry) / spot;
        std::vector<double> prices(u.size());
        for (std::size_t i = 0; i < u.size(); ++i) prices[i] = toPrice * u[i];
        m_prices.emplace_back(strikes, std::move(prices), CubicInterpolation, NoExtrapolation);
    });
}

double DupireForwardPde::Price(std::size_t expiryIndex, double strike) const {
    ZEP_REQUIRE(expiryIndex < m_expiries.size(), "DupireForwardPde: expiry index " + std::to_string(expiryIndex) +
                                                     " beyond the " + std::to_string(m_expiries.size()) +
                                                     " expiries");
    ZEP_REQUIRE(strike >= m_minStrike && strike <= m_maxStrike,
                "DupireForwardPde: strike " + std::to_string(strike) + " lies outside the grid [" +
                    std::to_string(m_minStrike) + ", " + std::to_string(m_maxStrike) + "]");
    return m_prices[expiryIndex].Evaluate(strike);
}

}  // namespace zep
