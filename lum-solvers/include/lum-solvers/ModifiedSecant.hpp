// Root finding by the modified secant (regula falsi with the Illinois halving): keeps a bracket
// like bisection but converges superlinearly on smooth functions, which is what strike solvers
// on a smooth delta want.
#pragma once

#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

class ModifiedSecant {
public:
    // Stops when |f| <= `accuracy` or the bracket is narrower than `accuracy` times its scale.
    explicit ModifiedSecant(double accuracy = 1e-14, int maxIterations = 200)
        : m_accuracy(accuracy), m_maxIterations(maxIterations) {}

    void SetDomain(double low, double high) {
        m_low = low;
        m_high = high;
        m_hasDomain = true;
    }

    // A root of f inside the domain; f(low) and f(high) must differ in sign (or one be zero).
    template <class Function>
    double Solve(const Function& f) const {
        if (!m_hasDomain) ZEP_FAIL_IN("zep::ModifiedSecant::Solve", "ModifiedSecant: Domain is not set");
        double a = m_low, b = m_high;
        double fa = f(a), fb = f(b);
        if (fa == 0.0) return a;
        if (fb == 0.0) return b;
        if (!(fa * fb < 0.0)) ZEP_FAIL_IN("zep::ModifiedSecant::Solve", "ModifiedSecant: not find root!");
        // Which end moved last: an end that stays put twice has its value halved (Illinois), so
        // the bracket cannot stall on one side of a convex function.
        int movedSide = 0;
        for (int iteration = 0; iteration < m_maxIterations; ++iteration) {
            const double c = (a * fb - b * fa) / (fb - fa);
            const double fc = f(c);
            if (std::fabs(fc) <= m_accuracy) return c;
            if (fc * fb > 0.0) {
                b = c;
                fb = fc;
                if (movedSide == 1) fa *= 0.5;
                movedSide = 1;
            } else {
                a = c;
                fa = fc;
                if (movedSide == -1) fb *= 0.5;
                movedSide = -1;
            }
            if (std::fabs(b - a) <= m_accuracy * (std::fabs(a) + std::fabs(b))) return c;
        }
        ZEP_FAIL_IN("zep::ModifiedSecant::Solve", "ModifiedSecant: not find root!");
    }

private:
    double m_accuracy;
    int m_maxIterations;
    double m_low = 0.0;
    double m_high = 0.0;
    bool m_hasDomain = false;
};

}  // namespace zep
