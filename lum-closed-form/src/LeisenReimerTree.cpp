#include "lum-closed-form/LeisenReimerTree.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep {
namespace {

// Peizer-Pratt method 2: the binomial probability that matches N(z) on n steps.
double PeizerPratt(double z, int n) {
    const double ratio = z / (n + 1.0 / 3.0 + 0.1 / (n + 1.0));
    const double root = std::sqrt(0.25 - 0.25 * std::exp(-ratio * ratio * (n + 1.0 / 6.0)));
    return z >= 0.0 ? 0.5 + root : 0.5 - root;
}

}  // namespace

double LeisenReimerPrice(int optionType, double strike, double volatility, double timeToExpiry, double domesticRate,
                         double foreignRate, double spot, int steps, bool american) {
    ZEP_REQUIRE(steps >= 1 && steps <= 100000, "Leisen-Reimer tree: steps must lie between 1 and 100000");
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "spot must be a finite number > 0");
    BSVanilla european(optionType, strike, volatility, timeToExpiry, timeToExpiry, domesticRate, foreignRate, spot);
    if (european.IsExpired()) return european.Price();
    const int n = steps % 2 == 1 ? steps : steps + 1;
    const double dt = timeToExpiry / n;
    const double growth = std::exp((domesticRate - foreignRate) * dt);
    const double discount = std::exp(-domesticRate * dt);
    const double p = PeizerPratt(european.GetD2(), n);
    const double up = growth * PeizerPratt(european.GetD1(), n) / p;
    const double down = (growth - p * up) / (1.0 - p);
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    std::vector<double> values(static_cast<std::size_t>(n) + 1);
    const double upOverDown = up / down;
    // Node j of a date `step` steps in has the spot S d^step (u / d)^j.
    double node = spot * std::pow(down, n);
    for (int j = 0; j <= n; ++j, node *= upOverDown) values[j] = std::max(phi * (node - strike), 0.0);
    for (int step = n - 1; step >= 0; --step) {
        node = spot * std::pow(down, step);
        for (int j = 0; j <= step; ++j, node *= upOverDown) {
            values[j] = discount * (p * values[j + 1] + (1.0 - p) * values[j]);
            if (american) values[j] = std::max(values[j], phi * (node - strike));
        }
    }
    return values[0];
}

}  // namespace zep
