// Parallel moves of discount curves, the market move behind DV01: every zero rate (in the
// curve's own convention) rises by the shift. Sensitivities are central differences, half the
// PV change between a shift up and a shift down, so the curvature of PV drops out.
#pragma once

#include <functional>
#include <map>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/YieldCurve.hpp"

namespace zep::metrics {

inline constexpr double kBasisPoint = 1e-4;

YieldCurve ParallelShifted(const YieldCurve& curve, double shift);

// Shifted copies of a set of curves, one per distinct curve, so an instrument that discounts and
// projects on the same curve sees one move, not two.
class ShiftedCurves {
public:
    explicit ShiftedCurves(double shift) : m_shift(shift) {}
    // The shifted copy of `curve`; null stays null.
    const YieldCurve* Of(const boost::shared_ptr<const YieldCurve>& curve);

private:
    double m_shift;
    std::map<const YieldCurve*, YieldCurve> m_copies;
};

// (PV with every curve 1bp higher - PV with every curve 1bp lower) / 2, where `pv` values the
// instrument on the curves its ShiftedCurves hands out.
double CentralDV01(const std::function<double(ShiftedCurves&)>& pv);

}  // namespace zep::metrics
