// The FX volatility surface: an options market quoted by expiry and delta (at-the-money, risk
// reversals and butterflies, or the pillar volatilities themselves) turned into a volatility for
// any expiry and strike, with strikes solved from deltas under each expiry's quoting conventions.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-auxiliary/Interpolation.hpp"
#include "lum-closed-form/VolatilitySource.hpp"
#include "lum-fxo-market/FXDeltaConvention.hpp"
#include "lum-fxo-market/SabrSmile.hpp"
#include "lum-fxo-market/SmileInterpolation.hpp"
#include "lum-fxo-market/SviSmile.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"
#include "lum-time/Period.hpp"

namespace zep {

// Quoting conventions by expiry, each read from the listed expiry closest to the one asked.
// Empty lists mean spot delta, premium excluded, delta-neutral at-the-money everywhere, and no
// wing adjustment.
struct FXVolConventions {
    std::vector<Date> expiryDates;
    std::vector<int> deltaTypes;       // FXDeltaType codes
    std::vector<int> premiumAdjusted;  // FXPremiumAdjusted codes
    std::vector<int> atmTypes;         // FXATMType codes
    // The 10-delta pillars are pulled towards the 25-delta ones by these ratios (1 keeps the
    // quote, 0 copies the 25-delta volatility), listed against tenors from the reference date.
    std::vector<Period> wingTenors;
    std::vector<double> putWingRatios;
    std::vector<double> callWingRatios;
};

// A place where the surface's prices could be arbitraged: a negative butterfly (call prices
// not convex in the strike) within one expiry, or a calendar spread (total variance falling
// from one expiry to the next at the same log-forward-moneyness). `size` is the breach: the
// negative second difference of undiscounted call prices per unit strike squared, or the
// drop in total variance.
struct ArbitrageViolation {
    Date expiry;
    double strike;
    std::string kind;  // "butterfly" or "calendar"
    double size;
};

class FXVolSurface : public VolatilitySource {
public:
    // Columns of market-form labels: "ATM", and per delta (25, 10, 05, 02) "RR" and "BF".
    struct QuoteColumns {
        int atm = -1;
        std::map<int, int> riskReversals;  // delta in percent -> column
        std::map<int, int> butterflies;
    };

    // From market quotes: one row of volatilities per expiry, one column per label. Expiries as
    // tenors count from the reference date; times are Act365Fixed.
    FXVolSurface(const Date& referenceDate, const Date& spotDate, double spot,
                 const std::vector<Period>& tenors, const std::vector<std::string>& deltaStrings,
                 const std::vector<std::vector<double>>& vols,
                 boost::shared_ptr<const YieldCurve> domesticCurve,
                 boost::shared_ptr<const YieldCurve> foreignCurve,
                 const FXVolConventions& conventions = {}, int smileInterpolation = SmileLinear,
                 const std::vector<double>& smileParameters = {});
    FXVolSurface(const Date& referenceDate, const Date& spotDate, double spot,
                 const std::vector<Date>& maturityDates, const std::vector<std::string>& deltaStrings,
                 const std::vector<std::vector<double>>& vols,
                 boost::shared_ptr<const YieldCurve> domesticCurve,
                 boost::shared_ptr<const YieldCurve> foreignCurve,
                 const FXVolConventions& conventions = {}, int smileInterpolation = SmileLinear,
                 const std::vector<double>& smileParameters = {});
    // From pillar volatilities labelled "25P", "ATMM", "25C", "10P", ...
    static boost::shared_ptr<FXVolSurface> FromPillars(
        const Date& referenceDate, const Date& spotDate, double spot,
        const std::vector<Date>& maturityDates, const std::vector<std::string>& pillarLabels,
        const std::vector<std::vector<double>>& vols, boost::shared_ptr<const YieldCurve> domesticCurve,
        boost::shared_ptr<const YieldCurve> foreignCurve, const FXVolConventions& conventions = {},
        int smileInterpolation = SmileLinear, const std::vector<double>& smileParameters = {});

    // Size and range checks of the inputs. The size messages depend on the form of the
    // expiries (tenors, dates) and of the labels (market, pillar), so the caller names them.
    static void CheckParameters(const Date& referenceDate, const Date& spotDate, double spot,
                                std::size_t expiryCount, const std::vector<std::string>& deltaStrings,
                                const std::vector<std::vector<double>>& vols,
                                const char* expirySizeMessage, const char* columnSizeMessage);
    // Which column holds which market quote; ATM and the 25-delta pair are mandatory.
    static QuoteColumns processDeltaStrings(const std::vector<std::string>& deltaStrings);
    // Put and call wing ratios per expiry date, read against the tenors.
    static void processWingRatios(const FXVolConventions& conventions, const Date& referenceDate);
    // vol25 + wingRatio * (vol10 - vol25) on the call (or put) side of one expiry's pillars.
    static double ExtendWing(const std::vector<double>& deltas, const std::vector<double>& vols,
                             double wingRatio, bool isCall);
    // "25P" -> -0.25, "10C" -> 0.10, "ATMM" -> 0.
    static double DeltaStringToValue(const std::string& deltaString);

    int findClosestDeltaType(const Date& expiry) const;
    int findClosestPremiumAdjusted(const Date& expiry) const;
    int findClosestATMVolType(const Date& expiry) const;
    double findClosestWingRatio(const Date& expiry, bool isCall) const;

    double GetATMVol(const Date& expiry) const;
    double GetATMVol(double timeToExpiry) const;
    // The volatility by the smile mode, total variance interpolated linearly in time at fixed
    // log-forward-moneyness; flat in volatility before the first and after the last expiry.
    double GetVolatility(const Date& expiry, double strike) const;
    double GetVolatility(double timeToExpiry, double strike) const;
    void GetVolatility(const double* timesToExpiry, const double* strikes, double* out,
                       std::size_t count) const;
    double Volatility(double strike, double timeToExpiry) const override {
        return GetVolatility(timeToExpiry, strike);
    }
    bool IsFXVolSurface() const override { return true; }
    // The strike of a pillar label ("25P", "10C", "ATM") under the expiry's conventions, on the
    // smile: the strike whose delta at its own volatility is the label's.
    double GetStrike(const Date& expiry, const std::string& deltaString) const;
    // The same for a signed delta (0: at the money) under the given conventions.
    double GetStrike(const Date& expiry, double delta, int deltaType, int premiumAdjusted,
                     int atmType) const;

    // Butterfly and calendar arbitrage of the smiles, checked on a strike grid between each
    // expiry's outer pillars; empty for a clean surface.
    std::vector<ArbitrageViolation> ArbitrageReport() const;

    // The forward to a time from the reference date, spot settling on the spot date.
    double Forward(double timeToExpiry) const;
    double TimeToExpiry(const Date& expiry) const;

    const Date& ReferenceDate() const { return m_referenceDate; }
    const Date& SpotDate() const { return m_spotDate; }
    double Spot() const { return m_spot; }
    int SmileMode() const { return m_smileMode; }
    bool IsPillarForm() const { return m_pillarForm; }
    const std::vector<std::string>& DeltaStrings() const { return m_deltaStrings; }
    const std::vector<std::vector<double>>& Quotes() const { return m_quotes; }
    const std::vector<double>& SmileParameters() const { return m_smileParameters; }
    const FXVolConventions& Conventions() const { return m_conventions; }
    const boost::shared_ptr<const YieldCurve>& DomesticCurve() const { return m_domesticCurve; }
    const boost::shared_ptr<const YieldCurve>& ForeignCurve() const { return m_foreignCurve; }
    std::vector<Date> ExpiryDates() const;
    std::vector<double> ExpiryTimes() const;
    std::size_t ExpiryCount() const { return m_expiries.size(); }
    // Pillars of one expiry in strike order: signed deltas (0 at the money), volatilities,
    // strikes; and the fitted parameters of a parametric mode (empty otherwise).
    const std::vector<double>& PillarDeltas(std::size_t expiry) const;
    const std::vector<double>& PillarVolatilities(std::size_t expiry) const;
    const std::vector<double>& PillarStrikes(std::size_t expiry) const;
    std::vector<double> FittedParameters(std::size_t expiry) const;

private:
    // How a spline mode reads the smile: its abscissa and the quantity it interpolates.
    enum class Abscissa {
        LogMoneyness,
        Strike,
        StandardisedMoneyness,  // log-moneyness over the ATM standard deviation
        SimpleDelta,            // N(-d1) at the ATM volatility: explicit in the strike
        ImplicitDelta,          // N(-d1) at the strike's own volatility: a fixed point
        InvertedStrike,         // strike and volatility both splines of the pillars' N(-d1)
        InvertedLogMoneyness,   // the same with log-moneyness in place of the strike
    };
    enum class Ordinate { Volatility, TotalVariance };

    struct Expiry {
        Date date;
        double time = 0.0;
        double forward = 0.0;
        double foreignDiscount = 1.0;
        double atmVol = 0.0;  // NaN when the quotes have none
        int deltaType = SpotDelta;
        int premiumAdjusted = PremiumExcluded;
        int atmType = ATMDeltaNeutral;
        std::vector<double> deltas, vols, strikes;
        Interpolation<double, double, double> spline;
        // Inverted modes: strike (or log-moneyness) as a spline of the pillar delta coordinate.
        Interpolation<double, double, double> inverse;
        std::optional<SviSmile> svi;
        std::optional<SabrSmile> sabr;
    };

    FXVolSurface(const Date& referenceDate, const Date& spotDate, double spot,
                 const std::vector<Date>& expiryDates, const std::vector<std::string>& deltaStrings,
                 const std::vector<std::vector<double>>& vols,
                 boost::shared_ptr<const YieldCurve> domesticCurve,
                 boost::shared_ptr<const YieldCurve> foreignCurve, const FXVolConventions& conventions,
                 int smileInterpolation, const std::vector<double>& smileParameters, bool pillarForm,
                 const char* expirySizeMessage);
    // Signed pillar deltas and their volatilities for one row of quotes.
    void PillarsOf(const std::vector<double>& row, std::vector<double>& deltas,
                   std::vector<double>& vols) const;
    void BuildSmile(Expiry& expiry) const;
    FXDeltaMarket DeltaMarket(double time) const;
    double SmileVariance(const Expiry& expiry, double logMoneyness) const;
    double SplineValue(const Expiry& expiry, double logMoneyness) const;
    double ExpiryAtmVariance(const Expiry& expiry) const;
    std::size_t ClosestConvention(const Date& expiry, const std::vector<Date>& dates,
                                  std::size_t listSize, const char* message) const;
    template <class StrikeForVolatility>
    double SmileFixedPoint(double time, double start, const StrikeForVolatility& strikeFor) const;

    Date m_referenceDate;
    Date m_spotDate;
    double m_spot;
    double m_spotTime;
    // Discount factors to the spot date, taken once: every forward divides by them.
    double m_spotDomesticDiscount;
    double m_spotForeignDiscount;
    DayCounter m_dayCounter{Act365Fixed};
    boost::shared_ptr<const YieldCurve> m_domesticCurve;
    boost::shared_ptr<const YieldCurve> m_foreignCurve;
    std::vector<std::string> m_deltaStrings;
    std::vector<std::vector<double>> m_quotes;
    FXVolConventions m_conventions;
    std::vector<Date> m_wingDates;
    int m_smileMode;
    std::vector<double> m_smileParameters;
    bool m_pillarForm;
    QuoteColumns m_columns;             // market form
    std::vector<double> m_labelDeltas;  // pillar form: the signed delta of each column
    Abscissa m_abscissa = Abscissa::LogMoneyness;
    Ordinate m_ordinate = Ordinate::Volatility;
    std::vector<Expiry> m_expiries;
    std::vector<double> m_times;
};

}  // namespace zep
