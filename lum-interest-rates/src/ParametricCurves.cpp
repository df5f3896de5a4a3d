#include "lum-interest-rates/ParametricCurves.hpp"

#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/NloptOptimizer.hpp"

namespace zep {

namespace {

// (1 - exp(-x)) / x, by its series near zero where the quotient loses digits.
double Loading(double x) { return std::abs(x) < 1e-8 ? 1.0 - x / 2.0 : -std::expm1(-x) / x; }

double Hump(double x) { return Loading(x) - std::exp(-x); }

void CheckShortRate(const char* model, double a, double sigma) {
    ZEP_REQUIRE(a > 0.0 && sigma >= 0.0 && std::isfinite(a) && std::isfinite(sigma),
                std::string(model) + ": mean reversion must be positive and volatility not negative");
}

void CheckFitInputs(const char* model, const std::vector<double>& times, const std::vector<double>& rates,
                    std::size_t parameters) {
    ZEP_REQUIRE(times.size() == rates.size(), std::string(model) + ": one zero rate per time");
    ZEP_REQUIRE(times.size() >= parameters, std::string(model) + ": fewer zero rates than parameters");
    for (std::size_t i = 0; i < times.size(); ++i)
        ZEP_REQUIRE(times[i] > 0.0 && std::isfinite(rates[i]), std::string(model) + ": times must be positive, rates finite");
}

// Given the decay times the zero rate is linear in the betas: they come from a least-squares
// solve, and only the decay times are searched (variable projection). Returns the betas and the
// sum of squared residuals; `loadings(t)` gives each beta's coefficient at time t.
template <class Loadings>
std::pair<std::vector<double>, double> LinearFit(const std::vector<double>& times, const std::vector<double>& rates,
                                                 std::size_t betas, const Loadings& loadings) {
    std::vector<double> normal(betas * betas, 0.0), right(betas, 0.0), row(betas);
    for (std::size_t i = 0; i < times.size(); ++i) {
        loadings(times[i], row.data());
        for (std::size_t j = 0; j < betas; ++j) {
            right[j] += row[j] * rates[i];
            for (std::size_t k = 0; k < betas; ++k) normal[j * betas + k] += row[j] * row[k];
        }
    }
    // Gaussian elimination with partial pivoting on the small normal equations.
    for (std::size_t c = 0; c < betas; ++c) {
        std::size_t pivot = c;
        for (std::size_t r = c + 1; r < betas; ++r)
            if (std::abs(normal[r * betas + c]) > std::abs(normal[pivot * betas + c])) pivot = r;
        if (normal[pivot * betas + c] == 0.0) return {{}, std::numeric_limits<double>::infinity()};
        for (std::size_t k = 0; k < betas; ++k) std::swap(normal[c * betas + k], normal[pivot * betas + k]);
        std::swap(right[c], right[pivot]);
        for (std::size_t r = c + 1; r < betas; ++r) {
            const double factor = normal[r * betas + c] / normal[c * betas + c];
            for (std::size_t k = c; k < betas; ++k) normal[r * betas + k] -= factor * normal[c * betas + k];
            right[r] -= factor * right[c];
        }
    }
    std::vector<double> beta(betas);
    for (std::size_t r = betas; r-- > 0;) {
        double sum = right[r];
        for (std::size_t k = r + 1; k < betas; ++k) sum -= normal[r * betas + k] * beta[k];
        beta[r] = sum / normal[r * betas + r];
    }
    double cost = 0.0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        loadings(times[i], row.data());
        double fitted = 0.0;
        for (std::size_t j = 0; j < betas; ++j) fitted += beta[j] * row[j];
        cost += (fitted - rates[i]) * (fitted - rates[i]);
    }
    return {beta, std::isfinite(cost) ? cost : std::numeric_limits<double>::infinity()};
}

constexpr double kMinimumDecay = 0.05, kMaximumDecay = 30.0;

}  // namespace

NelsonSiegel::NelsonSiegel(double beta0, double beta1, double beta2, double tau)
    : m_beta0(beta0), m_beta1(beta1), m_beta2(beta2), m_tau(tau) {
    ZEP_REQUIRE(tau > 0.0, "NelsonSiegel: tau must be positive");
}

double NelsonSiegel::Rate(double t) const {
    const double x = std::max(t, 0.0) / m_tau;
    return m_beta0 + m_beta1 * Loading(x) + m_beta2 * Hump(x);
}

Svensson::Svensson(double beta0, double beta1, double beta2, double beta3, double tau1, double tau2)
    : m_beta0(beta0), m_beta1(beta1), m_beta2(beta2), m_beta3(beta3), m_tau1(tau1), m_tau2(tau2) {
    ZEP_REQUIRE(tau1 > 0.0 && tau2 > 0.0, "Svensson: tau1 and tau2 must be positive");
}

double Svensson::Rate(double t) const {
    const double x1 = std::max(t, 0.0) / m_tau1, x2 = std::max(t, 0.0) / m_tau2;
    return m_beta0 + m_beta1 * Loading(x1) + m_beta2 * Hump(x1) + m_beta3 * Hump(x2);
}

Vasicek::Vasicek(double r0, double meanReversion, double longTermRate, double volatility)
    : m_r0(r0), m_a(meanReversion), m_b(longTermRate), m_sigma(volatility) {
    CheckShortRate("Vasicek", m_a, m_sigma);
}

double Vasicek::DiscountFactor(double t) const {
    const double B = -std::expm1(-m_a * t) / m_a;
    const double lnA = (B - t) * (m_a * m_a * m_b - m_sigma * m_sigma / 2.0) / (m_a * m_a) -
                       m_sigma * m_sigma * B * B / (4.0 * m_a);
    return std::exp(lnA - B * m_r0);
}

double Vasicek::Rate(double t) const { return t > 1e-12 ? -std::log(DiscountFactor(t)) / t : m_r0; }

CoxIngersollRoss::CoxIngersollRoss(double r0, double meanReversion, double longTermRate, double volatility)
    : m_r0(r0), m_a(meanReversion), m_b(longTermRate), m_sigma(volatility) {
    CheckShortRate("CoxIngersollRoss", m_a, m_sigma);
    ZEP_REQUIRE(r0 >= 0.0 && longTermRate >= 0.0, "CoxIngersollRoss: rates must not be negative");
}

double CoxIngersollRoss::DiscountFactor(double t) const {
    if (m_sigma == 0.0) return Vasicek(m_r0, m_a, m_b, 0.0).DiscountFactor(t);  // the deterministic limit
    const double gamma = std::sqrt(m_a * m_a + 2.0 * m_sigma * m_sigma);
    const double growth = std::expm1(gamma * t);
    const double denominator = (gamma + m_a) * growth + 2.0 * gamma;
    const double B = 2.0 * growth / denominator;
    const double lnA = 2.0 * m_a * m_b / (m_sigma * m_sigma) *
                       (std::log(2.0 * gamma / denominator) + (m_a + gamma) * t / 2.0);
    return std::exp(lnA - B * m_r0);
}

double CoxIngersollRoss::Rate(double t) const { return t > 1e-12 ? -std::log(DiscountFactor(t)) / t : m_r0; }

NelsonSiegel FitNelsonSiegel(const std::vector<double>& times, const std::vector<double>& zeroRates) {
    CheckFitInputs("NelsonSiegel", times, zeroRates, 4);
    const auto fitAt = [&](double tau) {
        return LinearFit(times, zeroRates, 3, [tau](double t, double* row) {
            row[0] = 1.0;
            row[1] = Loading(t / tau);
            row[2] = Hump(t / tau);
        });
    };
    const Objective cost = [&](const std::vector<double>& x) { return fitAt(x[0]).second; };
    // A log-spaced grid finds the basin, Subplex polishes the decay time.
    double bestTau = kMinimumDecay, bestCost = std::numeric_limits<double>::infinity();
    for (int k = 0; k <= 200; ++k) {
        const double tau = kMinimumDecay * std::pow(kMaximumDecay / kMinimumDecay, k / 200.0);
        const double value = fitAt(tau).second;
        if (value < bestCost) bestCost = value, bestTau = tau;
    }
    const double tau = NloptOptimizer(NloptAlgorithm::Subplex, 2000, 1e-14)
                           .Minimize(cost, {bestTau}, {{kMinimumDecay}, {kMaximumDecay}}).x[0];
    const auto [beta, residual] = fitAt(tau);
    ZEP_REQUIRE(!beta.empty(), "NelsonSiegel: the fit did not converge");
    return NelsonSiegel(beta[0], beta[1], beta[2], tau);
}

Svensson FitSvensson(const std::vector<double>& times, const std::vector<double>& zeroRates) {
    CheckFitInputs("Svensson", times, zeroRates, 6);
    const auto fitAt = [&](double tau1, double tau2) {
        return LinearFit(times, zeroRates, 4, [tau1, tau2](double t, double* row) {
            row[0] = 1.0;
            row[1] = Loading(t / tau1);
            row[2] = Hump(t / tau1);
            row[3] = Hump(t / tau2);
        });
    };
    const Objective cost = [&](const std::vector<double>& x) { return fitAt(x[0], x[1]).second; };
    std::vector<double> best{kMinimumDecay, kMaximumDecay};
    double bestCost = std::numeric_limits<double>::infinity();
    for (int i = 0; i <= 40; ++i)
        for (int j = 0; j <= 40; ++j) {
            const double tau1 = kMinimumDecay * std::pow(kMaximumDecay / kMinimumDecay, i / 40.0);
            const double tau2 = kMinimumDecay * std::pow(kMaximumDecay / kMinimumDecay, j / 40.0);
            const double value = fitAt(tau1, tau2).second;
            if (value < bestCost) bestCost = value, best = {tau1, tau2};
        }
    const std::vector<double> taus = NloptOptimizer(NloptAlgorithm::Subplex, 4000, 1e-14)
                                         .Minimize(cost, best, {{kMinimumDecay, kMinimumDecay}, {kMaximumDecay, kMaximumDecay}})
                                         .x;
    const auto [beta, residual] = fitAt(taus[0], taus[1]);
    ZEP_REQUIRE(!beta.empty(), "Svensson: the fit did not converge");
    return Svensson(beta[0], beta[1], beta[2], beta[3], taus[0], taus[1]);
}

}  // namespace zep
