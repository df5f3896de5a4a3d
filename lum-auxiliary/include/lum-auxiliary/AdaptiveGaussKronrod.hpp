// Adaptive Gauss-Kronrod quadrature: each interval is integrated by the 10-point Gauss rule and
// its 21-point Kronrod extension (exact for polynomials of degree 19 and 31), which share the
// Gauss nodes; where the two differ by more than the tolerance, the interval is halved and each
// half recurses. The difference measures the error of the Gauss figure, so the Kronrod figure
// returned is usually far better than the tolerance. Bounded: a depth limit and an evaluation
// budget, past which the integration raises instead of returning a figure it could not vouch for.
//
// The integrand may return several values at once (a Value type with +, - and scaling by a
// double, and LargestMagnitude and AllFinite found by argument-dependent lookup): one
// subdivision, fine enough for the hardest of them, then serves all.
#pragma once

#include <cmath>
#include <span>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

struct KronrodSettings {
    double absoluteTolerance = 1e-12;  // per interval accepted
    int maxDepth = 30;
    int maxEvaluations = 20000;
};

inline double LargestMagnitude(double x) { return std::abs(x); }
inline bool AllFinite(double x) { return std::isfinite(x); }

namespace detail {
// The 21-point Kronrod nodes in (0, 1], largest first (the centre 0 apart), and weights; the odd
// positions (1, 3, ...) are the 10-point Gauss nodes. Piessens et al., QUADPACK (1983).
inline constexpr double kKronrodNodes[10] = {
    0.995657163025808080735527280689003, 0.973906528517171720077964012084452, 0.930157491355708226001207180059508,
    0.865063366688984510732096688423493, 0.780817726586416897063717578345042, 0.679409568299024406234327365114874,
    0.562757134668604683339000099272694, 0.433395394129247190799265943165784, 0.294392862701460198131126603103866,
    0.148874338981631210884826001129720};
inline constexpr double kKronrodWeights[10] = {
    0.011694638867371874278064396062192, 0.032558162307964727478818972459390, 0.054755896574351996031381300244580,
    0.075039674810919952767043140916190, 0.093125454583697605535065465083366, 0.109387158802297641899210590325805,
    0.123491976262065851077958109831074, 0.134709217311473325928054001771707, 0.142775938577060080797094273138717,
    0.147739104901338491374841515972068};
inline constexpr double kKronrodCentreWeight = 0.149445554002916905664936468389821;
inline constexpr double kGaussWeights[5] = {0.066671344308688137593568809893332, 0.149451349150580593145776339657697,
                                            0.219086362515982043995534934228163, 0.269266719309996355091226921569469,
                                            0.295524224714752870173892994651338};
}  // namespace detail

template <class Function, class Value = double>
class AdaptiveGaussKronrod {
public:
    AdaptiveGaussKronrod(const Function& f, const KronrodSettings& settings, const char* what)
        : m_f(f), m_settings(settings), m_what(what) {}

    Value Integrate(double a, double b) {
        m_evaluations = 0;
        return Step(a, b, 0);
    }

    // Over [b0, bn] starting from the intervals between the break points (increasing): where the
    // integrand changes character, a break point saves the halvings that would find it.
    Value Integrate(std::span<const double> breakPoints) {
        ZEP_REQUIRE(breakPoints.size() >= 2, std::string(m_what) + ": an integration range needs two end points");
        m_evaluations = 0;
        Value sum = Step(breakPoints[0], breakPoints[1], 0);
        for (std::size_t i = 2; i < breakPoints.size(); ++i) sum = sum + Step(breakPoints[i - 1], breakPoints[i], 0);
        return sum;
    }

    int Evaluations() const { return m_evaluations; }

private:
    Value Evaluate(double x) {
        if (++m_evaluations > m_settings.maxEvaluations)
            ZEP_FAIL_IN("zep::AdaptiveGaussKronrod", std::string(m_what) + ": the integral did not converge within " +
                                                         std::to_string(m_settings.maxEvaluations) + " evaluations");
        const Value value = m_f(x);
        if (!AllFinite(value))
            ZEP_FAIL_IN("zep::AdaptiveGaussKronrod",
                        std::string(m_what) + ": the integrand is not finite at " + std::to_string(x));
        return value;
    }

    Value Step(double a, double b, int depth) {
        const double h = 0.5 * (b - a);
        const double centre = a + h;
        const Value fc = Evaluate(centre);
        Value kronrod = detail::kKronrodCentreWeight * fc;
        Value gauss = 0.0 * fc;
        for (int j = 0; j < 10; ++j) {
            const Value pair = Evaluate(centre - h * detail::kKronrodNodes[j]) + Evaluate(centre + h * detail::kKronrodNodes[j]);
            kronrod = kronrod + detail::kKronrodWeights[j] * pair;
            if (j % 2 == 1) gauss = gauss + detail::kGaussWeights[j / 2] * pair;
        }
        kronrod = h * kronrod;
        // An interval too small to halve in double precision is taken as it is.
        if (LargestMagnitude(kronrod - h * gauss) <= m_settings.absoluteTolerance || !(a < centre && centre < b))
            return kronrod;
        if (depth >= m_settings.maxDepth)
            ZEP_FAIL_IN("zep::AdaptiveGaussKronrod",
                        std::string(m_what) + ": the integral did not converge within the subdivision limit");
        return Step(a, centre, depth + 1) + Step(centre, b, depth + 1);
    }

    const Function& m_f;
    KronrodSettings m_settings;
    const char* m_what;
    int m_evaluations = 0;
};

}  // namespace zep
