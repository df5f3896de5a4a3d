#include "MBSVanilla.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MBSVanilla::MBSVanilla(int optionType, double strike, double volatility, double timeToExpiry,
                       double timeToDelivery, double domesticRate, double foreignRate, double spot)
    : MWrapper(Guarded("MBSVanilla::MBSVanilla", [&] {
          return boost::make_shared<BSVanilla>(optionType, strike, volatility, timeToExpiry,
                                               timeToDelivery, domesticRate, foreignRate, spot);
      })) {}

MBSVanilla MBSVanilla::FromForward(int optionType, double strike, double volatility,
                                   double timeToExpiry, double timeToDelivery, double domesticRate,
                                   double foreignRate, double forward, double spot) {
    return MBSVanilla(Guarded("MBSVanilla::FromForward", [&] {
        return boost::make_shared<BSVanilla>(
            BSVanilla::FromForward(optionType, strike, volatility, timeToExpiry, timeToDelivery,
                                   domesticRate, foreignRate, forward, spot));
    }));
}

double MBSVanilla::OptionPrice(int optionType, double strike, double volatility,
                               double timeToExpiry, double timeToDelivery, double domesticRate,
                               double foreignRate, double spot) {
    return Guarded("MBSVanilla::OptionPrice", [&] {
        return BSVanilla(optionType, strike, volatility, timeToExpiry, timeToDelivery,
                         domesticRate, foreignRate, spot)
            .Price();
    });
}

double MBSVanilla::Figure(const char* where, const char* function, double (BSVanilla::*figure)()) {
    return Guarded(where, [&] { return (Object(function).*figure)(); });
}

double MBSVanilla::Price() { return Figure("MBSVanilla::Price", "zep::MBSVanilla::Price", &BSVanilla::Price); }
double MBSVanilla::Delta(bool spotDelta) {
    return Guarded("MBSVanilla::Delta", [&] { return Object("zep::MBSVanilla::Delta").Delta(spotDelta); });
}
double MBSVanilla::ForwardDelta(bool spotDelta) {
    return Guarded("MBSVanilla::ForwardDelta",
                   [&] { return Object("zep::MBSVanilla::ForwardDelta").ForwardDelta(spotDelta); });
}
double MBSVanilla::Gamma() { return Figure("MBSVanilla::Gamma", "zep::MBSVanilla::Gamma", &BSVanilla::Gamma); }
double MBSVanilla::Vega() { return Figure("MBSVanilla::Vega", "zep::MBSVanilla::Vega", &BSVanilla::Vega); }
double MBSVanilla::Theta() { return Figure("MBSVanilla::Theta", "zep::MBSVanilla::Theta", &BSVanilla::Theta); }
double MBSVanilla::ThetaPerYear() {
    return Figure("MBSVanilla::ThetaPerYear", "zep::MBSVanilla::ThetaPerYear", &BSVanilla::ThetaPerYear);
}
double MBSVanilla::Rho() { return Figure("MBSVanilla::Rho", "zep::MBSVanilla::Rho", &BSVanilla::Rho); }
double MBSVanilla::Phi() { return Figure("MBSVanilla::Phi", "zep::MBSVanilla::Phi", &BSVanilla::Phi); }
double MBSVanilla::Vanna() { return Figure("MBSVanilla::Vanna", "zep::MBSVanilla::Vanna", &BSVanilla::Vanna); }
double MBSVanilla::Volga() { return Figure("MBSVanilla::Volga", "zep::MBSVanilla::Volga", &BSVanilla::Volga); }
double MBSVanilla::DvegaDvol() {
    return Figure("MBSVanilla::DvegaDvol", "zep::MBSVanilla::DvegaDvol", &BSVanilla::DvegaDvol);
}
double MBSVanilla::DvegaDvol2() {
    return Figure("MBSVanilla::DvegaDvol2", "zep::MBSVanilla::DvegaDvol2", &BSVanilla::DvegaDvol2);
}
double MBSVanilla::DvegaDspot() {
    return Figure("MBSVanilla::DvegaDspot", "zep::MBSVanilla::DvegaDspot", &BSVanilla::DvegaDspot);
}
double MBSVanilla::Dd1Dvol() {
    return Figure("MBSVanilla::Dd1Dvol", "zep::MBSVanilla::Dd1Dvol", &BSVanilla::Dd1Dvol);
}
double MBSVanilla::VegaDigital() {
    return Figure("MBSVanilla::VegaDigital", "zep::MBSVanilla::VegaDigital", &BSVanilla::VegaDigital);
}
double MBSVanilla::VegaIDDigital() {
    return Figure("MBSVanilla::VegaIDDigital", "zep::MBSVanilla::VegaIDDigital", &BSVanilla::VegaIDDigital);
}
double MBSVanilla::GetSpot() const {
    return Guarded("MBSVanilla::GetSpot", [&] { return Object("zep::MBSVanilla::GetSpot").GetSpot(); });
}
double MBSVanilla::GetForward() const {
    return Guarded("MBSVanilla::GetForward",
                   [&] { return Object("zep::MBSVanilla::GetForward").GetForward(); });
}

double MBSVanilla::DeltaImpliedFromStrike(int optionType, double strike, double volatility,
                                          double timeToExpiry, double timeToDelivery,
                                          double domesticRate, double foreignRate, double spot,
                                          bool spotDelta) {
    return BSVanilla::DeltaImpliedFromStrike(optionType, strike, volatility, timeToExpiry,
                                             timeToDelivery, domesticRate, foreignRate, spot,
                                             spotDelta);
}

double MBSVanilla::StrikeImpliedFromDelta(int optionType, double targetDelta, double volatility,
                                          double timeToExpiry, double timeToDelivery,
                                          double domesticRate, double foreignRate, double spot,
                                          double initialStrike, int deltaKind, bool noThrow) {
    return Guarded("MBSVanilla::StrikeImpliedFromDelta", [&] {
        return BSVanilla::StrikeImpliedFromDelta(optionType, targetDelta, volatility, timeToExpiry,
                                                 timeToDelivery, domesticRate, foreignRate, spot,
                                                 initialStrike, static_cast<DeltaKind>(deltaKind),
                                                 noThrow);
    });
}

double MBSVanilla::StrikeImpliedFromPrice(int optionType, double targetPrice, double volatility,
                                          double timeToExpiry, double timeToDelivery,
                                          double domesticRate, double foreignRate, double spot,
                                          double initialStrike, double tolerance, int maxIterations) {
    return Guarded("MBSVanilla::StrikeImpliedFromPrice", [&] {
        return BSVanilla::StrikeImpliedFromPrice(optionType, targetPrice, volatility, timeToExpiry,
                                                 timeToDelivery, domesticRate, foreignRate, spot,
                                                 initialStrike, tolerance, maxIterations);
    });
}

double MBSVanilla::VolImpliedFromPrice(int optionType, double strike, double timeToExpiry,
                                       double timeToDelivery, double domesticRate,
                                       double foreignRate, double spot, double targetPrice,
                                       double volatilityLimit) {
    return Guarded("MBSVanilla::VolImpliedFromPrice", [&] {
        return BSVanilla::VolImpliedFromPrice(optionType, strike, timeToExpiry, timeToDelivery,
                                              domesticRate, foreignRate, spot, targetPrice,
                                              volatilityLimit);
    });
}

double MBSVanilla::VolImpliedFromForwardPrice(int optionType, double strike, double forward,
                                              double time, double targetPrice,
                                              double volatilityLimit) {
    return Guarded("MBSVanilla::VolImpliedFromForwardPrice", [&] {
        return BSVanilla::VolImpliedFromForwardPrice(optionType, strike, forward, time,
                                                     targetPrice, volatilityLimit);
    });
}

double MBSVanilla::VolImpliedFromFutureOptPrice(int optionType, double strike, double forward,
                                                double time, double rate, double targetPrice,
                                                double volatilityLimit) {
    return Guarded("MBSVanilla::VolImpliedFromFutureOptPrice", [&] {
        return BSVanilla::VolImpliedFromFutureOptPrice(optionType, strike, forward, time, rate,
                                                       targetPrice, volatilityLimit);
    });
}

}  // namespace zep::python
