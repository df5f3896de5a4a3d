// Term structures given by a formula, each a continuously compounded zero rate y(t) (t in years;
// at t = 0 the instantaneous short rate), attached to a YieldCurve through SetParametricModel:
// - Nelson-Siegel: y = b0 + b1 L(t/tau) + b2 (L(t/tau) - exp(-t/tau)), L(x) = (1 - exp(-x)) / x;
// - Svensson: Nelson-Siegel plus b3 (L(t/tau2) - exp(-t/tau2));
// - Vasicek, dr = a (b - r) dt + sigma dW: P(t) = exp(lnA - B r0), B = (1 - exp(-a t)) / a,
//   lnA = (B - t)(a^2 b - sigma^2 / 2) / a^2 - sigma^2 B^2 / (4 a);
// - Cox-Ingersoll-Ross, dr = a (b - r) dt + sigma sqrt(r) dW, gamma = sqrt(a^2 + 2 sigma^2):
//   B = 2 (e^{gamma t} - 1) / D, A = (2 gamma e^{(a + gamma) t / 2} / D)^{2 a b / sigma^2},
//   D = (gamma + a)(e^{gamma t} - 1) + 2 gamma;
// the short-rate models' zero rate is -ln P(t) / t.
#pragma once

#include <vector>

#include "lum-interest-rates/ParametricRateModel.hpp"

namespace zep {

class NelsonSiegel final : public ParametricRateModel {
public:
    NelsonSiegel(double beta0, double beta1, double beta2, double tau);
    double Rate(double t) const override;
    std::vector<double> Parameters() const { return {m_beta0, m_beta1, m_beta2, m_tau}; }

private:
    double m_beta0, m_beta1, m_beta2, m_tau;
};

class Svensson final : public ParametricRateModel {
public:
    Svensson(double beta0, double beta1, double beta2, double beta3, double tau1, double tau2);
    double Rate(double t) const override;
    std::vector<double> Parameters() const { return {m_beta0, m_beta1, m_beta2, m_beta3, m_tau1, m_tau2}; }

private:
    double m_beta0, m_beta1, m_beta2, m_beta3, m_tau1, m_tau2;
};

class Vasicek final : public ParametricRateModel {
public:
    Vasicek(double r0, double meanReversion, double longTermRate, double volatility);
    double Rate(double t) const override;
    double DiscountFactor(double t) const;

private:
    double m_r0, m_a, m_b, m_sigma;
};

class CoxIngersollRoss final : public ParametricRateModel {
public:
    CoxIngersollRoss(double r0, double meanReversion, double longTermRate, double volatility);
    double Rate(double t) const override;
    double DiscountFactor(double t) const;

private:
    double m_r0, m_a, m_b, m_sigma;
};

// Least-squares fits to zero rates at times: the betas solved linearly for each decay time, the
// decay times (0.05 to 30 years) from a log-spaced grid polished by NLopt's Subplex.
NelsonSiegel FitNelsonSiegel(const std::vector<double>& times, const std::vector<double>& zeroRates);
Svensson FitSvensson(const std::vector<double>& times, const std::vector<double>& zeroRates);

}  // namespace zep
