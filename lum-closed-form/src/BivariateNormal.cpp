#include "lum-closed-form/BivariateNormal.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {
namespace {

// Gauss-Legendre nodes and weights on [-1, 1], by Newton's iteration on the Legendre polynomial
// from the usual cosine start: converged to rounding within a few steps, bounded at 100.
template <int N>
struct GaussLegendre {
    std::array<double, N> nodes{}, weights{};
    GaussLegendre() {
        for (int i = 0; i < N; ++i) {
            double z = std::cos(M_PI * (i + 0.75) / (N + 0.5));
            double derivative = 1.0;
            for (int step = 0; step < 100; ++step) {
                double previous = 1.0, value = z;
                for (int j = 2; j <= N; ++j) {
                    const double next = ((2.0 * j - 1.0) * z * value - (j - 1.0) * previous) / j;
                    previous = value;
                    value = next;
                }
                derivative = N * (z * value - previous) / (z * z - 1.0);
                const double change = value / derivative;
                z -= change;
                if (std::abs(change) < 1e-16) break;
            }
            nodes[i] = z;
            weights[i] = 2.0 / ((1.0 - z * z) * derivative * derivative);
        }
    }
};

// P(X > h, Y > k) by the rule of N points.
template <int N>
double UpperOrthant(double h, double k, double r) {
    static const GaussLegendre<N> rule;
    double hk = h * k;
    double bvn = 0.0;
    if (std::abs(r) < 0.925) {
        const double hs = 0.5 * (h * h + k * k);
        const double asr = std::asin(r);
        for (int i = 0; i < N; ++i) {
            const double sn = std::sin(0.5 * asr * (rule.nodes[i] + 1.0));
            bvn += rule.weights[i] * std::exp((sn * hk - hs) / (1.0 - sn * sn));
        }
        return bvn * asr / (4.0 * M_PI) + NormalCdf(-h) * NormalCdf(-k);
    }
    if (r < 0.0) {
        k = -k;
        hk = -hk;
    }
    if (std::abs(r) < 1.0) {
        const double as = (1.0 - r) * (1.0 + r);
        double a = std::sqrt(as);
        const double bs = (h - k) * (h - k);
        const double c = (4.0 - hk) / 8.0, d = (12.0 - hk) / 16.0;
        bvn = a * std::exp(-0.5 * (bs / as + hk)) * (1.0 - c * (bs - as) * (1.0 - d * bs / 5.0) / 3.0 + c * d * as * as / 5.0);
        if (hk > -160.0) {
            const double b = std::sqrt(bs);
            bvn -= std::exp(-0.5 * hk) * std::sqrt(2.0 * M_PI) * NormalCdf(-b / a) * b *
                   (1.0 - c * bs * (1.0 - d * bs / 5.0) / 3.0);
        }
        a *= 0.5;
        for (int i = 0; i < N; ++i) {
            const double xs = std::pow(a * (rule.nodes[i] + 1.0), 2);
            const double rs = std::sqrt(1.0 - xs);
            const double exponent = -0.5 * (bs / xs + hk);
            if (exponent > -100.0)
                bvn += a * rule.weights[i] * std::exp(exponent) *
                       (std::exp(-hk * (1.0 - rs) / (2.0 * (1.0 + rs))) / rs - (1.0 + c * xs * (1.0 + d * xs)));
        }
        bvn = -bvn / (2.0 * M_PI);
    }
    if (r > 0.0) return bvn + NormalCdf(-std::max(h, k));
    bvn = -bvn;
    if (k > h) bvn += NormalCdf(k) - NormalCdf(h);
    return bvn;
}

}  // namespace

double BivariateNormalCdf(double a, double b, double rho) {
    ZEP_REQUIRE(rho >= -1.0 && rho <= 1.0, "bivariate normal correlation must lie between -1 and 1");
    const double r = std::abs(rho);
    if (r < 0.3) return UpperOrthant<6>(-a, -b, rho);
    if (r < 0.75) return UpperOrthant<12>(-a, -b, rho);
    return UpperOrthant<20>(-a, -b, rho);
}

}  // namespace zep
