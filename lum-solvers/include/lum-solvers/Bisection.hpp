// Root finding by bisection on a bracketing interval: slow but certain wherever the function
// changes sign, which is why pricing code falls back on it when Newton is not safe.
#pragma once

#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

class Bisection {
public:
    // Stops when the bracket is narrower than `accuracy`; fails after `maxBisections` halvings.
    explicit Bisection(double accuracy = 1e-10, int maxBisections = 100)
        : m_accuracy(accuracy), m_maxBisections(maxBisections) {}

    void SetDomain(double low, double high) {
        m_low = low;
        m_high = high;
        m_hasDomain = true;
    }

    // A root of f inside the domain; f(low) and f(high) must differ in sign (or one be zero).
    template <class Function>
    double Solve(const Function& f) const {
        if (!m_hasDomain) ZEP_FAIL_IN("zep::Bisection::Solve", "Bisection: Domain is not set");
        const double atLow = f(m_low);
        const double atHigh = f(m_high);
        if (atLow == 0.0) return m_low;
        if (atHigh == 0.0) return m_high;
        if (!(atLow * atHigh < 0.0))
            ZEP_FAIL_IN("zep::Bisection::Solve", "Bisection: root must be bracketed");
        // Walk from the end where f is negative so that one comparison per step decides the side.
        double root = atLow < 0.0 ? m_low : m_high;
        double step = atLow < 0.0 ? m_high - m_low : m_low - m_high;
        for (int bisection = 0; bisection < m_maxBisections; ++bisection) {
            step *= 0.5;
            const double mid = root + step;
            const double atMid = f(mid);
            if (atMid <= 0.0) root = mid;
            if (std::fabs(step) < m_accuracy || atMid == 0.0) return root;
        }
        ZEP_FAIL_IN("zep::Bisection::Solve", "Bisection: too many bisections");
    }

private:
    double m_accuracy;
    int m_maxBisections;
    double m_low = 0.0;
    double m_high = 0.0;
    bool m_hasDomain = false;
};

}  // namespace zep
