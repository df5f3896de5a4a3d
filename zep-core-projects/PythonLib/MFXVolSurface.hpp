// The Python face of the FX volatility surface in the M-class frame: dates as the user gives
// them, every failure reported with "MFXVolSurface::<operation> failed: " in front.
#pragma once

#include <string>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-fxo-market/FXVolSurface.hpp"

namespace zep::python {

class MFXVolSurface : public MWrapper<zep::FXVolSurface> {
public:
    MFXVolSurface() = default;  // an empty object: every call reports "not initialized!"
    // Market quotes ("ATM", "25RR", "25BF", ...) by maturity date.
    MFXVolSurface(const DateInput& referenceDate, const DateInput& spotDate, double spot,
                  const std::vector<DateInput>& maturityDates,
                  const std::vector<std::string>& deltaStrings,
                  const std::vector<std::vector<double>>& vols,
                  boost::shared_ptr<zep::YieldCurve> domesticCurve,
                  boost::shared_ptr<zep::YieldCurve> foreignCurve,
                  const zep::FXVolConventions& conventions = zep::FXVolConventions(),
                  int smileInterpolation = 0,
                  const std::vector<double>& smileParameters = std::vector<double>());
    // The same by tenor from the reference date.
    static MFXVolSurface FromTenors(const DateInput& referenceDate, const DateInput& spotDate,
                                    double spot, const std::vector<zep::Period>& tenors,
                                    const std::vector<std::string>& deltaStrings,
                                    const std::vector<std::vector<double>>& vols,
                                    boost::shared_ptr<zep::YieldCurve> domesticCurve,
                                    boost::shared_ptr<zep::YieldCurve> foreignCurve,
                                    const zep::FXVolConventions& conventions = zep::FXVolConventions(),
                                    int smileInterpolation = 0,
                                    const std::vector<double>& smileParameters = std::vector<double>());
    // Pillar volatilities ("25P", "ATMM", "25C", ...) by maturity date.
    static MFXVolSurface FromPillars(const DateInput& referenceDate, const DateInput& spotDate,
                                     double spot, const std::vector<DateInput>& maturityDates,
                                     const std::vector<std::string>& pillarLabels,
                                     const std::vector<std::vector<double>>& vols,
                                     boost::shared_ptr<zep::YieldCurve> domesticCurve,
                                     boost::shared_ptr<zep::YieldCurve> foreignCurve,
                                     const zep::FXVolConventions& conventions = zep::FXVolConventions(),
                                     int smileInterpolation = 0,
                                     const std::vector<double>& smileParameters = std::vector<double>());

    double GetVolatility(const DateInput& expiry, double strike);
    double GetVolatility(double timeToExpiry, double strike);
    double GetATMVol(const DateInput& expiry);
    double GetStrike(const DateInput& expiry, const std::string& deltaString);
    double GetStrike(const DateInput& expiry, double delta, int deltaType, int premiumAdjusted,
                     int atmType);
    // The library surface, for the options built on it.
    boost::shared_ptr<zep::FXVolSurface> Surface();

    // Releases the surface; later calls report "not initialized!".
    void Dispose() { m_object.reset(); }

private:
    explicit MFXVolSurface(boost::shared_ptr<zep::FXVolSurface> surface)
        : MWrapper(std::move(surface)) {}
};

}  // namespace zep::python
