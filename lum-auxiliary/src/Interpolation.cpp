#include "lum-auxiliary/Interpolation.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include <fmt/format.h>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/SavedFields.hpp"

namespace zep {

namespace {

constexpr double kSplineSpacingGuard = 1e-10;
constexpr double kExtrapolationGuard = 1e-8;

template <class T>
constexpr const char* TypeName() {
    if constexpr (std::is_same_v<T, double>) return "double";
    else if constexpr (std::is_same_v<T, int>) return "int";
    else return "T";
}

// Errors name the template instance the way the library always printed it.
template <class A, class O, class V>
std::string MemberName(const char* member) {
    return std::string("zep::Interpolation<") + TypeName<A>() + "," + TypeName<O>() + "," +
           TypeName<V>() + ">::" + member;
}

[[noreturn]] void Fail(const char* message) { throw std::runtime_error(message); }

bool IsFinite(double value) { return std::abs(value) <= std::numeric_limits<double>::max(); }

// A quotient that is taken as zero where the denominator is too small to trust.
double GuardedRatio(double numerator, double denominator) {
    return std::abs(denominator) < kExtrapolationGuard ? 0.0 : numerator / denominator;
}

// Interval index i with nodes[i] <= x < nodes[i+1] (a point on an interior node belongs to the
// interval on its right), in either node order; 0 and n - 2 at or beyond the ends.
template <class A>
std::size_t Locate(const std::vector<A>& nodes, double x) {
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(nodes.size());
    if (n < 2) return 0;
    const bool ascending = nodes[n - 1] >= nodes[0];
    if (ascending ? x <= nodes[0] : x >= nodes[0]) return 0;
    if (ascending ? x >= nodes[n - 1] : x <= nodes[n - 1]) return static_cast<std::size_t>(n - 2);
    std::ptrdiff_t lo = -1;
    std::ptrdiff_t hi = n;
    while (hi - lo > 1) {
        const std::ptrdiff_t mid = (lo + hi) / 2;
        const bool right = (x >= nodes[mid]) == ascending;
        lo = right ? mid : lo;
        hi = right ? hi : mid;
    }
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(lo, 0));  // lo < 0 only for NaN
}

// The two grid nodes around a point along one axis of a 2D table and the linear weight of the
// upper one; a single-node axis collapses to that node.
struct Bracket {
    std::size_t lo;
    std::size_t hi;
    double weight;
};

template <class A>
Bracket BracketOf(const std::vector<A>& nodes, double x) {
    if (nodes.size() < 2) return {0, 0, 0.0};
    const std::size_t i = Locate(nodes, x);
    const double left = nodes[i];
    const double right = nodes[i + 1];
    return {i, i + 1, (x - left) / (right - left)};
}

template <class A>
double LagrangeBasis(const std::vector<A>& nodes, std::size_t j, double x) {
    double basis = 1.0;
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        if (k != j) basis *= (x - nodes[k]) / (static_cast<double>(nodes[j]) - nodes[k]);
    }
    return basis;
}

}  // namespace

template <class A, class O, class V>
Interpolation<A, O, V>::Interpolation(std::vector<A> x, std::vector<O> y, InterpolationMethod method,
                                      ExtrapolationMethod extrapolation, InterpolationMethodMap methods)
    : m_x(std::move(x)),
      m_y(std::move(y)),
      m_method(method),
      m_interpolationMethods(std::move(methods)),
      m_extrapolation(extrapolation) {
    m_logY.reserve(m_y.size());
    for (const O& value : m_y) m_logY.push_back(std::log(static_cast<double>(value)));
    if (m_x.size() == m_y.size()) {
        for (std::size_t k = 0; k + 1 < m_x.size(); ++k)
            m_slopes.push_back((m_y[k + 1] - m_y[k]) / (static_cast<double>(m_x[k + 1]) - m_x[k]));
    }
    IndexIntervals();
    PrepareSplines();
}

template <class A, class O, class V>
void Interpolation<A, O, V>::SetValuesFrom(std::size_t first, const std::vector<O>& values) {
    if (values.size() != m_y.size()) Fail("Interpolation: Data dimensions don't match");
    // Only the log-linear and "ffq" forms read the logarithms.
    const bool logs = UsesMethod(LogLinearInterpolation) || UsesMethod(FFQInterpolation);
    for (std::size_t k = first; k < m_y.size(); ++k) {
        m_y[k] = values[k];
        m_logY[k] = logs ? std::log(static_cast<double>(values[k])) : 0.0;
    }
    for (std::size_t k = first == 0 ? 0 : first - 1; k < m_slopes.size(); ++k)
        m_slopes[k] = (m_y[k + 1] - m_y[k]) / (static_cast<double>(m_x[k + 1]) - m_x[k]);
    if (UsesMethod(CubicInterpolation) || UsesMethod(ClampedCubicInterpolation)) PrepareSplines();
}

template <class A, class O, class V>
std::size_t Interpolation<A, O, V>::BucketOf(double x) const {
    return std::min(static_cast<std::size_t>((x - m_x.front()) * m_bucketsPerUnit), m_bucketIntervals.size() - 1);
}

// Buckets narrow enough that few nodes share one (at most 4096 buckets). A bucket's entry counts
// the interior nodes in earlier buckets: those all lie below any point of the bucket, since the
// bucket of a value never decreases as the value grows, so the entry is a safe start and only
// the nodes of the point's own bucket remain to be stepped over.
template <class A, class O, class V>
void Interpolation<A, O, V>::IndexIntervals() {
    const std::size_t n = m_x.size();
    if (n < 3 || !std::is_sorted(m_x.begin(), m_x.end())) return;
    double narrowest = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k + 1 < n; ++k) narrowest = std::min(narrowest, static_cast<double>(m_x[k + 1]) - m_x[k]);
    if (!(narrowest > 0.0)) return;
    const double span = static_cast<double>(m_x.back()) - m_x.front();
    const double wanted = std::max(4.0 * n, std::ceil(span / narrowest));
    const std::size_t buckets = static_cast<std::size_t>(std::min(wanted, 4096.0));
    m_bucketsPerUnit = buckets / span;
    m_bucketIntervals.assign(buckets, 0);
    std::vector<std::uint32_t> nodesInBucket(buckets, 0);
    for (std::size_t j = 1; j + 1 < n; ++j) ++nodesInBucket[BucketOf(m_x[j])];
    std::uint32_t below = 0;
    for (std::size_t b = 0; b < buckets; ++b) {
        m_bucketIntervals[b] = below;
        below += nodesInBucket[b];
        m_nodesPerBucket = std::max(m_nodesPerBucket, nodesInBucket[b]);
    }
}

// The same interval as the bisection of Locate, for a point strictly inside the nodes.
template <class A, class O, class V>
std::size_t Interpolation<A, O, V>::Interval(double x) const {
    if (m_bucketIntervals.empty()) return Locate(m_x, x);
    std::size_t i = m_bucketIntervals[BucketOf(x)];
    for (std::uint32_t step = 0; step < m_nodesPerBucket; ++step) i += x >= m_x[i + 1];
    return i;
}

template <class A, class O, class V>
Interpolation<A, O, V>::Interpolation(std::vector<A> x, std::vector<O> y, InterpolationMethod method,
                                      ExtrapolationMethod extrapolation, InterpolationMethodMap methods,
                                      double leftDer, double rightDer)
    : Interpolation(std::move(x), std::move(y), method, extrapolation, std::move(methods)) {
    SetBoundaryDerivatives(leftDer, rightDer);
}

template <class A, class O, class V>
Interpolation<A, O, V>::Interpolation(std::vector<A> x, std::vector<O> y,
                                      std::vector<std::vector<V>> z, InterpolationMethod method,
                                      ExtrapolationMethod extrapolation, InterpolationMethodMap methods)
    : Interpolation(std::move(x), std::move(y), method, extrapolation, std::move(methods)) {
    m_z = std::move(z);
}

template <class A, class O, class V>
void Interpolation<A, O, V>::SetBoundaryDerivatives(double leftDer, double rightDer) {
    m_leftDer = leftDer;
    m_rightDer = rightDer;
    PrepareSplines();
}

template <class A, class O, class V>
bool Interpolation<A, O, V>::UsesMethod(InterpolationMethod method) const {
    return m_method == method ||
           std::any_of(m_interpolationMethods.begin(), m_interpolationMethods.end(),
                       [&](const auto& region) { return region.second == method; });
}

template <class A, class O, class V>
void Interpolation<A, O, V>::PrepareSplines() {
    m_naturalCurvature = UsesMethod(CubicInterpolation) ? SolveCurvature(false) : SplineCurvature{};
    m_clampedCurvature = UsesMethod(ClampedCubicInterpolation) ? SolveCurvature(true) : SplineCurvature{};
}

template <class A, class O, class V>
InterpolationMethod Interpolation<A, O, V>::MethodAt(double x) const {
    InterpolationMethod method = m_method;
    for (const auto& [threshold, regionMethod] : m_interpolationMethods) {
        if (x < threshold) break;
        method = regionMethod;
    }
    return method;
}

template <class A, class O, class V>
void Interpolation<A, O, V>::RequireData() const {
    if (m_x.empty() || m_y.empty()) Fail("Interpolation: empty data");
    if (m_x.size() != m_y.size()) Fail("Interpolation: Data dimensions don't match");
}

template <class A, class O, class V>
double Interpolation<A, O, V>::Evaluate(double x) const {
    RequireData();
    const double value = ValueAt(MethodAt(x), x);
    return IsFinite(value) ? value : ValueBeyondTheFastForms(x);
}

// Where the fast forms gave no finite value. No point, no value: NaN stays NaN. A straight line
// whose slope left double precision (values of 1e300 a 1e-10 step apart) is taken again through
// the weight (x - x0) / (x1 - x0), finite wherever its value is. Anything else is beyond double
// precision and raises. Kept out of line so that the fast forms stay small enough to inline.
template <class A, class O, class V>
[[gnu::cold, gnu::noinline]] double Interpolation<A, O, V>::ValueBeyondTheFastForms(double x) const {
    if (std::isnan(x)) return x;
    const InterpolationMethod method = MethodAt(x);
    const std::size_t last = m_x.size() - 1;
    const bool inside = x > m_x[0] && x < m_x[last];
    const bool line = inside ? method == LinearInterpolation
                             : m_extrapolation == LinearExtrapolation && method != FFQInterpolation && last > 0;
    if (line && m_x.size() == m_y.size()) {
        const std::size_t i = inside ? Locate(m_x, x) : x < m_x[0] ? 0 : last - 1;
        const double weight = (x - m_x[i]) / (static_cast<double>(m_x[i + 1]) - m_x[i]);
        const double value = m_y[i] + (m_y[i + 1] - m_y[i]) * weight;
        if (IsFinite(value)) return value;
    }
    throw std::runtime_error(fmt::format("Interpolation: the {} value at {:.6g} cannot be represented in double "
                                         "precision", InterpolationMethodToString(method), x));
}

template <class A, class O, class V>
void Interpolation<A, O, V>::Evaluate(const double* x, double* out, std::size_t count) const {
    RequireData();
    const std::size_t last = m_x.size() - 1;
    bool finite = true;  // checked as the values are written, so that no second pass reads them
    if (m_interpolationMethods.empty() && m_method == LinearInterpolation) {
        // The common case of curves, kept free of per-point dispatch; ends and extrapolation
        // take the general path.
        for (std::size_t i = 0; i < count; ++i) {
            const double point = x[i];
            if (point > m_x[0] && point < m_x[last]) {
                const std::size_t k = Interval(point);
                out[i] = m_y[k] + m_slopes[k] * (point - m_x[k]);
            } else {
                out[i] = ValueAt(m_method, point);
            }
            finite &= IsFinite(out[i]);
        }
    } else if (m_interpolationMethods.empty()) {
        for (std::size_t i = 0; i < count; ++i) finite &= IsFinite(out[i] = ValueAt(m_method, x[i]));
    } else {
        for (std::size_t i = 0; i < count; ++i) finite &= IsFinite(out[i] = ValueAt(MethodAt(x[i]), x[i]));
    }
    if (!finite) [[unlikely]]
        for (std::size_t i = 0; i < count; ++i)
            if (!IsFinite(out[i])) out[i] = ValueBeyondTheFastForms(x[i]);
}

template <class A, class O, class V>
inline double Interpolation<A, O, V>::ValueAt(InterpolationMethod method, double x) const {
    if (std::isnan(x)) return x;
    const std::size_t last = m_x.size() - 1;
    if (x <= m_x[0] || x >= m_x[last]) {
        if (x == m_x[0]) return m_y[0];
        if (x == m_x[last]) return m_y[last];
        return method == FFQInterpolation ? FFQ(x) : Extrapolate(x);
    }
    return InteriorValue(method, Interval(x), x);
}

template <class A, class O, class V>
double Interpolation<A, O, V>::InteriorValue(InterpolationMethod method, std::size_t i,
                                             double x) const {
    const double x0 = m_x[i], x1 = m_x[i + 1];
    const double y0 = m_y[i], y1 = m_y[i + 1];
    switch (method) {
        case FlatInterpolation:
            return y0;
        case ClosestInterpolation: {
            // One-sided on purpose: the right distance keeps its sign, so every interior point
            // takes the right node's value; curves built on this rule depend on it.
            const double toLeft = std::abs(x - x0);
            const double toRight = x - x1;
            return toRight < toLeft ? y1 : y0;
        }
        case LinearInterpolation:
            return y0 + m_slopes[i] * (x - x0);
        case LinearXYInterpolation: {
            const double p0 = x0 * y0, p1 = x1 * y1;
            return (p0 + (p1 - p0) / (x1 - x0) * (x - x0)) / x;
        }
        case LogLinearInterpolation: {
            if (!(y0 > 0.0 && y1 > 0.0)) Fail("Interpolation: loglinear interpolation needs positive values");
            const double l0 = m_logY[i], l1 = m_logY[i + 1];
            return std::exp(l0 + (l1 - l0) / (x1 - x0) * (x - x0));
        }
        case LagrangeInterpolation:
            return Lagrange(x);
        case CubicInterpolation:
            return Spline(SecondDerivativesOf(m_naturalCurvature), i, x);
        case FFQInterpolation:
            return FFQ(x);
        case ClampedCubicInterpolation:
            return Spline(SecondDerivativesOf(m_clampedCurvature), i, x);
    }
    Fail("Wrong method");
}

template <class A, class O, class V>
double Interpolation<A, O, V>::Lagrange(double x) const {
    double sum = 0.0;
    for (std::size_t j = 0; j < m_x.size(); ++j) sum += m_y[j] * LagrangeBasis(m_x, j, x);
    return sum;
}

template <class A, class O, class V>
double Interpolation<A, O, V>::Spline(const std::vector<double>& m, std::size_t i, double x) const {
    const double h = static_cast<double>(m_x[i + 1]) - m_x[i];
    const double a = (m_x[i + 1] - x) / h;
    const double b = (x - m_x[i]) / h;
    return a * m_y[i] + b * m_y[i + 1] + ((a * a * a - a) * m[i] + (b * b * b - b) * m[i + 1]) * h * h / 6.0;
}

template <class A, class O, class V>
std::vector<double> Interpolation<A, O, V>::NaturalSecondDerivatives() const {
    return SecondDerivativesOf(SolveCurvature(false));
}

template <class A, class O, class V>
const std::vector<double>& Interpolation<A, O, V>::SecondDerivativesOf(const SplineCurvature& curvature) {
    if (curvature.failure) Fail(curvature.failure);
    return curvature.secondDerivatives;
}

// The tridiagonal sweep of the cubic spline: zero end curvature for the natural spline, or the
// given end slopes (m_leftDer, m_rightDer) for the clamped one, which swaps in the standard
// first-derivative end rows and keeps the same forward sweep and back substitution.
template <class A, class O, class V>
typename Interpolation<A, O, V>::SplineCurvature Interpolation<A, O, V>::SolveCurvature(bool clamped) const {
    // Evaluate checks the data before any spline is read; the public table accessor meets these
    // here, the clamped spline naming its own size check first.
    if (clamped && m_x.size() != m_y.size()) return {{}, "cubicInterpolation: vectors must be the same size"};
    if (m_x.empty() || m_y.empty()) return {{}, "Interpolation: empty data"};
    if (m_x.size() != m_y.size()) return {{}, "Interpolation: Data dimensions don't match"};
    const std::size_t n = m_x.size();
    if (n < 2) return {std::vector<double>(n, 0.0)};  // one node: a constant, no curvature
    auto dx = [&](std::size_t k) { return static_cast<double>(m_x[k + 1]) - m_x[k]; };
    for (std::size_t k = 0; k + 1 < n; ++k) {
        if (std::abs(dx(k)) < kSplineSpacingGuard)
            return {{}, clamped ? "cubicInterpolation: Bad X array" : "interpolate1d3Spline: Bad X array"};
    }
    auto slope = [&](std::size_t k) { return (m_y[k + 1] - m_y[k]) / dx(k); };
    std::vector<double> m(n, 0.0);
    std::vector<double> u(n, 0.0);
    if (clamped) {
        m[0] = -0.5;
        u[0] = 3.0 / dx(0) * (slope(0) - m_leftDer);
    }
    for (std::size_t k = 1; k + 1 < n; ++k) {
        const double span = static_cast<double>(m_x[k + 1]) - m_x[k - 1];
        const double sig = dx(k - 1) / span;
        const double p = sig * m[k - 1] + 2.0;
        m[k] = (sig - 1.0) / p;
        u[k] = (6.0 * (slope(k) - slope(k - 1)) / span - sig * u[k - 1]) / p;
    }
    if (clamped) {
        const double un = 3.0 / dx(n - 2) * (m_rightDer - slope(n - 2));
        m[n - 1] = (un - 0.5 * u[n - 2]) / (0.5 * m[n - 2] + 1.0);
    } else {
        m[n - 1] = 0.0;
    }
    for (std::size_t k = n - 1; k-- > 0;) m[k] = m[k] * m[k + 1] + u[k];
    // Values of 1e300 a 1e-10 step apart bend the spline beyond double precision.
    if (!std::all_of(m.begin(), m.end(), [](double curvature) { return std::isfinite(curvature); }))
        return {{}, clamped ? "cubicInterpolation: curvature beyond double precision"
                            : "interpolate1d3Spline: curvature beyond double precision"};
    return {std::move(m)};
}

template <class A, class O, class V>
double Interpolation<A, O, V>::Extrapolate(double x) const {
    const std::size_t last = m_x.size() - 1;
    switch (m_extrapolation) {
        case NoExtrapolation:
            Fail("Extrapolation not possible");
        case FlatExtrapolation:
            return x < m_x[0] ? m_y[0] : m_y[last];
        case LinearExtrapolation:
            // Always linear in the values, whatever the interpolation method.
            if (m_y.size() == 1) return m_y[0];
            if (x < m_x[0])
                return m_y[0] + (m_y[1] - m_y[0]) / (m_x[1] - m_x[0]) * (x - m_x[0]);
            return m_y[last] + (m_y[last - 1] - m_y[last]) / (m_x[last - 1] - m_x[last]) * (x - m_x[last]);
        case CubicExtrapolation:
            return CubicExtrapolate(x);
        case TaylorExtrapolation:
            break;
    }
    Fail("Wrong extrapolation method");
}

// A cubic continued from the end interval: it matches the end value, the end node's slope and
// the neighbouring node's slope (the segment slope where no node slopes are given).
template <class A, class O, class V>
double Interpolation<A, O, V>::CubicExtrapolate(double x) const {
    if (m_y.size() == 1 || m_x.size() < 2) return m_y[0];
    const std::size_t last = m_x.size() - 1;
    const std::vector<double>& slopes = m_nodeSlopes;
    auto cubic = [](double y, double d1, double b, double c, double u) {
        return y + d1 * u + b * u * u + c * u * u * u;
    };
    if (x < m_x[0]) {
        const double h = static_cast<double>(m_x[1]) - m_x[0];
        if (std::abs(h) < kExtrapolationGuard) return m_y[0];
        const double s = (m_y[1] - m_y[0]) / h;
        const double d1 = slopes.empty() ? s : slopes[0];
        const double d2 = (slopes.size() >= 2 ? slopes[1] : s) - d1;
        const double c = GuardedRatio(m_y[1] - (h * d1 + m_y[0]) - 0.5 * d2 * h, h * h * h - 1.5 * h * h);
        const double b = GuardedRatio(d2 - 3.0 * c * h, 2.0 * h);
        return cubic(m_y[0], d1, b, c, x - m_x[0]);
    }
    const double h = static_cast<double>(m_x[last]) - m_x[last - 1];
    const double s = GuardedRatio(m_y[last] - m_y[last - 1], h);
    const double d1 = slopes.empty() ? s : slopes.back();
    const double d0 = slopes.size() >= 2 ? slopes[slopes.size() - 2] : s;
    const double diff = d1 - d0;
    const double c = GuardedRatio(m_y[last] - (h * d0 + m_y[last - 1]) - 0.5 * diff * h, h * h * h - 1.5 * h * h);
    const double b = GuardedRatio(diff - 3.0 * c * h, 2.0 * h);
    return cubic(m_y[last], d1, b, c, x - m_x[last]);
}

// The "ffq" discount-factor scheme: a local quartic blend of minus log discount factors whose
// first interval starts at time zero and uses the short rate in place of the first node; beyond
// the last node the continuous zero rate is held flat.
template <class A, class O, class V>
double Interpolation<A, O, V>::FFQ(double x) const {
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(m_x.size());
    if (n < 3) Fail("Interpolation: ffq needs at least three nodes");
    auto X = [&](std::ptrdiff_t j) { return static_cast<double>(m_x[j]); };
    // Minus the log of a discount factor: only positive node values have one.
    auto z = [&](std::ptrdiff_t j) {
        if (!std::isfinite(m_logY[j])) Fail("Interpolation: ffq interpolation needs positive values");
        return -m_logY[j];
    };
    const double q = m_shortRate >= 0.0 ? m_shortRate / 365.0 : 0.0;

    std::ptrdiff_t k;
    if (x > X(n - 1)) k = n;
    else if (x < X(1)) k = -1;
    else k = (std::upper_bound(m_x.begin() + 1, m_x.end(), x) - m_x.begin()) - 2;

    if (k >= n - 3) {
        const double a = X(n - 3), b = X(n - 2), c = X(n - 1);
        const double xc = std::min(x, c);
        const double lb = (xc - b) * (xc - c) / ((c - a) * (b - a));
        const double la = -(xc - a) * (xc - c) / ((c - b) * (b - a));
        double value = z(n - 3) * lb + z(n - 2) * la + z(n - 1) * (1.0 - lb - la);
        if (x > c) value *= x / c;
        return std::exp(-value);
    }
    if (k == -1) {
        const double s = x / X(1);
        // Node times in days.
        const double a = 365.0 * X(1), b = 365.0 * X(2);
        const double w2 = -(a * a / (b * b - a * a)) * s * s * (1.0 - s) * (5.0 - 3.0 * s);
        const double w1 = (3.0 * s * s - 8.0 * s + 6.0) * s * s - w2;
        const double shortEnd = (a * b / (a + b)) * q * s * (1.0 - s) * (3.0 * s * s - 5.0 * s + 1.0 + a / b);
        return std::exp(-(w1 * z(1) + w2 * z(2) + shortEnd));
    }
    const double h = X(k + 2) - X(k + 1);
    const double t = (x - X(k + 1)) / h;
    const double u = 1.0 - t;
    const double r2 = h / (X(k + 3) - X(k + 2));
    const double w3 = -t * t * t * u * (3.0 - 2.0 * t) * r2 * r2 / (1.0 + r2);
    if (k == 0) {
        const double p = 1.0 / (1.0 + h / (2.0 * (X(1) - X(0))));
        const double v = ((2 * t * t - 4 * t * t * t + 2 * t + 1) * u + t * t * t * (3 - 2 * t) / (1 + r2) -
                          u * u * t * (2 * t + 1) * p) * u;
        const double shortEnd = u * u * u * t * (2 * t + 1) * (q * 365.0 * h * (1.0 - p));
        return std::exp(-(shortEnd + v * z(1) + (1.0 - w3 - v) * z(2) + w3 * z(3)));
    }
    const double r1 = h / (X(k + 1) - X(k));
    const double w0 = -t * u * u * u * (2 * t + 1) * r1 * r1 / (1 + r1);
    const double w2 = u * t * t * t * (3 - 2 * t) * (r2 - 1) + u * u * u * t * (2 * t + 1) / (1 + r1) +
                      (4 * t * t * t - 10 * t * t + 6 * t + 1) * t * t;
    const double w1 = 1.0 - w0 - w2 - w3;
    return std::exp(-(w0 * z(k) + w1 * z(k + 1) + w2 * z(k + 2) + w3 * z(k + 3)));
}

template <class A, class O, class V>
void Interpolation<A, O, V>::autoSetBoundaryDerivatives() {
    const std::size_t n = std::min(m_x.size(), m_y.size());
    auto dx = [&](std::size_t k) { return static_cast<double>(m_x[k + 1]) - m_x[k]; };
    double left = 0.0, right = 0.0;
    if (m_extrapolation == LinearExtrapolation) {
        if constexpr (!std::is_floating_point_v<V>) Fail("Cannot cast this type to double");
        if (n >= 2) {
            if (dx(0) == 0.0 || dx(n - 2) == 0.0)
                ZEP_FAIL_IN((MemberName<A, O, V>("autoSetBoundaryDerivatives")), "Invalid interpolation X vector");
            left = (m_y[1] - m_y[0]) / dx(0);
            right = (m_y[n - 1] - m_y[n - 2]) / dx(n - 2);
        }
    } else if (m_extrapolation == CubicExtrapolation) {
        if constexpr (!std::is_floating_point_v<V>)
            Fail("Cannot cast this type to double for Cubic Spline extrapolation boundaries");
        // One-sided second-order differences; exact only for evenly spaced end nodes, which is
        // the convention the stored curves were calibrated with.
        if (n >= 3) {
            left = GuardedRatio(4 * m_y[1] - 3 * m_y[0] - m_y[2], 2 * dx(0));
            right = GuardedRatio(3 * m_y[n - 1] - 4 * m_y[n - 2] + m_y[n - 3], 2 * dx(n - 2));
        } else if (n == 2) {
            left = right = GuardedRatio(m_y[1] - m_y[0], dx(0));
        }
    }
    SetBoundaryDerivatives(left, right);
}

template <class A, class O, class V>
double Interpolation<A, O, V>::Evaluate(double x, double y) const {
    if (m_x.empty() || m_y.empty() || m_z.empty()) Fail("Interpolation: empty data");
    const bool rowsFit = std::all_of(m_z.begin(), m_z.end(),
                                     [&](const std::vector<V>& row) { return row.size() == m_y.size(); });
    if (m_x.size() != m_z.size() || !rowsFit) Fail("Interpolation: Data dimensions don't match");
    // No extrapolation setting applies in 2D: outside the grid the edge cell is used.
    const Bracket bx = BracketOf(m_x, x);
    const Bracket by = BracketOf(m_y, y);
    auto at = [&](std::size_t i, std::size_t j) { return static_cast<double>(m_z[i][j]); };
    switch (MethodAt(x)) {
        case FlatInterpolation:
            return at(x >= m_x.back() ? bx.hi : bx.lo, y >= m_y.back() ? by.hi : by.lo);
        case ClosestInterpolation: {
            auto nearer = [](const auto& nodes, const Bracket& b, double p) {
                return std::abs(p - nodes[b.lo]) <= std::abs(p - nodes[b.hi]) ? b.lo : b.hi;
            };
            return at(nearer(m_x, bx, x), nearer(m_y, by, y));
        }
        case LinearInterpolation: {
            const double wx = bx.weight, wy = by.weight;
            return wx * (1 - wy) * at(bx.hi, by.lo) + (1 - wx) * (1 - wy) * at(bx.lo, by.lo) +
                   wx * wy * at(bx.hi, by.hi) + (1 - wx) * wy * at(bx.lo, by.hi);
        }
        case LagrangeInterpolation: {
            double sum = 0.0;
            for (std::size_t i = 0; i < m_x.size(); ++i) {
                const double lx = LagrangeBasis(m_x, i, x);
                for (std::size_t j = 0; j < m_y.size(); ++j) sum += at(i, j) * lx * LagrangeBasis(m_y, j, y);
            }
            return sum;
        }
        case LinearXYInterpolation:
        case LogLinearInterpolation:
        case ClampedCubicInterpolation:
            Fail("Interpolation: Methods not implemented in 2D");
        case CubicInterpolation:
            ZEP_FAIL_IN((MemberName<A, O, V>("cubicInterpolation")), "2D Cubic interpolation not available");
        case FFQInterpolation:
            break;
    }
    Fail("Wrong method");
}

template <class A, class O, class V>
void Interpolation<A, O, V>::SaveSettings(boost::property_tree::ptree& fields) const {
    fields.put("m_method", static_cast<std::uint32_t>(m_method));
    fields.put("m_extrapolation", static_cast<std::uint32_t>(m_extrapolation));
    boost::property_tree::ptree regions;
    for (const auto& [threshold, method] : m_interpolationMethods) {
        boost::property_tree::ptree region;
        fields::PutDouble(region, "threshold", threshold);
        region.put("method", static_cast<std::uint32_t>(method));
        regions.push_back({"", region});
    }
    fields.put_child("m_interpolationMethods", regions);
    fields::PutDouble(fields, "m_leftDer", m_leftDer);
    fields::PutDouble(fields, "m_rightDer", m_rightDer);
}

template <class A, class O, class V>
void Interpolation<A, O, V>::LoadSettings(const boost::property_tree::ptree& fields) {
    const auto method = static_cast<InterpolationMethod>(fields.get<std::uint32_t>("m_method"));
    const auto extrapolation = static_cast<ExtrapolationMethod>(fields.get<std::uint32_t>("m_extrapolation"));
    InterpolationMethodMap regions;
    for (const auto& [unused, region] : fields.get_child("m_interpolationMethods"))
        regions[fields::GetDouble(region, "threshold")] =
            static_cast<InterpolationMethod>(region.template get<std::uint32_t>("method"));
    const double leftDer = fields::GetDouble(fields, "m_leftDer");
    const double rightDer = fields::GetDouble(fields, "m_rightDer");
    m_method = method;
    m_extrapolation = extrapolation;
    m_interpolationMethods = std::move(regions);
    SetBoundaryDerivatives(leftDer, rightDer);
}

template class Interpolation<double, double, double>;
template class Interpolation<int, double, double>;

}  // namespace zep
