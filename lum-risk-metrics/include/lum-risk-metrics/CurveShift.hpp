// Moves of discount curves, the market moves behind DV01 and key-rate DV01: a parallel move
// raises every zero rate (in the curve's own convention) by the shift; a key-rate move raises
// one pillar's continuous zero rate and fades to nothing at the neighbouring pillars, so the
// key-rate moves of all pillars add up to the parallel one. Sensitivities are central
// differences, half the PV change between a move up and a move down, so curvature drops out.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-risk-metrics/MetricResult.hpp"

namespace zep::metrics {

inline constexpr double kBasisPoint = 1e-4;

YieldCurve ParallelShifted(const YieldCurve& curve, double shift);
// Fails for a curve whose pillars hold anything but continuous zero rates, or rates from a model
// or another currency: such a curve has no pillar rate to move.
YieldCurve PillarShifted(const YieldCurve& curve, std::size_t pillar, double shift);
// Every pillar's rate moved by its own shift (one per pillar), in one rebuild of the curve.
YieldCurve PillarsShifted(const YieldCurve& curve, const std::vector<double>& shifts);

// The curves an instrument reads, each replaced by its moved copy (one per distinct curve, so an
// instrument that discounts and projects on one curve sees one move, not two). A curve the move
// leaves alone is handed out as it is.
class MovedCurves {
public:
    using Move = std::function<std::optional<YieldCurve>(const YieldCurve&)>;
    explicit MovedCurves(Move move) : m_move(std::move(move)) {}
    const YieldCurve* Of(const boost::shared_ptr<const YieldCurve>& curve);

private:
    Move m_move;
    std::map<const YieldCurve*, std::optional<YieldCurve>> m_copies;
};

// The instrument's PV on the curves a MovedCurves hands out.
using CurvePV = std::function<double(MovedCurves&)>;

// (PV with every curve 1bp higher - PV with every curve 1bp lower) / 2.
double CentralDV01(const CurvePV& pv);
// The same for one pillar at a time, one result per pillar of each curve, labelled
// "<curve label or curve number>:<pillar date>".
MetricResultVector KeyRateDV01(const std::vector<boost::shared_ptr<const YieldCurve>>& curves, const CurvePV& pv);

}  // namespace zep::metrics
