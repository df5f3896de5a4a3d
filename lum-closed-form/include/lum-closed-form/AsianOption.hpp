// A European call or put on the average of the spot over fixing dates, some of which may already
// be past: the payoff max(phi (A - K), 0) is paid at the last fixing. The average is arithmetic or
// geometric over all N fixings, past ones included with their known values.
//
// Engines. Geometric average: "closed-form" (the log of the average is normal: exact),
// "continuous" (the future fixings replaced by a continuous average up to the last one), "mc".
// Arithmetic average: "tw" (Turnbull-Wakeman: a lognormal with the first two moments of the
// discrete average), "levy" (Levy: the same for a continuous average up to the last fixing), "mc"
// (Monte Carlo on exact lognormal fixings, the geometric average as control variate).
// Garman-Kohlhagen conventions: rd discounts, rd - rf carries the spot.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zep {

enum class AverageKind : int { Arithmetic = 0, Geometric = 1 };

struct McEstimate {
    double price;
    double standardError;
};

class AsianOption {
public:
    // fixingTimes: the future fixings in years, increasing and > 0; pastFixings: the spots fixed
    // already (they count in the average). average "arithmetic" or "geometric".
    AsianOption(int optionType, double strike, double volatility, const std::vector<double>& fixingTimes,
                double domesticRate, double foreignRate, double spot, const std::vector<double>& pastFixings = {},
                const std::string& average = "arithmetic");

    // "closed-form", "continuous", "tw", "levy" as the average allows, or "mc" with 100000 paths.
    double Price(const std::string& engine) const;
    // Monte Carlo with its standard error; `paths` 2 to 1e8, antithetic pairs.
    McEstimate MonteCarlo(std::int64_t paths, std::uint64_t seed = 42) const;

private:
    double GeometricDiscrete() const;
    double GeometricContinuous() const;
    double TurnbullWakeman() const;
    double Levy() const;
    // Black's formula on the future part of the arithmetic average from its first two moments,
    // the known part lowering the strike.
    double OnFuturePart(double first, double second) const;
    double Phi() const;

    int m_optionType;
    double m_strike, m_volatility, m_domesticRate, m_foreignRate, m_spot;
    std::vector<double> m_times;
    AverageKind m_average;
    std::size_t m_count;   // N, all fixings
    double m_pastSum;      // of the past fixings
    double m_pastLogSum;   // of their logarithms
    double m_payDiscount;  // e^(-rd T_last)
};

}  // namespace zep
