#include "lum-monte-carlo/ScriptGreeks.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

constexpr double kVolPoint = 0.01;
constexpr double kBasisPoint = 0.0001;

// Re-prices a product under shifted markets. A set of Greeks is computed twice over: a first
// pass only lists the shifts its formulas ask for (every value reads 0), so that they are all
// simulated together, sharing each path's draws; the second pass reads their values.
class Revaluer {
public:
    explicit Revaluer(const XScriptStructure& product) : m_product(product) {}

    const XScriptStructure& Product() const { return m_product; }
    const XScriptInputs& Inputs() const { return m_product.Inputs(); }

    double operator()(double spot, double volatility, double rate1 = 0.0, std::int32_t days = 0) {
        MarketShift shift;
        shift.spot = spot;
        shift.volatility = volatility;
        shift.rate1 = rate1;
        shift.timeDays = days;
        if (m_listing) {
            m_listed.push_back(shift);
            return 0.0;
        }
        const bool base = spot == 0.0 && volatility == 0.0 && rate1 == 0.0 && days == 0;
        return base ? m_product.RepriceShifted(shift, "GetBasePrice: not find result when pricing!")
                    : m_product.RepriceShifted(shift);
    }

    // Runs `greeks` once listing, simulates what it listed, and returns its second run.
    template <class Greeks>
    auto Together(Greeks&& greeks) {
        m_listing = true;
        greeks(*this);
        m_listing = false;
        m_product.SimulateTogether(m_listed, m_product.RepricingPaths(), true);
        return greeks(*this);
    }

private:
    const XScriptStructure& m_product;
    bool m_listing = false;
    std::vector<MarketShift> m_listed;
};

double VolPoint(const XScriptInputs& in) { return in.model == 2 ? kVolPoint * in.spot : kVolPoint; }

double GammaShift(const XScriptInputs& in) { return in.spot / 100.0; }

double ModelDeltaShift(const XScriptInputs& in) {
    switch (in.model) {
        case 1:
        case 4: return in.spot * 0.0001;
        case 3: return 1.0;
        default: return in.spot / 100.0;
    }
}

double DeltaOf(Revaluer& value) {
    const auto& in = value.Inputs();
    const double T = value.Product().RemainingTime();
    if (T <= 0.0) return 0.0;
    double h = ModelDeltaShift(in);
    if (in.adaptiveShift && in.adaptiveShiftBarrier > 0.0) {
        const double f = AdaptiveShiftFraction(T, DistanceToBarrierSigma(value.Product()));
        h = std::min(h, in.spot * f);
    }
    return -(value(h, 0.0) - value(-h, 0.0)) / (2.0 * h);
}

double GammaOf(Revaluer& value) {
    const double g = GammaShift(value.Inputs());
    return (value(g, 0.0) - 2.0 * value(0.0, 0.0) + value(-g, 0.0)) / (g * g);
}

double VegaOf(Revaluer& value) {
    const double point = VolPoint(value.Inputs());
    return (value(0.0, point) - value(0.0, -point)) / 2.0;
}

double VolgaOf(Revaluer& value) {
    const double point = VolPoint(value.Inputs());
    return value(0.0, point) - 2.0 * value(0.0, 0.0) + value(0.0, -point);
}

double VannaOf(Revaluer& value) {
    const double g = GammaShift(value.Inputs());
    const double point = VolPoint(value.Inputs());
    return (value(g, point) - value(g, -point) - value(-g, point) + value(-g, -point)) / (4.0 * g);
}

double ThetaOf(Revaluer& value) { return value(0.0, 0.0, 0.0, 1) - value(0.0, 0.0); }

double RhoOf(Revaluer& value) {
    return (value(0.0, 0.0, kBasisPoint) - value(0.0, 0.0, -kBasisPoint)) / 2.0;
}

double ForwardDeltaOf(Revaluer& value) {
    const auto& in = value.Inputs();
    return DeltaOf(value) * std::exp(-(in.rate1 - in.rate2) * value.Product().RemainingTime());
}

template <double (*Greek)(Revaluer&)>
double Alone(const XScriptStructure& product) {
    return Revaluer(product).Together(Greek);
}

std::map<std::string, double> BasicGreeksOf(Revaluer& value) {
    return {{"Price", value.Product().Price()}, {"Delta", DeltaOf(value)},
            {"Gamma", GammaOf(value)},           {"Vega", VegaOf(value)},
            {"Theta", ThetaOf(value)},           {"Rho", RhoOf(value)}};
}

}  // namespace

double AdaptiveShiftFraction(double remainingTime, double distance) {
    if (remainingTime <= 0.0 || distance <= 0.0) return 0.01;
    if (distance < 1.0) return 0.001;
    if (distance < 2.0) return 0.003;
    return 0.01;
}

double BasePrice(const XScriptStructure& product) {
    Revaluer value(product);
    return value(0.0, 0.0);
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

double Delta(const XScriptStructure& product) { return Alone<DeltaOf>(product); }
double Gamma(const XScriptStructure& product) { return Alone<GammaOf>(product); }
double Vega(const XScriptStructure& product) { return Alone<VegaOf>(product); }
double Volga(const XScriptStructure& product) { return Alone<VolgaOf>(product); }
double Vanna(const XScriptStructure& product) { return Alone<VannaOf>(product); }
double Theta(const XScriptStructure& product) { return Alone<ThetaOf>(product); }
double Rho(const XScriptStructure& product) { return Alone<RhoOf>(product); }
double ForwardDelta(const XScriptStructure& product) { return Alone<ForwardDeltaOf>(product); }

std::map<std::string, double> BasicGreeks(const XScriptStructure& product) {
    return Revaluer(product).Together(BasicGreeksOf);
}

std::map<std::string, double> AllGreeks(const XScriptStructure& product) {
    return Revaluer(product).Together([](Revaluer& value) {
        auto greeks = BasicGreeksOf(value);
        greeks["Vanna"] = VannaOf(value);
        greeks["Volga"] = VolgaOf(value);
        greeks["ForwardDelta"] = ForwardDeltaOf(value);
        return greeks;
    });
}

}  // namespace zep
