#include "lum-interest-rates/SwaptionSmile.hpp"

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

void RequireSlice(double forward, double expiry, double beta) {
    ZEP_REQUIRE(std::isfinite(forward) && forward > 0.0,
                "the forward swap rate " + std::to_string(forward) + " must be positive for the lognormal SABR smile");
    ZEP_REQUIRE(std::isfinite(expiry) && expiry > 0.0, "the expiry " + std::to_string(expiry) + " must be positive");
    ZEP_REQUIRE(beta >= 0.0 && beta <= 1.0, "beta " + std::to_string(beta) + " must lie in [0, 1]");
}

SabrSmile FittedSlice(double forward, double expiry, const std::vector<double>& strikes,
                      const std::vector<double>& volatilities, double beta) {
    RequireSlice(forward, expiry, beta);
    ZEP_REQUIRE(strikes.size() == volatilities.size(), "one volatility per strike");
    ZEP_REQUIRE(strikes.size() >= 3, "the SABR fit needs at least three quotes");
    for (std::size_t i = 0; i < strikes.size(); ++i)
        ZEP_REQUIRE(std::isfinite(strikes[i]) && strikes[i] > 0.0 && std::isfinite(volatilities[i]) &&
                        volatilities[i] > 0.0,
                    "quote " + std::to_string(i) + " needs a positive strike and volatility");
    const double level = volatilities[strikes.size() / 2] * std::pow(forward, 1.0 - beta);
    return SabrSmile::Fit(strikes, volatilities, forward, expiry, {level, beta, 0.0, 0.5});
}

}  // namespace

SwaptionSmile::SwaptionSmile(double forward, double expiry, const std::vector<double>& strikes,
                             const std::vector<double>& volatilities, double beta)
    : m_sabr(FittedSlice(forward, expiry, strikes, volatilities, beta)), m_forward(forward), m_expiry(expiry) {
    double squares = 0.0;
    for (std::size_t i = 0; i < strikes.size(); ++i) {
        const double error = m_sabr.Volatility(strikes[i], forward, expiry) - volatilities[i];
        squares += error * error;
    }
    m_fitError = std::sqrt(squares / strikes.size());
    for (double parameter : m_sabr.Parameters())
        ZEP_REQUIRE(std::isfinite(parameter) && std::isfinite(m_fitError),
                    "the SABR calibration of the slice did not converge (a parameter is not finite)");
}

SwaptionSmile::SwaptionSmile(double forward, double expiry, double alpha, double beta, double rho, double nu)
    : m_sabr({alpha, beta, rho, nu}), m_forward(forward), m_expiry(expiry) {
    RequireSlice(forward, expiry, beta);
    ZEP_REQUIRE(alpha > 0.0 && nu >= 0.0 && rho > -1.0 && rho < 1.0,
                "the SABR parameters need alpha > 0, nu >= 0 and rho in (-1, 1)");
}

double SwaptionSmile::Volatility(double strike) const {
    ZEP_REQUIRE(std::isfinite(strike) && strike > 0.0,
                "the strike " + std::to_string(strike) + " must be positive for the lognormal SABR smile");
    return m_sabr.Volatility(strike, m_forward, m_expiry);
}

}  // namespace zep
