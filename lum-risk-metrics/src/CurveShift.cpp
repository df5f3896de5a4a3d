#include "lum-risk-metrics/CurveShift.hpp"

#include <stdexcept>

namespace zep::metrics {

YieldCurve ParallelShifted(const YieldCurve& curve, double shift) {
    YieldCurve shifted = curve;
    shifted.SetZeroRateSpread(curve.ZeroRateSpread() + shift);
    return shifted;
}

YieldCurve PillarShifted(const YieldCurve& curve, std::size_t pillar, double shift) {
    if (pillar >= curve.Dates().size()) throw std::out_of_range("The curve has no pillar " + std::to_string(pillar) + ".");
    std::vector<double> shifts(curve.Dates().size(), 0.0);
    shifts[pillar] = shift;
    return PillarsShifted(curve, shifts);
}

YieldCurve PillarsShifted(const YieldCurve& curve, const std::vector<double>& shifts) {
    if (curve.GetInterpolatedVariable() != ContinuousZeroRates || curve.IsParametricCurve() || curve.IsImpliedCurve())
        throw std::invalid_argument("Key rates need a curve whose pillars hold continuous zero rates.");
    std::vector<double> rates = curve.Variables();
    if (shifts.size() != rates.size())
        throw std::invalid_argument("The curve has " + std::to_string(rates.size()) + " pillars, not " +
                                    std::to_string(shifts.size()) + ".");
    for (std::size_t pillar = 0; pillar < rates.size(); ++pillar) rates[pillar] += shifts[pillar];
    YieldCurve shifted(curve.ReferenceDate(), curve.Dates(), rates, Continuous, curve.GetDayCounter(),
                       ContinuousZeroRates, curve.GetInterpolationMethod(), curve.Label());
    shifted.SetZeroRateSpread(curve.ZeroRateSpread());
    return shifted;
}

const YieldCurve* MovedCurves::Of(const boost::shared_ptr<const YieldCurve>& curve) {
    if (!curve) return nullptr;
    auto found = m_copies.find(curve.get());
    if (found == m_copies.end()) found = m_copies.emplace(curve.get(), m_move(*curve)).first;
    return found->second ? &*found->second : curve.get();
}

double CentralDV01(const CurvePV& pv) {
    MovedCurves up([](const YieldCurve& curve) { return ParallelShifted(curve, kBasisPoint); });
    MovedCurves down([](const YieldCurve& curve) { return ParallelShifted(curve, -kBasisPoint); });
    return (pv(up) - pv(down)) / 2.0;
}

MetricResultVector KeyRateDV01(const std::vector<boost::shared_ptr<const YieldCurve>>& curves, const CurvePV& pv) {
    MetricResultVector results;
    for (std::size_t c = 0; c < curves.size(); ++c) {
        const YieldCurve& target = *curves[c];
        const std::string name = target.Label().empty() ? "curve " + std::to_string(c + 1) : target.Label();
        for (std::size_t pillar = 0; pillar < target.Dates().size(); ++pillar) {
            const auto movedBy = [&](double shift) {
                return MovedCurves([&, shift](const YieldCurve& curve) -> std::optional<YieldCurve> {
                    if (&curve != &target) return std::nullopt;
                    return PillarShifted(curve, pillar, shift);
                });
            };
            MovedCurves up = movedBy(kBasisPoint), down = movedBy(-kBasisPoint);
            MetricResult result = MetricResult::Computed(Metric::KEY_RATE_DV01, (pv(up) - pv(down)) / 2.0);
            result.label = name + ":" + target.Dates()[pillar].ToString();
            results.push_back(std::move(result));
        }
    }
    return results;
}

}  // namespace zep::metrics
