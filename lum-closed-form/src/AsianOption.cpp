#include "lum-closed-form/AsianOption.hpp"

#include <algorithm>
#include <cmath>
#include <random>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {
namespace {

constexpr std::int64_t kDefaultPaths = 100000;

// Undiscounted Black price on a lognormal with this mean and variance of its log.
double Black(double phi, double mean, double strike, double variance) {
    if (variance <= 0.0) return std::max(phi * (mean - strike), 0.0);
    const double root = std::sqrt(variance);
    const double d1 = (std::log(mean / strike) + 0.5 * variance) / root;
    return phi * (mean * NormalCdf(phi * d1) - strike * NormalCdf(phi * (d1 - root)));
}

// (e^(x T) - 1) / x, T at x = 0.
double GrowthIntegral(double x, double t) { return std::abs(x * t) < 1e-12 ? t : std::expm1(x * t) / x; }

// d/dx of GrowthIntegral: (T x e^(x T) - (e^(x T) - 1)) / x^2, T^2 / 2 at x = 0.
double GrowthIntegralSlope(double x, double t) {
    if (std::abs(x * t) < 1e-6) return 0.5 * t * t * (1.0 + 2.0 * x * t / 3.0);
    return (t * x * std::exp(x * t) - std::expm1(x * t)) / (x * x);
}

}  // namespace

AsianOption::AsianOption(int optionType, double strike, double volatility, const std::vector<double>& fixingTimes,
                         double domesticRate, double foreignRate, double spot, const std::vector<double>& pastFixings,
                         const std::string& average)
    : m_optionType(optionType), m_strike(strike), m_volatility(volatility), m_domesticRate(domesticRate),
      m_foreignRate(foreignRate), m_spot(spot), m_times(fixingTimes) {
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put, "option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "strike must be a finite number > 0");
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "spot must be a finite number > 0");
    ZEP_REQUIRE(volatility >= BSVanilla::kMinimumVolatility && std::isfinite(volatility),
                "volatility must be a finite number >= 1e-10");
    ZEP_REQUIRE(std::isfinite(domesticRate) && std::isfinite(foreignRate), "rates must be finite numbers");
    ZEP_REQUIRE(average == "arithmetic" || average == "geometric", "average must be 'arithmetic' or 'geometric'");
    m_average = average == "arithmetic" ? AverageKind::Arithmetic : AverageKind::Geometric;
    ZEP_REQUIRE(!fixingTimes.empty() || !pastFixings.empty(), "an Asian option needs at least one fixing");
    for (std::size_t i = 0; i < fixingTimes.size(); ++i)
        ZEP_REQUIRE(fixingTimes[i] > 0.0 && std::isfinite(fixingTimes[i]) && (i == 0 || fixingTimes[i] > fixingTimes[i - 1]),
                    "fixing times must be finite, > 0 and increasing");
    m_count = fixingTimes.size() + pastFixings.size();
    m_pastSum = 0.0;
    m_pastLogSum = 0.0;
    for (const double fixing : pastFixings) {
        ZEP_REQUIRE(fixing > 0.0 && std::isfinite(fixing), "past fixings must be finite numbers > 0");
        m_pastSum += fixing;
        m_pastLogSum += std::log(fixing);
    }
    m_payDiscount = m_times.empty() ? 1.0 : std::exp(-domesticRate * m_times.back());
}

double AsianOption::Price(const std::string& engine) const {
    const bool geometric = m_average == AverageKind::Geometric;
    if (engine == "mc") return MonteCarlo(kDefaultPaths).price;
    if (geometric && engine == "closed-form") return GeometricDiscrete();
    if (geometric && engine == "continuous") return GeometricContinuous();
    if (!geometric && engine == "tw") return TurnbullWakeman();
    if (!geometric && engine == "levy") return Levy();
    ZEP_FAIL("unknown Asian engine '" + engine + "' for a" + (geometric ? " geometric" : "n arithmetic") +
             " average: use " + (geometric ? "'closed-form', 'continuous'" : "'tw', 'levy'") + " or 'mc'");
}

double AsianOption::Phi() const { return m_optionType == BSVanilla::Call ? 1.0 : -1.0; }

// log G = past log-sum / N + (1 / N) sum ln S(t_i): normal, with the covariances
// sigma^2 min(t_i, t_j); each t_i is the minimum for itself and the 2 (n - 1 - i) pairs after it.
double AsianOption::GeometricDiscrete() const {
    const double n = static_cast<double>(m_count);
    const double drift = m_domesticRate - m_foreignRate - 0.5 * m_volatility * m_volatility;
    double mean = m_pastLogSum / n, variance = 0.0;
    const std::size_t future = m_times.size();
    for (std::size_t i = 0; i < future; ++i) {
        mean += (std::log(m_spot) + drift * m_times[i]) / n;
        variance += m_times[i] * static_cast<double>(2 * (future - 1 - i) + 1);
    }
    variance *= m_volatility * m_volatility / (n * n);
    return m_payDiscount * Black(Phi(), std::exp(mean + 0.5 * variance), m_strike, variance);
}

// The future fixings' share n / N of the log-average taken as the continuous average of ln S over
// [0, T]: mean ln S + (b - sigma^2 / 2) T / 2, variance sigma^2 T / 3.
double AsianOption::GeometricContinuous() const {
    const double share = static_cast<double>(m_times.size()) / static_cast<double>(m_count);
    const double t = m_times.empty() ? 0.0 : m_times.back();
    const double drift = m_domesticRate - m_foreignRate - 0.5 * m_volatility * m_volatility;
    const double mean = m_pastLogSum / static_cast<double>(m_count) + share * (std::log(m_spot) + 0.5 * drift * t);
    const double variance = share * share * m_volatility * m_volatility * t / 3.0;
    return m_payDiscount * Black(Phi(), std::exp(mean + 0.5 * variance), m_strike, variance);
}

// The known part of the average lowers the strike; the future part X = (1 / N) sum S(t_i) is taken
// lognormal with E[X] and E[X^2] = (1 / N^2) sum_i F_i e^(sigma^2 t_i) (F_i + 2 sum_(j > i) F_j).
double AsianOption::TurnbullWakeman() const {
    const double n = static_cast<double>(m_count);
    const double carry = m_domesticRate - m_foreignRate;
    const double variance = m_volatility * m_volatility;
    double first = 0.0, second = 0.0, later = 0.0;
    for (std::size_t i = m_times.size(); i-- > 0;) {
        const double forward = m_spot * std::exp(carry * m_times[i]);
        second += forward * std::exp(variance * m_times[i]) * (forward + 2.0 * later);
        later += forward;
        first += forward;
    }
    return OnFuturePart(first / n, second / (n * n));
}

// As Turnbull-Wakeman with X = (n / N) (1 / T) Integral_0^T S(t) dt:
// E[X] = S g(b) / T and E[X^2] = 2 S^2 (g(2b + sigma^2) - g(b)) / ((b + sigma^2) T^2), g the
// growth integral (e^(x T) - 1) / x, both times (n / N) to the power of the moment.
double AsianOption::Levy() const {
    if (m_times.empty()) return OnFuturePart(0.0, 0.0);
    const double share = static_cast<double>(m_times.size()) / static_cast<double>(m_count);
    const double t = m_times.back();
    const double b = m_domesticRate - m_foreignRate;
    const double variance = m_volatility * m_volatility;
    const double c = b + variance;
    const double quotient = std::abs(c * t) < 1e-10 ? GrowthIntegralSlope(b, t)
                                                    : (GrowthIntegral(2.0 * b + variance, t) - GrowthIntegral(b, t)) / c;
    const double first = share * m_spot * GrowthIntegral(b, t) / t;
    const double second = share * share * 2.0 * m_spot * m_spot * quotient / (t * t);
    return OnFuturePart(first, second);
}

double AsianOption::OnFuturePart(double first, double second) const {
    const double strike = m_strike - m_pastSum / static_cast<double>(m_count);
    if (m_times.empty()) return std::max(-Phi() * strike, 0.0);  // every fixing known: paid as fixed
    // The known part already exceeds the strike: the call is a forward, the put worthless.
    if (strike <= 0.0) return m_optionType == BSVanilla::Call ? m_payDiscount * (first - strike) : 0.0;
    const double logVariance = std::max(std::log(second / (first * first)), 0.0);
    return m_payDiscount * Black(Phi(), first, strike, logVariance);
}

McEstimate AsianOption::MonteCarlo(std::int64_t paths, std::uint64_t seed) const {
    ZEP_REQUIRE(paths >= 2 && paths <= 100000000, "Monte Carlo paths must lie between 2 and 1e8");
    const double n = static_cast<double>(m_count);
    const double phi = Phi();
    const double drift = m_domesticRate - m_foreignRate - 0.5 * m_volatility * m_volatility;
    const bool geometric = m_average == AverageKind::Geometric;
    const double logSpot = std::log(m_spot);
    std::mt19937_64 generator(seed);
    std::normal_distribution<double> normal;
    const std::int64_t pairs = paths / 2;
    double sumX = 0.0, sumY = 0.0, sumXX = 0.0, sumYY = 0.0, sumXY = 0.0;
    // One pair of antithetic paths per sample: payoffs x (the average asked for) and y (geometric).
    const auto payoffs = [&](double sign, const std::vector<double>& draws, double& x, double& y) {
        double logS = logSpot, previous = 0.0, sum = m_pastSum, logSum = m_pastLogSum;
        for (std::size_t i = 0; i < m_times.size(); ++i) {
            const double dt = m_times[i] - previous;
            logS += drift * dt + sign * m_volatility * std::sqrt(dt) * draws[i];
            previous = m_times[i];
            sum += std::exp(logS);
            logSum += logS;
        }
        y = std::max(phi * (std::exp(logSum / n) - m_strike), 0.0);
        x = geometric ? y : std::max(phi * (sum / n - m_strike), 0.0);
    };
    std::vector<double> draws(m_times.size());
    for (std::int64_t p = 0; p < pairs; ++p) {
        for (double& z : draws) z = normal(generator);
        double x1, y1, x2, y2;
        payoffs(1.0, draws, x1, y1);
        payoffs(-1.0, draws, x2, y2);
        const double x = 0.5 * (x1 + x2), y = 0.5 * (y1 + y2);
        sumX += x, sumY += y, sumXX += x * x, sumYY += y * y, sumXY += x * y;
    }
    const double count = static_cast<double>(pairs);
    const double meanX = sumX / count, meanY = sumY / count;
    const double varX = std::max(sumXX / count - meanX * meanX, 0.0);
    const double varY = std::max(sumYY / count - meanY * meanY, 0.0);
    const double covariance = sumXY / count - meanX * meanY;
    if (geometric || varY == 0.0)
        return {m_payDiscount * meanX, m_payDiscount * std::sqrt(varX / std::max(count - 1.0, 1.0))};
    // Control variate: x - beta (y - E[y]), E[y] from the geometric closed form.
    const double beta = covariance / varY;
    const double exactY = GeometricDiscrete() / m_payDiscount;
    const double residual = std::max(varX - 2.0 * beta * covariance + beta * beta * varY, 0.0);
    return {m_payDiscount * (meanX - beta * (meanY - exactY)),
            m_payDiscount * std::sqrt(residual / std::max(count - 1.0, 1.0))};
}

}  // namespace zep
