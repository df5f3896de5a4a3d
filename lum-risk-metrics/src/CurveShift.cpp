#include "lum-risk-metrics/CurveShift.hpp"

namespace zep::metrics {

YieldCurve ParallelShifted(const YieldCurve& curve, double shift) {
    YieldCurve shifted = curve;
    shifted.SetZeroRateSpread(curve.ZeroRateSpread() + shift);
    return shifted;
}

const YieldCurve* ShiftedCurves::Of(const boost::shared_ptr<const YieldCurve>& curve) {
    if (!curve) return nullptr;
    auto found = m_copies.find(curve.get());
    if (found == m_copies.end()) found = m_copies.emplace(curve.get(), ParallelShifted(*curve, m_shift)).first;
    return &found->second;
}

double CentralDV01(const std::function<double(ShiftedCurves&)>& pv) {
    ShiftedCurves up(kBasisPoint);
    ShiftedCurves down(-kBasisPoint);
    return (pv(up) - pv(down)) / 2.0;
}

}  // namespace zep::metrics
