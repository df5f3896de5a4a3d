// Heston's stochastic volatility model: the variance v follows
//     dv = kappa (theta - v) dt + sigma sqrt(v) dW2,   dS / S = (rd - rf) dt + sqrt(v) dW1,
// with d<W1, W2> = rho dt. European options have a semi-closed form through the characteristic
// function of x = ln(S_T / F_T), which this class evaluates in the "little trap" arrangement
// (Albrecher et al.): the branch of the complex logarithm never jumps, at any maturity.
//
// The Feller condition 2 kappa theta >= sigma^2 keeps the variance away from zero; a model that
// violates it is allowed (calibrations often land there) and says so through SatisfiesFeller().
#pragma once

#include <complex>
#include <span>

namespace zep {

// A Heston price and its sensitivities: to the spot (delta, gamma) and to the initial
// volatility sqrt(v0) (vega, per unit of volatility).
struct HestonGreeks {
    double price = 0.0;
    double delta = 0.0;
    double gamma = 0.0;
    double vega = 0.0;
};

class HestonModel {
public:
    // v0 and theta are variances (a 20% volatility is 0.04); sigma is the volatility of variance.
    // Refuses negative or non-finite variances, kappa or sigma <= 0, |rho| >= 1.
    HestonModel(double v0, double kappa, double theta, double sigma, double rho);

    double InitialVariance() const { return m_v0; }
    double MeanReversion() const { return m_kappa; }
    double LongRunVariance() const { return m_theta; }
    double VolOfVariance() const { return m_sigma; }
    double Correlation() const { return m_rho; }

    bool SatisfiesFeller() const { return 2.0 * m_kappa * m_theta >= m_sigma * m_sigma; }
    // The expected average variance over [0, T]: theta + (v0 - theta)(1 - e^(-kappa T)) / (kappa T).
    double MeanVariance(double timeToExpiry) const;

    // The first time at which E[(S_T / F_T)^order] is infinite (infinity when it never is), for
    // order > 1: the moment of a Heston spot can explode in finite time (Andersen and Piterbarg).
    double MomentExplosionTime(double order) const;

    // E[exp(i u x)] for complex u, x = ln(S_T / F_T).
    std::complex<double> CharacteristicFunction(std::complex<double> u, double timeToExpiry) const;
    // Its logarithm, continuous in u: a pricer that multiplies the function by a phase e^(i u k)
    // adds u k to the imaginary part and takes one cosine instead of two sines and cosines.
    std::complex<double> LogCharacteristicFunction(std::complex<double> u, double timeToExpiry) const;

    // European call (optionType 0) or put (1) in domestic currency per unit of the underlying,
    // the Garman-Kohlhagen conventions of BSVanilla: T to expiry drives the model, Td to delivery
    // the discounting. Lewis's single integral, adaptively integrated to about `tolerance` times
    // the forward (a calibration asks less than a price).
    double Price(int optionType, double strike, double timeToExpiry, double timeToDelivery,
                 double domesticRate, double foreignRate, double spot, double tolerance = 1e-11) const;

    // Price for each of `strikes` at one expiry into `prices` (same length): the strikes share
    // their characteristic-function values, so a smile costs little more than its hardest strike.
    void Prices(int optionType, std::span<const double> strikes, double timeToExpiry, double timeToDelivery,
                double domesticRate, double foreignRate, double spot, std::span<double> prices,
                double tolerance = 1e-11) const;

    // Price, delta and gamma from one integration (the spot derivatives taken under the
    // integral), vega by re-pricing at sqrt(v0) moved either way. Arguments as Price.
    HestonGreeks Greeks(int optionType, double strike, double timeToExpiry, double timeToDelivery,
                        double domesticRate, double foreignRate, double spot, double tolerance = 1e-11) const;

private:
    double m_v0;
    double m_kappa;
    double m_theta;
    double m_sigma;
    double m_rho;
};

}  // namespace zep
