// The discount curve: turns a date or a year fraction into a discount factor, a zero rate or a
// forward rate. It stores one quantity per pillar (a zero rate in some convention or a discount
// factor) and interpolates it in time; bootstrapped curves derive from it. Every discount factor
// it gives is a positive finite number: pillars that have none (a simple rate with 1 + r t <= 0,
// an annual rate at -100%, log interpolation of values that are not positive) are refused when
// the curve is built, and a query where the curve's rule has none raises.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/ForwardPointsCurve.hpp"
#include "lum-interest-rates/GenericCurve.hpp"
#include "lum-interest-rates/InterpolatedVariable.hpp"
#include "lum-interest-rates/ParametricRateModel.hpp"
#include "lum-time/Frequency.hpp"
#include "lum-time/Period.hpp"

namespace zep {

// Day-counter arguments are convention codes; below zero means the curve's own day counter.
inline constexpr std::int32_t CurveDayCounter = -1;

class YieldCurve : public GenericCurve {
public:
    // From pillar dates and discount factors. A first date after the reference date gains a
    // reference pillar with factor 1.
    YieldCurve(const Date& referenceDate, const std::vector<Date>& dates,
               const std::vector<double>& discountFactors,
               const zep::DayCounter& dayCounter = zep::DayCounter(),
               std::int32_t interpolatedVariable = ContinuousZeroRates,
               std::int32_t interpolationMethod = LinearInterpolation, const std::string& label = "");
    // From pillar dates and zero rates compounded as `compounding` says: Continuous, or
    // NoFrequency / Once for simple rates.
    YieldCurve(const Date& referenceDate, const std::vector<Date>& dates,
               const std::vector<double>& zeroRates, Frequency compounding,
               const zep::DayCounter& dayCounter = zep::DayCounter(),
               std::int32_t interpolatedVariable = ContinuousZeroRates,
               std::int32_t interpolationMethod = LinearInterpolation, const std::string& label = "");
    // From tenors ("3M", "10Y") counted from the reference date and zero rates.
    YieldCurve(const Date& referenceDate, const std::vector<Period>& tenors,
               const std::vector<double>& zeroRates, Frequency compounding,
               const zep::DayCounter& dayCounter = zep::DayCounter(),
               std::int32_t interpolatedVariable = ContinuousZeroRates,
               std::int32_t interpolationMethod = LinearInterpolation, const std::string& label = "");
    ~YieldCurve() override = default;

    // 1. Forward discount factor between two times, in either order.
    virtual double DiscountFactor(double t1, double t2) const;
    // 2. DF(date2) / DF(date1) in argument order, under the given day counter.
    virtual double DiscountFactor(const Date& date1, const Date& date2, std::int32_t dayCounter) const;
    // 3. As 1 with both dates measured under the curve's day counter.
    virtual double DiscountFactor(const Date& date1, const Date& date2) const;
    // 4. Discount factor at t years; 1 at or before time zero.
    virtual double DiscountFactor(double t) const;
    // 5.
    virtual double DiscountFactor(const Date& date, std::int32_t dayCounter) const;
    // 6.
    virtual double DiscountFactor(const Date& date) const;
    // 7. The zero rate at t in the curve's own convention, spread included.
    virtual double Rate(double t) const;
    // 8. Zero rate to a date: simple unless compounded; compounded at `frequency` (Continuous
    // for continuous compounding).
    virtual double ZeroRate(const Date& date, std::int32_t dayCounter, bool compounded,
                            Frequency frequency) const;
    // 9.
    virtual double ZeroRate(double t, bool compounded, Frequency frequency) const;
    // 10. Par rate of a fixed leg paying annually, maturing at T years.
    virtual double ParRate(double T) const;
    // 11.
    virtual double ParRate(const Date& maturity) const;
    // 12., 13.
    virtual const Date& ReferenceDate() const { return m_referenceDate; }
    virtual double ZeroRateSpread() const { return m_ZeroRateSpread; }

    double ForwardRate(const Date& startDate, const Date& endDate, std::int32_t dayCounter,
                       bool compounded, Frequency frequency) const;
    std::vector<double> ForwardRate(const std::vector<Date>& startDates, const std::vector<Date>& endDates,
                                    std::int32_t dayCounter, bool compounded, Frequency frequency) const;

    // Many discount factors by time in one call; out must hold as many values as times.
    void DiscountFactorArray(const double* times, double* out, std::size_t count) const;

    // Codes 0 to 8 of the interpolation engine, or 9 for the forward-rate spline table.
    void SetInterpolation(std::int32_t interpolationMethod);
    void SetZeroRateSpread(double spread);
    void SetBeginOfDay(bool isBOD) { m_bIsBOD = isBOD; }
    bool IsBeginOfDay() const { return m_bIsBOD; }
    // Rates come from the model instead of the pillars.
    void SetParametricModel(boost::shared_ptr<const ParametricRateModel> model);
    // Rates implied from the other currency's curve and the FX forward points; isCCY2 says
    // this curve discounts the second currency of the pair.
    void SetImpliedCurve(boost::shared_ptr<const YieldCurve> otherCurve,
                         boost::shared_ptr<const ForwardPointsCurve> forwardPoints, bool isCCY2);
    bool IsParametricCurve() const { return m_isParametricCurve; }
    bool IsImpliedCurve() const { return m_isImpliedCurve; }
    bool IsCCY2() const { return m_isCCY2; }

    // Every field as JSON, and back.
    std::string ToJson() const;
    static boost::shared_ptr<YieldCurve> FromJson(const std::string& text);

private:
    // A bootstrap tries each pillar's rate on one curve changed in place.
    friend class CurveBootstrap;
    // The continuous zero rate `zero` at pillar `first` (counting the reference pillar) and every
    // later pillar, held in the curve's interpolated variable.
    void SetContinuousZeroRateFrom(std::size_t first, double zero);
    double VariableFromZeroRate(double r, double t, bool continuous) const;

    YieldCurve();
    double DiscountFactorFromRate(double rate, double t) const;
    double ParRateAt(double T) const;
    void RequirePillarDiscountFactors(const std::vector<Date>& dates, const std::vector<double>& times,
                                      const std::vector<double>& variables) const;
    double PillarRate(double t) const;
    double PillarRateFromValue(double interpolated, double t) const;
    double ImpliedRate(double t) const;
    double ZeroRateFrom(double discountFactor, double t, bool compounded, Frequency frequency) const;
    double FirstPositiveTime() const;
    std::vector<double> PillarForwardRates() const;
    void CompletePillars(const std::vector<Date>& dates, std::vector<double> variables);

    double m_ZeroRateSpread = 0.0;
    bool m_isParametricCurve = false;
    bool m_isImpliedCurve = false;
    bool m_isCCY2 = false;
    bool m_bIsBOD = false;
    boost::shared_ptr<const ParametricRateModel> m_parametricModel;
    boost::shared_ptr<const YieldCurve> m_otherCurve;
    boost::shared_ptr<const ForwardPointsCurve> m_forwardPoints;
};

}  // namespace zep
