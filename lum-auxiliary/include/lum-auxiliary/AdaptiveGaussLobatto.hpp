// Adaptive Gauss-Lobatto quadrature (Gander and Gautschi, 2000): each interval is integrated by
// the 4-point Gauss-Lobatto rule and its 7-point Kronrod extension; where the two differ by more
// than the tolerance, the interval is split at the seven Kronrod nodes and each part recurses.
// Shared end points are evaluated once. Bounded: a depth limit and an evaluation budget, past
// which the integration raises instead of returning a figure it could not vouch for.
//
// The integrand may return several values at once (a Value type with +, - and scaling by a
// double, and LargestMagnitude and AllFinite found by argument-dependent lookup): one
// subdivision, fine enough for the hardest of them, then serves all.
#pragma once

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

struct LobattoSettings {
    double absoluteTolerance = 1e-12;
    int maxDepth = 24;
    int maxEvaluations = 20000;
};

inline double LargestMagnitude(double x) { return std::abs(x); }
inline bool AllFinite(double x) { return std::isfinite(x); }

template <class Function, class Value = double>
class AdaptiveGaussLobatto {
public:
    AdaptiveGaussLobatto(const Function& f, const LobattoSettings& settings, const char* what)
        : m_f(f), m_settings(settings), m_what(what) {}

    Value Integrate(double a, double b) {
        m_evaluations = 0;
        return Step(a, b, Evaluate(a), Evaluate(b), 0);
    }
    int Evaluations() const { return m_evaluations; }

private:
    Value Evaluate(double x) {
        if (++m_evaluations > m_settings.maxEvaluations)
            ZEP_FAIL_IN("zep::AdaptiveGaussLobatto", std::string(m_what) + ": the integral did not converge within " +
                                                         std::to_string(m_settings.maxEvaluations) + " evaluations");
        const Value value = m_f(x);
        if (!AllFinite(value))
            ZEP_FAIL_IN("zep::AdaptiveGaussLobatto", std::string(m_what) + ": the integrand is not finite at " +
                                                         std::to_string(x));
        return value;
    }

    Value Step(double a, double b, const Value& fa, const Value& fb, int depth) {
        static const double alpha = std::sqrt(2.0 / 3.0);
        static const double beta = 1.0 / std::sqrt(5.0);
        const double h = 0.5 * (b - a);
        const double m = a + h;
        const double mll = m - alpha * h, ml = m - beta * h, mr = m + beta * h, mrr = m + alpha * h;
        const Value fmll = Evaluate(mll), fml = Evaluate(ml), fm = Evaluate(m), fmr = Evaluate(mr),
                    fmrr = Evaluate(mrr);
        const Value lobatto = h / 6.0 * (fa + fb + 5.0 * (fml + fmr));
        const Value kronrod =
            h / 1470.0 * (77.0 * (fa + fb) + 432.0 * (fmll + fmrr) + 625.0 * (fml + fmr) + 672.0 * fm);
        // An interval too small to split further in double precision is taken as it is.
        if (LargestMagnitude(kronrod - lobatto) <= m_settings.absoluteTolerance || mll <= a || b <= mrr)
            return kronrod;
        if (depth >= m_settings.maxDepth)
            ZEP_FAIL_IN("zep::AdaptiveGaussLobatto",
                        std::string(m_what) + ": the integral did not converge within the subdivision limit");
        return Step(a, mll, fa, fmll, depth + 1) + Step(mll, ml, fmll, fml, depth + 1) +
               Step(ml, m, fml, fm, depth + 1) + Step(m, mr, fm, fmr, depth + 1) +
               Step(mr, mrr, fmr, fmrr, depth + 1) + Step(mrr, b, fmrr, fb, depth + 1);
    }

    const Function& m_f;
    LobattoSettings m_settings;
    const char* m_what;
    int m_evaluations = 0;
};

}  // namespace zep
