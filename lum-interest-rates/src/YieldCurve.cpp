#include "lum-interest-rates/YieldCurve.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <typeinfo>

#include <boost/property_tree/ptree.hpp>
#include <fmt/format.h>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/SavedFields.hpp"

namespace zep {

namespace {

constexpr double kTimeGuard = 1e-10;
constexpr const char* kConstructor = "zep::YieldCurve::YieldCurve";

[[noreturn]] void WrongInterpolatedVariable() { throw std::runtime_error("Wrong interpolated variable"); }

bool IsNearZero(double t) { return std::abs(t) <= kTimeGuard; }

bool IsSimpleCompounding(Frequency frequency) { return frequency == NoFrequency || frequency == Once; }

// The stored quantity as a message names it; annual rates are the yield curve's own and have no
// text code.
std::string VariableName(std::int32_t variable) {
    return variable == AnnualZeroRates ? "Annual Zero Rates" : InterpolatedVariableToString(variable);
}

void RequireIncreasingDates(const std::vector<Date>& dates) {
    for (std::size_t i = 1; i < dates.size(); ++i) {
        if (!(dates[i - 1] < dates[i])) ZEP_FAIL_IN(kConstructor, "YieldCurve: dates must be strictly increasing.");
    }
}

void RequireYieldCurveVariable(std::int32_t variable) {
    if (variable < AnnualZeroRates || variable > DiscountFactors) WrongInterpolatedVariable();
}

void RequireCurveMethod(std::int32_t method) {
    if (method < 0 || method > SplineTableInterpolation) throw std::runtime_error("Wrong method");
}

// Log-linear and "ffq" interpolation work on the logarithms of the pillar values.
void RequireLogInterpolable(const std::vector<double>& variables, std::int32_t method) {
    if (method != LogLinearInterpolation && method != FFQInterpolation) return;
    for (double value : variables) {
        if (!(value > 0.0))
            ZEP_FAIL_IN(kConstructor, fmt::format("YieldCurve: {} interpolation needs positive pillar values, not {:.6g}",
                                                  InterpolationMethodToString(method), value));
    }
}

bool IsDiscountFactor(double value) { return value > 0.0 && value <= std::numeric_limits<double>::max(); }

// A discount factor interpolated to zero or below (a polynomial through the pillars dipping) has no
// rate.
[[noreturn, gnu::cold, gnu::noinline]] void FailNoRate(double interpolatedDiscountFactor, double t) {
    ZEP_FAIL_IN("zep::YieldCurve::Rate",
                fmt::format("YieldCurve: no rate at {:.6g} years: the interpolated discount factor there is {:.6g}", t,
                            interpolatedDiscountFactor));
}

// Where the curve's rule has no answer (a simple rate of -50% held flat to 50 years, a polynomial
// through the pillars that dips below -100% annual) the query raises: a discount factor that is
// not a positive number is no discount factor, and no clamp would be the curve's. Out of line, so
// that the queries stay small enough to inline.
[[noreturn, gnu::cold, gnu::noinline]] void FailNoDiscountFactor(double discountFactor, double rate, double t,
                                                                std::int32_t variable) {
    ZEP_FAIL_IN("zep::YieldCurve::DiscountFactor",
                fmt::format("YieldCurve: no discount factor at {:.6g} years: the curve reads {:.6g} there ({}), "
                            "which gives {:.6g}", t, rate, VariableName(variable), discountFactor));
}

// A rate figure of the curve, or a zep::Error where its true value lies beyond double precision
// (the annual rate of a discount factor of 0.9986 reached in 1e-10 years).
double FiniteRate(double rate, const char* query, double t) {
    if (std::isfinite(rate)) [[likely]]
        return rate;
    ZEP_FAIL_IN(std::string("zep::YieldCurve::") + query,
                fmt::format("YieldCurve: the {} at {:.6g} years cannot be represented in double precision ({:.6g})",
                            query, t, rate));
}

std::vector<double> PillarTimes(const Date& referenceDate, const std::vector<Date>& dates,
                                const zep::DayCounter& dayCounter) {
    std::vector<double> times;
    times.reserve(dates.size());
    for (const Date& date : dates) times.push_back(dayCounter.YearFraction(referenceDate, date));
    return times;
}

std::vector<Date> MaturityDates(const Date& referenceDate, const std::vector<Period>& tenors) {
    std::vector<Date> dates;
    dates.reserve(tenors.size());
    for (const Period& tenor : tenors) dates.push_back(referenceDate + tenor);
    if (dates.empty())
        ZEP_FAIL_IN(kConstructor, "YieldCurve: MaturityDates(tenors) produced no pillars; check tenors/zeroRates.");
    return dates;
}

}  // namespace

YieldCurve::YieldCurve()
    : GenericCurve(Date(), zep::DayCounter(), ContinuousZeroRates, LinearInterpolation, "") {}

YieldCurve::YieldCurve(const Date& referenceDate, const std::vector<Date>& dates,
                       const std::vector<double>& discountFactors, const zep::DayCounter& dayCounter,
                       std::int32_t interpolatedVariable, std::int32_t interpolationMethod,
                       const std::string& label)
    : GenericCurve(referenceDate, dayCounter, interpolatedVariable, interpolationMethod, label) {
    if (dates.size() != discountFactors.size())
        ZEP_FAIL("Must enter the same number of dates and discount factors.");
    if (dates.empty()) ZEP_FAIL("YieldCurve: dates and discountFactors must not be empty.");
    std::vector<Date> pillars = dates;
    std::vector<double> factors = discountFactors;
    if (pillars.front() > referenceDate) {
        pillars.insert(pillars.begin(), referenceDate);
        factors.insert(factors.begin(), 1.0);
    } else if (!(pillars.front() == referenceDate && std::abs(factors.front() - 1.0) <= kTimeGuard)) {
        ZEP_FAIL("First discount factor must equal 1.0.");
    }
    RequireIncreasingDates(pillars);
    if (std::any_of(factors.begin(), factors.end(), [](double d) { return !(d > 0.0); }))
        ZEP_FAIL("YieldCurve: discount factors must be positive.");
    RequireYieldCurveVariable(interpolatedVariable);
    RequireCurveMethod(interpolationMethod);

    const std::vector<double> times = PillarTimes(referenceDate, pillars, dayCounter);
    auto toVariable = [&](double discountFactor, double t) {
        switch (interpolatedVariable) {
            case SimpleZeroRates: return (1.0 / discountFactor - 1.0) / t;
            case ContinuousZeroRates: return -std::log(discountFactor) / t;
            case DiscountFactors: return discountFactor;
            // The exponent is t, not 1/t, and does not invert the reading rule 1/(1 + r)^t:
            // stored annual curves were built this way and are read back unchanged.
            default: return std::pow(1.0 / discountFactor, t) - 1.0;
        }
    };
    std::vector<double> variables(pillars.size());
    for (std::size_t i = 0; i < pillars.size(); ++i) {
        if (!IsNearZero(times[i]) || interpolatedVariable == DiscountFactors) {
            variables[i] = toVariable(factors[i], times[i]);
            continue;
        }
        // The reference pillar carries no rate of its own: it takes the second pillar's.
        if (pillars.size() < 2) ZEP_FAIL("YieldCurve: a single pillar gives no rate at the reference date.");
        if (interpolatedVariable == ContinuousZeroRates)
            variables[i] = -std::log(factors[1]) / (pillars[1].SerialNumber() - referenceDate.SerialNumber()) * 365.0;
        else
            variables[i] = toVariable(factors[1], times[1]);
    }
    CompletePillars(pillars, std::move(variables));
}

YieldCurve::YieldCurve(const Date& referenceDate, const std::vector<Date>& dates,
                       const std::vector<double>& zeroRates, Frequency compounding,
                       const zep::DayCounter& dayCounter, std::int32_t interpolatedVariable,
                       std::int32_t interpolationMethod, const std::string& label)
    : GenericCurve(referenceDate, dayCounter, interpolatedVariable, interpolationMethod, label) {
    if (dates.size() != zeroRates.size()) ZEP_FAIL("Must enter the same number of dates and zero rates.");
    if (dates.empty())
        ZEP_FAIL("YieldCurve: dates and zeroRates must not be empty (cannot use dates.front() on empty vector).");
    if (compounding != Continuous && !IsSimpleCompounding(compounding))
        ZEP_FAIL("Compounding frequency can only be one of Once, NoFrequency or Continuous");
    std::vector<Date> pillars = dates;
    std::vector<double> rates = zeroRates;
    if (pillars.front() > referenceDate) {
        pillars.insert(pillars.begin(), referenceDate);
        rates.insert(rates.begin(), rates.front());
    } else if (pillars.front() < referenceDate) {
        ZEP_FAIL("YieldCurve: the first date must not be before the reference date.");
    }
    RequireIncreasingDates(pillars);
    RequireYieldCurveVariable(interpolatedVariable);
    RequireCurveMethod(interpolationMethod);

    const bool continuous = compounding == Continuous;
    const std::vector<double> times = PillarTimes(referenceDate, pillars, dayCounter);
    std::vector<double> variables(pillars.size());
    for (std::size_t i = 0; i < pillars.size(); ++i) {
        const double r = rates[i], t = times[i];
        // A simple rate grows money by 1 + r t; a growth that is not positive is no rate.
        if (!continuous && !(1.0 + r * t > 0.0))
            ZEP_FAIL(fmt::format("YieldCurve: the simple zero rate {:.6g} over {:.6g} years gives no discount factor "
                                 "(1 + r t is not positive)", r, t));
        variables[i] = VariableFromZeroRate(r, t, continuous);
    }
    CompletePillars(pillars, std::move(variables));
}

double YieldCurve::VariableFromZeroRate(double r, double t, bool continuous) const {
    const bool atZero = IsNearZero(t);
    switch (m_interpolatedVariable) {
        case ContinuousZeroRates:
            return continuous || atZero ? r : std::log(1.0 + r * t) / t;
        case DiscountFactors:
            return atZero ? 1.0 : continuous ? std::exp(-r * t) : 1.0 / (1.0 + r * t);
        default:  // simple and annual zero rates keep the simple rate
            return !continuous || atZero ? r : (std::exp(r * t) - 1.0) / t;
    }
}

void YieldCurve::SetContinuousZeroRateFrom(std::size_t first, double zero) {
    for (std::size_t k = first; k < m_variables.size(); ++k) m_variables[k] = VariableFromZeroRate(zero, m_times[k], true);
    m_interpolation.SetValuesFrom(first, m_variables);
    if (m_interpolationMethod == ClampedCubicInterpolation) m_interpolation.autoSetBoundaryDerivatives();
    if (m_interpolationMethod == SplineTableInterpolation) BuildSplineTable(PillarForwardRates());
}

YieldCurve::YieldCurve(const Date& referenceDate, const std::vector<Period>& tenors,
                       const std::vector<double>& zeroRates, Frequency compounding,
                       const zep::DayCounter& dayCounter, std::int32_t interpolatedVariable,
                       std::int32_t interpolationMethod, const std::string& label)
    : YieldCurve(referenceDate, MaturityDates(referenceDate, tenors), zeroRates, compounding, dayCounter,
                 interpolatedVariable, interpolationMethod, label) {}

void YieldCurve::CompletePillars(const std::vector<Date>& dates, std::vector<double> variables) {
    std::vector<double> times = PillarTimes(m_referenceDate, dates, m_dayCounter);
    RequireLogInterpolable(variables, m_interpolationMethod);
    RequirePillarDiscountFactors(dates, times, variables);
    m_dates = dates;
    m_times = std::move(times);
    m_variables = std::move(variables);
    BuildInterpolation();
    if (m_interpolationMethod == SplineTableInterpolation) BuildSplineTable(PillarForwardRates());
}

void YieldCurve::SetInterpolation(std::int32_t interpolationMethod) {
    const std::int32_t previous = m_interpolationMethod;
    try {
        RequireCurveMethod(interpolationMethod);
        RequireLogInterpolable(m_variables, interpolationMethod);
        m_interpolationMethod = interpolationMethod;
        BuildInterpolation();
        if (interpolationMethod == SplineTableInterpolation) BuildSplineTable(PillarForwardRates());
    } catch (const std::exception&) {
        m_interpolationMethod = previous;
        BuildInterpolation();
        ZEP_FAIL("SetInterpolation failed");
    }
}

// Instantaneous forward rates at the pillars, for the spline table of method 9: the slope of
// minus log discount factors, differentiating the parabola through each pillar and its two
// neighbours (the two nearest others at the ends). Exact for a flat continuous curve.
std::vector<double> YieldCurve::PillarForwardRates() const {
    const std::size_t n = m_times.size();
    if (n < 2) throw std::runtime_error("YieldCurve: the spline table needs at least two pillars");
    std::vector<double> logDiscount(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double t = m_times[i];
        const double v = m_variables[i];
        const double discountFactor = m_interpolatedVariable == DiscountFactors ? v
                                      : t <= 0.0                               ? 1.0
                                                                               : DiscountFactorFromRate(v, t);
        logDiscount[i] = -std::log(discountFactor);
    }
    if (n == 2) {
        const double slope = (logDiscount[1] - logDiscount[0]) / (m_times[1] - m_times[0]);
        return {slope, slope};
    }
    auto parabolaSlope = [&](std::size_t first, double s) {
        const double a = m_times[first], b = m_times[first + 1], c = m_times[first + 2];
        return logDiscount[first] * ((s - b) + (s - c)) / ((a - b) * (a - c)) +
               logDiscount[first + 1] * ((s - a) + (s - c)) / ((b - a) * (b - c)) +
               logDiscount[first + 2] * ((s - a) + (s - b)) / ((c - a) * (c - b));
    };
    std::vector<double> forwards(n);
    for (std::size_t i = 0; i < n; ++i) forwards[i] = parabolaSlope(std::clamp<std::size_t>(i, 1, n - 2) - 1, m_times[i]);
    return forwards;
}

double YieldCurve::DiscountFactorFromRate(double rate, double t) const {
    switch (m_interpolatedVariable) {
        case AnnualZeroRates: return 1.0 / std::pow(1.0 + rate, t);
        case SimpleZeroRates: return 1.0 / (1.0 + rate * t);
        case ContinuousZeroRates:
        case DiscountFactors:
        case ContinuousZeroRateSpreads: return std::exp(-rate * t);
    }
    WrongInterpolatedVariable();
}

// Every pillar must read back a discount factor under the curve's own rule; the annual rule
// 1 / (1 + r)^t has none at -100% and underflows for the huge rates that the stored annual form
// gives steep discount factors.
void YieldCurve::RequirePillarDiscountFactors(const std::vector<Date>& dates, const std::vector<double>& times,
                                              const std::vector<double>& variables) const {
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (times[i] <= 0.0) continue;
        const double value = variables[i];
        const double factor = m_interpolatedVariable == DiscountFactors ? value : DiscountFactorFromRate(value, times[i]);
        if (!IsDiscountFactor(factor))
            ZEP_FAIL_IN(kConstructor, fmt::format("YieldCurve: the pillar at {} reads back no discount factor: its "
                                                  "value {:.6g} ({}) gives {:.6g}", dates[i].ToString(), value,
                                                  VariableName(m_interpolatedVariable), factor));
    }
}

double YieldCurve::DiscountFactor(double t) const {
    if (t <= 0.0) return 1.0;
    const double rate = Rate(t);
    const double discountFactor = DiscountFactorFromRate(rate, t);
    if (IsDiscountFactor(discountFactor)) [[likely]]
        return discountFactor;
    FailNoDiscountFactor(discountFactor, rate, t, m_interpolatedVariable);
}


double YieldCurve::DiscountFactor(double t1, double t2) const {
    if (std::abs(t1 - t2) <= kTimeGuard) return 1.0;
    return DiscountFactor(std::max(t1, t2)) / DiscountFactor(std::min(t1, t2));
}

double YieldCurve::DiscountFactor(const Date& date1, const Date& date2, std::int32_t dayCounter) const {
    const double first = DiscountFactor(date1, dayCounter);
    if (first <= 0.0) return 0.0;
    return DiscountFactor(date2, dayCounter) / first;
}

double YieldCurve::DiscountFactor(const Date& date1, const Date& date2) const {
    return DiscountFactor(m_dayCounter.YearFraction(m_referenceDate, date1),
                          m_dayCounter.YearFraction(m_referenceDate, date2));
}

double YieldCurve::DiscountFactor(const Date& date, std::int32_t dayCounter) const {
    const zep::DayCounter counter = dayCounter < 0 ? m_dayCounter : zep::DayCounter(dayCounter);
    return DiscountFactor(counter.YearFraction(m_referenceDate, date));
}

double YieldCurve::DiscountFactor(const Date& date) const { return DiscountFactor(date, CurveDayCounter); }

// A plain pillar curve interpolates a block of points in one pass and then turns the rates into
// discount factors; a curve of a derived type, or one reading a model or another curve, answers
// point by point through its virtual operations.
void YieldCurve::DiscountFactorArray(const double* times, double* out, std::size_t count) const {
    const bool readsPillars = typeid(*this) == typeid(YieldCurve) && !m_isParametricCurve &&
                              !(m_isImpliedCurve && m_otherCurve && m_forwardPoints);
    if (!readsPillars) {
        for (std::size_t i = 0; i < count; ++i) out[i] = DiscountFactor(times[i]);
        return;
    }
    constexpr std::size_t kBlock = 256;
    double points[kBlock];
    for (std::size_t start = 0; start < count; start += kBlock) {
        const std::size_t n = std::min(kBlock, count - start);
        const double* t = times + start;
        double* value = out + start;
        // At or before time zero the factor is 1; interpolate at the last pillar there instead.
        for (std::size_t i = 0; i < n; ++i) points[i] = t[i] > 0.0 ? t[i] : m_times.back();
        m_interpolation.Evaluate(points, value, n);
        bool readable = true;
        for (std::size_t i = 0; i < n; ++i) {
            value[i] = t[i] > 0.0 ? DiscountFactorFromRate(PillarRateFromValue(value[i], t[i]), t[i]) : 1.0;
            readable &= IsDiscountFactor(value[i]);
        }
        if (!readable) [[unlikely]]
            for (std::size_t i = 0; i < n; ++i) DiscountFactor(t[i]);  // raises at the first point with no factor
    }
}

double YieldCurve::Rate(double t) const {
    if (m_isParametricCurve) {
        if (!m_parametricModel) ZEP_FAIL("YieldCurve: the parametric model is not attached.");
        return m_parametricModel->Rate(t);
    }
    if (m_isImpliedCurve && m_otherCurve && m_forwardPoints) return t > 0.0 ? ImpliedRate(t) : 0.0;
    if (t > 0.0) return PillarRate(t);
    const double first = FirstPositiveTime();
    return first > 0.0 ? PillarRate(first) : 0.0;
}

double YieldCurve::PillarRate(double t) const {
    const double interpolated = m_interpolation.Evaluate(t);
    if (m_interpolatedVariable == DiscountFactors && !(interpolated > 0.0)) [[unlikely]]
        FailNoRate(interpolated, t);
    return PillarRateFromValue(interpolated, t);
}

double YieldCurve::PillarRateFromValue(double interpolated, double t) const {
    switch (m_interpolatedVariable) {
        case AnnualZeroRates:
        case SimpleZeroRates:
        case ContinuousZeroRates: return interpolated + m_ZeroRateSpread;
        case DiscountFactors: return -std::log(interpolated) / t + m_ZeroRateSpread;
    }
    WrongInterpolatedVariable();
}

// Covered interest parity: the forward F = S + P / scale ties this currency's rate to the other
// currency's rate r_o through F / S = (1 + t r_ccy2) / (1 + t r_ccy1).
double YieldCurve::ImpliedRate(double t) const {
    const double otherRate = m_otherCurve->Rate(t);
    const double spot = m_forwardPoints->Spot("MID");
    const double scale = m_forwardPoints->Scale();
    const auto first = m_forwardPoints->FirstImpliedCurve();
    const auto second = m_forwardPoints->SecondImpliedCurve();
    const double points = first && second
                              ? ((1.0 + t * first->Rate(t)) / (1.0 + t * second->Rate(t)) - 1.0) * spot * scale
                              : m_forwardPoints->ForwardPoints(t);
    const double forward = points / scale + spot;
    const double growth = 1.0 + t * otherRate;
    return m_isCCY2 ? ((forward * growth) / spot - 1.0) / t : ((growth * spot) / forward - 1.0) / t;
}

double YieldCurve::FirstPositiveTime() const {
    const auto positive = std::find_if(m_times.begin(), m_times.end(), [](double t) { return t > 0.0; });
    return positive == m_times.end() ? 0.0 : *positive;
}

double YieldCurve::ZeroRateFrom(double discountFactor, double t, bool compounded, Frequency frequency) const {
    if (t <= 0.0) {
        t = FirstPositiveTime();
        if (t <= 0.0) return 0.0;
        discountFactor = DiscountFactor(t);
    }
    if (!compounded) return (1.0 / discountFactor - 1.0) / t;
    if (frequency == Continuous) return -std::log(discountFactor) / t;
    if (IsSimpleCompounding(frequency))
        ZEP_FAIL_IN("zep::YieldCurve::ZeroRate", "Cannot compound zero rate with no frequency or frequency once");
    const double f = frequency;
    return (std::pow(1.0 / discountFactor, 1.0 / (f * t)) - 1.0) * f;
}

double YieldCurve::ZeroRate(const Date& date, std::int32_t dayCounter, bool compounded, Frequency frequency) const {
    const zep::DayCounter counter = dayCounter < 0 ? m_dayCounter : zep::DayCounter(dayCounter);
    const double t = counter.YearFraction(m_referenceDate, date);
    return FiniteRate(ZeroRateFrom(DiscountFactor(date), t, compounded, frequency), "ZeroRate", t);
}

double YieldCurve::ZeroRate(double t, bool compounded, Frequency frequency) const {
    return FiniteRate(ZeroRateFrom(DiscountFactor(t), t, compounded, frequency), "ZeroRate", t);
}

double YieldCurve::ParRate(double T) const { return FiniteRate(ParRateAt(T), "ParRate", T); }

double YieldCurve::ParRateAt(double T) const {
    if (T <= 0.0) {
        T = FirstPositiveTime();
        if (T <= 0.0) return 0.0;
    }
    const double atMaturity = DiscountFactor(T);
    if (T <= 1.0) return (1.0 - atMaturity) / (T * atMaturity);
    // Whole coupon years before maturity, then the final (possibly broken) period.
    const double wholeYears = std::ceil(T) - 1.0;
    double annuity = (T - wholeYears) * atMaturity;
    for (int year = 1; year <= static_cast<int>(wholeYears); ++year) annuity += DiscountFactor(static_cast<double>(year));
    return (1.0 - atMaturity) / annuity;
}

double YieldCurve::ParRate(const Date& maturity) const {
    return ParRate(m_dayCounter.YearFraction(m_referenceDate, maturity));
}

double YieldCurve::ForwardRate(const Date& startDate, const Date& endDate, std::int32_t dayCounter,
                               bool compounded, Frequency frequency) const {
    if (compounded && IsSimpleCompounding(frequency))
        ZEP_FAIL("Cannot compound a forward rate with no frequency or frequency once");
    const double start = m_dayCounter.YearFraction(m_referenceDate, startDate);
    if (m_interpolationMethod == SplineTableInterpolation)
        return FiniteRate(SplineTableValue(start), "ForwardRate", start);
    const double growth = DiscountFactor(startDate) / DiscountFactor(endDate);
    const zep::DayCounter counter = dayCounter < 0 ? m_dayCounter : zep::DayCounter(dayCounter);
    const double tau = counter.YearFraction(startDate, endDate);
    if (tau == 0.0) return 0.0;
    const double f = frequency;
    const double rate = !compounded                ? (growth - 1.0) / tau
                        : frequency == Continuous ? std::log(growth) / tau
                                                  : (std::pow(growth, 1.0 / (f * tau)) - 1.0) * f;
    return FiniteRate(rate, "ForwardRate", start);
}

std::vector<double> YieldCurve::ForwardRate(const std::vector<Date>& startDates, const std::vector<Date>& endDates,
                                            std::int32_t dayCounter, bool compounded, Frequency frequency) const {
    if (startDates.size() != endDates.size())
        ZEP_FAIL("Number of start dates (" + std::to_string(startDates.size()) + ") must equal number of end dates(" +
                 std::to_string(endDates.size()));
    std::vector<double> rates;
    rates.reserve(startDates.size());
    for (std::size_t i = 0; i < startDates.size(); ++i)
        rates.push_back(ForwardRate(startDates[i], endDates[i], dayCounter, compounded, frequency));
    return rates;
}

void YieldCurve::SetZeroRateSpread(double spread) {
    ZEP_REQUIRE(std::isfinite(spread), "YieldCurve: the zero rate spread must be a finite number");
    m_ZeroRateSpread = spread;
}

void YieldCurve::SetParametricModel(boost::shared_ptr<const ParametricRateModel> model) {
    ZEP_REQUIRE(model, "YieldCurve: the parametric model is not attached.");
    m_parametricModel = std::move(model);
    m_isParametricCurve = true;
}

void YieldCurve::SetImpliedCurve(boost::shared_ptr<const YieldCurve> otherCurve,
                                 boost::shared_ptr<const ForwardPointsCurve> forwardPoints, bool isCCY2) {
    ZEP_REQUIRE(otherCurve, "YieldCurve: the implied curve needs the other currency's curve.");
    ZEP_REQUIRE(forwardPoints, "YieldCurve: the implied curve needs the forward points.");
    m_otherCurve = std::move(otherCurve);
    m_forwardPoints = std::move(forwardPoints);
    m_isCCY2 = isCCY2;
    m_isImpliedCurve = true;
}

std::string YieldCurve::ToJson() const {
    boost::property_tree::ptree fields;
    SaveFields(fields);
    fields::PutDouble(fields, "m_ZeroRateSpread", m_ZeroRateSpread);
    fields.put("m_isParametricCurve", m_isParametricCurve);
    fields.put("m_bIsBOD", m_bIsBOD);
    fields.put("m_isImpliedCurve", m_isImpliedCurve);
    fields.put("m_isCCY2", m_isCCY2);
    return fields::ToJson(fields);
}

boost::shared_ptr<YieldCurve> YieldCurve::FromJson(const std::string& text) {
    const boost::property_tree::ptree fields = fields::FromJson(text);
    boost::shared_ptr<YieldCurve> curve(new YieldCurve());
    curve->LoadFields(fields);
    curve->m_ZeroRateSpread = fields::GetDouble(fields, "m_ZeroRateSpread");
    curve->m_isParametricCurve = fields.get<bool>("m_isParametricCurve");
    curve->m_bIsBOD = fields.get<bool>("m_bIsBOD");
    curve->m_isImpliedCurve = fields.get<bool>("m_isImpliedCurve");
    curve->m_isCCY2 = fields.get<bool>("m_isCCY2");
    const std::size_t n = curve->m_dates.size();
    if (n == 0 || curve->m_times.size() != n || curve->m_variables.size() != n)
        throw std::invalid_argument("Saved curve has no pillars or pillar fields of different lengths");
    RequireCurveMethod(curve->m_interpolationMethod);
    if (curve->m_interpolationMethod == SplineTableInterpolation &&
        (curve->m_spline_table.size() != curve->m_spline_lower_nodes.size() || curve->m_last_time_index < 0 ||
         static_cast<std::size_t>(curve->m_last_time_index) >= curve->m_spline_table.size()))
        throw std::invalid_argument("Saved curve has an inconsistent spline table");
    return curve;
}

}  // namespace zep
