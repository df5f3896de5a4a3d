// The interpolation engine shared by curves and surfaces: a tabulated function of one variable
// (or of two, on a grid) evaluated under one of nine methods, with a per-region method override
// and a choice of extrapolation. It holds no dates: callers pass year fractions. A value at a
// point that is a number is a finite number or raises: log-linear and "ffq" refuse values that
// are not positive, a spline whose curvature leaves double precision is a bad table, and any
// other value beyond double precision raises naming its point.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <boost/property_tree/ptree_fwd.hpp>

namespace zep {

enum InterpolationMethod : std::uint32_t {
    FlatInterpolation = 0,          // step: the left node's value
    ClosestInterpolation = 1,       // step: see Evaluate for the one-sided rule
    LinearInterpolation = 2,
    LinearXYInterpolation = 3,      // linear in x*y, divided by x
    LogLinearInterpolation = 4,
    LagrangeInterpolation = 5,      // one polynomial through all nodes
    CubicInterpolation = 6,         // natural cubic spline
    FFQInterpolation = 7,           // smooth discount-factor scheme with its own extrapolation
    ClampedCubicInterpolation = 8,  // cubic spline with given end derivatives
};

enum ExtrapolationMethod : std::uint32_t {
    NoExtrapolation = 0,
    FlatExtrapolation = 1,
    LinearExtrapolation = 2,
    TaylorExtrapolation = 3,  // accepted as a setting, fails when used
    CubicExtrapolation = 4,
};

std::string InterpolationMethodToString(std::uint32_t method);
// Case-insensitive; also accepts the decimal code and the long historical names.
InterpolationMethod stringToInterpolationMethod(const std::string& text);
std::string ExtrapolationMethodToString(std::uint32_t extrapolation);
ExtrapolationMethod stringToExtrapolationMethod(const std::string& text);

// Abscissa threshold -> method in force from that threshold on.
using InterpolationMethodMap = std::map<double, InterpolationMethod>;

template <class Abscissa, class Ordinate, class Value>
class Interpolation {
public:

    Interpolation() = default;
    // One-dimensional: y[i] is the value at x[i].
    Interpolation(std::vector<Abscissa> x, std::vector<Ordinate> y, InterpolationMethod method,
                  ExtrapolationMethod extrapolation, InterpolationMethodMap methods = {});
    // As above with the end derivatives of the clamped spline given.
    Interpolation(std::vector<Abscissa> x, std::vector<Ordinate> y, InterpolationMethod method,
                  ExtrapolationMethod extrapolation, InterpolationMethodMap methods, double leftDer,
                  double rightDer);
    // Two-dimensional: z[i][j] is the value at (x[i], y[j]).
    Interpolation(std::vector<Abscissa> x, std::vector<Ordinate> y,
                  std::vector<std::vector<Value>> z, InterpolationMethod method,
                  ExtrapolationMethod extrapolation, InterpolationMethodMap methods = {});

    double Evaluate(double x) const;
    // Evaluate at each of count points, as one call per point would.
    void Evaluate(const double* x, double* out, std::size_t count) const;
    double Evaluate(double x, double y) const;
    // Second derivatives of the natural cubic spline at the nodes (zero at both ends).
    std::vector<double> NaturalSecondDerivatives() const;

    // One-dimensional: values[k] becomes the value of node k for every node from `first` on, the
    // nodes and settings left in place (the spline curvatures solved again): how a bootstrap tries
    // values at its newest node without building an interpolation, and without allocating for the
    // methods other than the splines.
    void SetValuesFrom(std::size_t first, const std::vector<Ordinate>& values);

    // End derivatives for the clamped spline, read off the data as the extrapolation suggests.
    void autoSetBoundaryDerivatives();
    void SetBoundaryDerivatives(double leftDer, double rightDer);
    // Annual short rate for the first interval of "ffq"; negative means none.
    void SetShortRate(double shortRate) { m_shortRate = shortRate; }
    // Slopes at the nodes, used only by cubic extrapolation.
    void SetNodeSlopes(std::vector<double> slopes) { m_nodeSlopes = std::move(slopes); }

    const std::vector<Abscissa>& X() const { return m_x; }
    const std::vector<Ordinate>& Y() const { return m_y; }
    const std::vector<std::vector<Value>>& Z() const { return m_z; }
    InterpolationMethod Method() const { return m_method; }
    ExtrapolationMethod Extrapolation() const { return m_extrapolation; }
    const InterpolationMethodMap& Methods() const { return m_interpolationMethods; }
    double LeftDerivative() const { return m_leftDer; }
    double RightDerivative() const { return m_rightDer; }
    double ShortRate() const { return m_shortRate; }
    const std::vector<double>& NodeSlopes() const { return m_nodeSlopes; }

    // The settings (not the data, which belongs to the owner) under their field names.
    void SaveSettings(boost::property_tree::ptree& fields) const;
    void LoadSettings(const boost::property_tree::ptree& fields);

private:
    InterpolationMethod MethodAt(double x) const;
    void RequireData() const;
    double ValueAt(InterpolationMethod method, double x) const;
    std::size_t Interval(double x) const;
    std::size_t BucketOf(double x) const;
    void IndexIntervals();
    double Extrapolate(double x) const;
    double InteriorValue(InterpolationMethod method, std::size_t i, double x) const;
    double FFQ(double x) const;
    double Spline(const std::vector<double>& secondDerivatives, std::size_t i, double x) const;
    double ValueBeyondTheFastForms(double x) const;

    // A spline's second derivatives at the nodes, or the message its table fails with: a bad
    // table is refused when the spline is evaluated, not when the interpolator is built.
    struct SplineCurvature {
        std::vector<double> secondDerivatives;
        const char* failure = nullptr;
    };
    SplineCurvature SolveCurvature(bool clamped) const;
    static const std::vector<double>& SecondDerivativesOf(const SplineCurvature& curvature);
    bool UsesMethod(InterpolationMethod method) const;
    void PrepareSplines();
    double CubicExtrapolate(double x) const;
    double Lagrange(double x) const;

    std::vector<Abscissa> m_x;
    std::vector<Ordinate> m_y;
    // Taken once at construction so that evaluation does no logarithm and no division:
    // ln y at each node and the slope of each interval.
    std::vector<double> m_logY;
    std::vector<double> m_slopes;
    // For ascending nodes: equally wide buckets spanning the nodes, each with the first interval
    // a point in it can lie in, so that locating a point takes a few steps, not a bisection.
    std::vector<std::uint32_t> m_bucketIntervals;
    double m_bucketsPerUnit = 0.0;
    std::uint32_t m_nodesPerBucket = 0;
    std::vector<std::vector<Value>> m_z;
    InterpolationMethod m_method = LinearInterpolation;
    InterpolationMethodMap m_interpolationMethods;
    ExtrapolationMethod m_extrapolation = FlatExtrapolation;
    double m_shortRate = -1.0;
    double m_leftDer = 0.0;
    double m_rightDer = 0.0;
    std::vector<double> m_nodeSlopes;
    // Solved whenever the nodes, the end derivatives or the methods change, for the spline
    // methods in use, so that evaluation only reads them (safe from several threads).
    SplineCurvature m_naturalCurvature;
    SplineCurvature m_clampedCurvature;
};

extern template class Interpolation<double, double, double>;
extern template class Interpolation<int, double, double>;

}  // namespace zep
