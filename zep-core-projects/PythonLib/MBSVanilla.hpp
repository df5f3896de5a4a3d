// The Python face of the Black-Scholes engine: an option object whose every figure reports which
// call failed ("MBSVanilla::<operation> failed: "), and the engine's solvers as static calls.
#pragma once

#include "MWrapper.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep::python {

class MBSVanilla : public MWrapper<BSVanilla> {
public:
    MBSVanilla() = default;  // an empty object: every call reports "not initialized!"
    MBSVanilla(int optionType, double strike, double volatility, double timeToExpiry,
               double timeToDelivery, double domesticRate, double foreignRate, double spot);
    // The engine quoted on the forward; spot -1 derives the spot by annual compounding.
    static MBSVanilla FromForward(int optionType, double strike, double volatility,
                                  double timeToExpiry, double timeToDelivery, double domesticRate,
                                  double foreignRate, double forward, double spot = -1.0);
    // One call from inputs to price, for callers that need nothing else.
    static double OptionPrice(int optionType, double strike, double volatility,
                              double timeToExpiry, double timeToDelivery, double domesticRate,
                              double foreignRate, double spot);

    double Price();
    double Delta(bool spotDelta = true);
    double ForwardDelta(bool spotDelta = true);
    double Gamma();
    double Vega();
    double Theta();
    double ThetaPerYear();
    double Rho();
    double Phi();
    double Vanna();
    double Volga();
    double DvegaDvol();
    double DvegaDvol2();
    double DvegaDspot();
    double Dd1Dvol();
    double VegaDigital();
    double VegaIDDigital();
    double GetSpot() const;
    double GetForward() const;

    static double DeltaImpliedFromStrike(int optionType, double strike, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         bool spotDelta = true);
    static double StrikeImpliedFromDelta(int optionType, double targetDelta, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         double initialStrike, int deltaKind = 0,
                                         bool noThrow = false);
    static double StrikeImpliedFromPrice(int optionType, double targetPrice, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         double initialStrike = 0.0, double tolerance = 1e-10,
                                         int maxIterations = 100);
    static double VolImpliedFromPrice(int optionType, double strike, double timeToExpiry,
                                      double timeToDelivery, double domesticRate,
                                      double foreignRate, double spot, double targetPrice,
                                      double volatilityLimit = 1e-4);
    static double VolImpliedFromForwardPrice(int optionType, double strike, double forward,
                                             double time, double targetPrice,
                                             double volatilityLimit = 1e-4);
    static double VolImpliedFromFutureOptPrice(int optionType, double strike, double forward,
                                               double time, double rate, double targetPrice,
                                               double volatilityLimit = 1e-4);

private:
    explicit MBSVanilla(boost::shared_ptr<BSVanilla> engine) : MWrapper(std::move(engine)) {}
    double Figure(const char* where, const char* function, double (BSVanilla::*figure)());
};

}  // namespace zep::python
