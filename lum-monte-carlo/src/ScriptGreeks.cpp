#include "lum-monte-carlo/ScriptGreeks.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

constexpr double kVolPoint = 0.01;
constexpr double kBasisPoint = 0.0001;

MarketShift SpotShift(double h) {
    MarketShift shift;
    shift.spot = h;
    return shift;
}

double VolPoint(const XScriptStructure& product) {
    const auto& in = product.Inputs();
    return in.model == 2 ? kVolPoint * in.spot : kVolPoint;
}

double GammaShift(const XScriptStructure& product) { return product.Inputs().spot / 100.0; }

double ModelDeltaShift(const XScriptInputs& in) {
    switch (in.model) {
        case 1:
        case 4: return in.spot * 0.0001;
        case 3: return 1.0;
        default: return in.spot / 100.0;
    }
}

double RepriceWith(const XScriptStructure& product, double spot, double volatility) {
    MarketShift shift;
    shift.spot = spot;
    shift.volatility = volatility;
    return product.RepriceShifted(shift);
}

}  // namespace

double AdaptiveShiftFraction(double remainingTime, double distance) {
    if (remainingTime <= 0.0 || distance <= 0.0) return 0.01;
    if (distance < 1.0) return 0.001;
    if (distance < 2.0) return 0.003;
    return 0.01;
}

double BasePrice(const XScriptStructure& product) {
    return product.RepriceShifted(MarketShift{}, "GetBasePrice: not find result when pricing!");
}

double DistanceToBarrierSigma(const XScriptStructure& product, std::optional<double> barrier) {
    const auto& in = product.Inputs();
    const double level = barrier.value_or(in.adaptiveShiftBarrier);
    const double T = product.RemainingTime();
    if (T <= 0.0) return 0.0;
    switch (in.model) {
        case 1:
            ZEP_REQUIRE(level > 0.0, "DistanceToBarrierSigma needs a positive barrier");
            return std::abs(std::log(in.spot / level)) / (in.volatility * std::sqrt(T));
        case 2: return std::abs(in.spot - level) / (in.volatility * std::sqrt(T));
        case 3:
        case 4: {
            const LocalVol* surface = product.SurfaceForDistance();
            ZEP_REQUIRE(surface != nullptr, "LocalVol pointer is null for Heston/Dupire model!");
            ZEP_REQUIRE(level > 0.0, "DistanceToBarrierSigma needs a positive barrier");
            return std::abs(std::log(in.spot / level)) /
                   (surface->Volatility(0.0, in.spot) * std::sqrt(T));
        }
        default: ZEP_FAIL("Unsupported model type for DistanceToBarrierSigma!");
    }
}

double Delta(const XScriptStructure& product) {
    const auto& in = product.Inputs();
    const double T = product.RemainingTime();
    if (T <= 0.0) return 0.0;
    double h = ModelDeltaShift(in);
    if (in.adaptiveShift && in.adaptiveShiftBarrier > 0.0) {
        const double f = AdaptiveShiftFraction(T, DistanceToBarrierSigma(product));
        h = std::min(h, in.spot * f);
    }
    const double up = product.RepriceShifted(SpotShift(h));
    const double down = product.RepriceShifted(SpotShift(-h));
    return -(up - down) / (2.0 * h);
}

double Gamma(const XScriptStructure& product) {
    const double g = GammaShift(product);
    return (product.RepriceShifted(SpotShift(g)) - 2.0 * BasePrice(product) +
            product.RepriceShifted(SpotShift(-g))) /
           (g * g);
}

double Vega(const XScriptStructure& product) {
    const double point = VolPoint(product);
    return (RepriceWith(product, 0.0, point) - RepriceWith(product, 0.0, -point)) / 2.0;
}

double Volga(const XScriptStructure& product) {
    const double point = VolPoint(product);
    return RepriceWith(product, 0.0, point) - 2.0 * BasePrice(product) +
           RepriceWith(product, 0.0, -point);
}

double Vanna(const XScriptStructure& product) {
    const double g = GammaShift(product);
    const double point = VolPoint(product);
    return (RepriceWith(product, g, point) - RepriceWith(product, g, -point) -
            RepriceWith(product, -g, point) + RepriceWith(product, -g, -point)) /
           (4.0 * g);
}

double Theta(const XScriptStructure& product) {
    return product.Reprice("time", 1.0) - BasePrice(product);
}

double Rho(const XScriptStructure& product) {
    return (product.Reprice("rate1", kBasisPoint) - product.Reprice("rate1", -kBasisPoint)) / 2.0;
}

double ForwardDelta(const XScriptStructure& product) {
    const auto& in = product.Inputs();
    return Delta(product) * std::exp(-(in.rate1 - in.rate2) * product.RemainingTime());
}

std::map<std::string, double> BasicGreeks(const XScriptStructure& product) {
    return {{"Price", product.Price()}, {"Delta", Delta(product)}, {"Gamma", Gamma(product)},
            {"Vega", Vega(product)},   {"Theta", Theta(product)}, {"Rho", Rho(product)}};
}

std::map<std::string, double> AllGreeks(const XScriptStructure& product) {
    auto greeks = BasicGreeks(product);
    greeks["Vanna"] = Vanna(product);
    greeks["Volga"] = Volga(product);
    greeks["ForwardDelta"] = ForwardDelta(product);
    return greeks;
}

}  // namespace zep
