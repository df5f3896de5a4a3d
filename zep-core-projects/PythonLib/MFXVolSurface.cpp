#include "MFXVolSurface.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MFXVolSurface::MFXVolSurface(const DateInput& referenceDate, const DateInput& spotDate,
                             double spot, const std::vector<DateInput>& maturityDates,
                             const std::vector<std::string>& deltaStrings,
                             const std::vector<std::vector<double>>& vols,
                             boost::shared_ptr<YieldCurve> domesticCurve,
                             boost::shared_ptr<YieldCurve> foreignCurve,
                             const FXVolConventions& conventions, int smileInterpolation,
                             const std::vector<double>& smileParameters)
    : MWrapper(Guarded("MFXVolSurface::MFXVolSurface", [&] {
          return boost::make_shared<FXVolSurface>(referenceDate.Value(), spotDate.Value(), spot,
                                                  Values(maturityDates), deltaStrings, vols,
                                                  domesticCurve, foreignCurve, conventions,
                                                  smileInterpolation, smileParameters);
      })) {}

MFXVolSurface MFXVolSurface::FromTenors(const DateInput& referenceDate, const DateInput& spotDate,
                                        double spot, const std::vector<Period>& tenors,
                                        const std::vector<std::string>& deltaStrings,
                                        const std::vector<std::vector<double>>& vols,
                                        boost::shared_ptr<YieldCurve> domesticCurve,
                                        boost::shared_ptr<YieldCurve> foreignCurve,
                                        const FXVolConventions& conventions, int smileInterpolation,
                                        const std::vector<double>& smileParameters) {
    return MFXVolSurface(Guarded("MFXVolSurface::FromTenors", [&] {
        return boost::make_shared<FXVolSurface>(referenceDate.Value(), spotDate.Value(), spot, tenors,
                                                deltaStrings, vols, domesticCurve, foreignCurve,
                                                conventions, smileInterpolation, smileParameters);
    }));
}

MFXVolSurface MFXVolSurface::FromPillars(const DateInput& referenceDate, const DateInput& spotDate,
                                         double spot, const std::vector<DateInput>& maturityDates,
                                         const std::vector<std::string>& pillarLabels,
                                         const std::vector<std::vector<double>>& vols,
                                         boost::shared_ptr<YieldCurve> domesticCurve,
                                         boost::shared_ptr<YieldCurve> foreignCurve,
                                         const FXVolConventions& conventions, int smileInterpolation,
                                         const std::vector<double>& smileParameters) {
    return MFXVolSurface(Guarded("MFXVolSurface::FromPillars", [&] {
        return FXVolSurface::FromPillars(referenceDate.Value(), spotDate.Value(), spot,
                                         Values(maturityDates), pillarLabels, vols, domesticCurve,
                                         foreignCurve, conventions, smileInterpolation,
                                         smileParameters);
    }));
}

double MFXVolSurface::GetVolatility(const DateInput& expiry, double strike) {
    return Guarded("MFXVolSurface::GetVolatility", [&] {
        return Object("zep::python::MFXVolSurface::GetVolatility").GetVolatility(expiry.Value(), strike);
    });
}

double MFXVolSurface::GetVolatility(double timeToExpiry, double strike) {
    return Guarded("MFXVolSurface::GetVolatility", [&] {
        return Object("zep::python::MFXVolSurface::GetVolatility").GetVolatility(timeToExpiry, strike);
    });
}

double MFXVolSurface::GetATMVol(const DateInput& expiry) {
    return Guarded("MFXVolSurface::GetATMVol", [&] {
        return Object("zep::python::MFXVolSurface::GetATMVol").GetATMVol(expiry.Value());
    });
}

double MFXVolSurface::GetStrike(const DateInput& expiry, const std::string& deltaString) {
    return Guarded("MFXVolSurface::GetStrike", [&] {
        return Object("zep::python::MFXVolSurface::GetStrike").GetStrike(expiry.Value(), deltaString);
    });
}

double MFXVolSurface::GetStrike(const DateInput& expiry, double delta, int deltaType,
                                int premiumAdjusted, int atmType) {
    return Guarded("MFXVolSurface::GetStrike", [&] {
        return Object("zep::python::MFXVolSurface::GetStrike")
            .GetStrike(expiry.Value(), delta, deltaType, premiumAdjusted, atmType);
    });
}

boost::shared_ptr<FXVolSurface> MFXVolSurface::Surface() {
    return Guarded("MFXVolSurface::Surface", [&] {
        Object("zep::python::MFXVolSurface::Surface");
        return m_object;
    });
}

}  // namespace zep::python
