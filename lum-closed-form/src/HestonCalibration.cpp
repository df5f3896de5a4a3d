#include "lum-closed-form/HestonCalibration.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-solvers/DifferentialEvolution.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"
#include "lum-solvers/NloptOptimizer.hpp"

namespace zep {
namespace {

// v0, kappa, theta, sigma, rho.
const Box kBox{{1e-4, 0.05, 1e-4, 0.01, -0.95}, {1.0, 10.0, 1.0, 3.0, 0.95}};
// A model the pricer cannot price counts as this volatility error at every quote.
constexpr double kUnpriceableResidual = 1.0;
// Prices inside the fit to 1e-9 of the forward: volatility errors far below any quote's precision.
constexpr double kFitPriceTolerance = 1e-9;

struct Target {
    int optionType;  // out of the money, for the report's implied volatility
    double price;
    double callPrice;  // what the fit compares: calls price each expiry's strikes together
    double vega;
};

// The quotes of one expiry, priced together.
struct ExpirySlice {
    double expiry;
    std::vector<std::size_t> quotes;
    std::vector<double> strikes;
    std::vector<double> calls;  // work space for the model's prices
};

std::vector<ExpirySlice> SlicesOf(const std::vector<HestonQuote>& quotes) {
    std::vector<ExpirySlice> slices;
    for (std::size_t i = 0; i < quotes.size(); ++i) {
        auto slice = std::find_if(slices.begin(), slices.end(),
                                  [&](const ExpirySlice& s) { return s.expiry == quotes[i].expiry; });
        if (slice == slices.end()) slice = slices.insert(slices.end(), ExpirySlice{quotes[i].expiry, {}, {}, {}});
        slice->quotes.push_back(i);
        slice->strikes.push_back(quotes[i].strike);
        slice->calls.push_back(0.0);
    }
    return slices;
}

HestonModel ModelOf(const std::vector<double>& p) { return HestonModel(p[0], p[1], p[2], p[3], p[4]); }

}  // namespace

HestonFit CalibrateHeston(const std::vector<HestonQuote>& quotes, double spot, double domesticRate,
                          double foreignRate, const std::string& start, int maxIterations) {
    ZEP_REQUIRE(quotes.size() >= 5, "Heston calibration needs at least 5 quotes for its 5 parameters");
    ZEP_REQUIRE(start == "none" || start == "direct" || start == "evolution",
                "Heston calibration start must be 'none', 'direct' or 'evolution'");
    ZEP_REQUIRE(maxIterations >= 1 && maxIterations <= 10000, "Heston calibration maxIterations must lie in [1, 10000]");
    std::vector<Target> targets;
    double meanVariance = 0.0;
    for (const HestonQuote& q : quotes) {
        ZEP_REQUIRE(q.expiry > 0.0 && std::isfinite(q.expiry), "Heston quote expiries must be finite and > 0");
        const double forward = spot * std::exp((domesticRate - foreignRate) * q.expiry);
        const int type = q.strike >= forward ? BSVanilla::Call : BSVanilla::Put;
        BSVanilla market(type, q.strike, q.volatility, q.expiry, q.expiry, domesticRate, foreignRate, spot);
        BSVanilla marketCall(BSVanilla::Call, q.strike, q.volatility, q.expiry, q.expiry, domesticRate, foreignRate,
                             spot);
        const double vega = market.Vega();
        ZEP_REQUIRE(vega > 0.0, "Heston quote too far from the money to weigh: no vega at its strike");
        targets.push_back({type, market.Price(), marketCall.Price(), vega});
        meanVariance += q.volatility * q.volatility / static_cast<double>(quotes.size());
    }
    std::vector<ExpirySlice> slices = SlicesOf(quotes);
    int evaluations = 0;
    const Residuals residuals = [&](const std::vector<double>& p) {
        ++evaluations;
        std::vector<double> r(quotes.size());
        try {
            const HestonModel model = ModelOf(p);
            for (ExpirySlice& slice : slices) {
                model.Prices(BSVanilla::Call, slice.strikes, slice.expiry, slice.expiry, domesticRate, foreignRate,
                             spot, slice.calls, kFitPriceTolerance);
                for (std::size_t j = 0; j < slice.quotes.size(); ++j) {
                    const Target& target = targets[slice.quotes[j]];
                    r[slice.quotes[j]] = (slice.calls[j] - target.callPrice) / target.vega;
                }
            }
        } catch (const Error&) {
            std::fill(r.begin(), r.end(), kUnpriceableResidual);
        }
        return r;
    };
    std::vector<double> point{meanVariance, 1.0, meanVariance, 0.3, 0.0};
    if (start != "none") {
        const Objective sumOfSquares = [&](const std::vector<double>& p) {
            double sum = 0.0;
            for (const double r : residuals(p)) sum += r * r;
            return sum;
        };
        const OptimizationResult global =
            start == "direct" ? NloptOptimizer(NloptAlgorithm::DIRECT, 150).Minimize(sumOfSquares, point, kBox)
                              : DifferentialEvolution({4, 8}).Minimize(sumOfSquares, point, kBox);
        point = global.x;
    }
    const OptimizationResult fit =
        LevenbergMarquardt({maxIterations, 1e-10, 1e-6, false}).Minimize(residuals, point, kBox);
    HestonFit result{ModelOf(fit.x), {}, 0.0, evaluations, fit.converged};
    for (std::size_t i = 0; i < quotes.size(); ++i) {
        const HestonQuote& q = quotes[i];
        const double price =
            result.model.Price(targets[i].optionType, q.strike, q.expiry, q.expiry, domesticRate, foreignRate, spot);
        double vol;
        try {
            vol = BSVanilla::VolImpliedFromPrice(targets[i].optionType, q.strike, q.expiry, q.expiry, domesticRate,
                                                 foreignRate, spot, price);
        } catch (const Error&) {
            vol = q.volatility + (price - targets[i].price) / targets[i].vega;  // first order in the vega
        }
        result.modelVolatilities.push_back(vol);
        result.rootMeanSquareError += (vol - q.volatility) * (vol - q.volatility) / static_cast<double>(quotes.size());
    }
    result.rootMeanSquareError = std::sqrt(result.rootMeanSquareError);
    return result;
}

}  // namespace zep
