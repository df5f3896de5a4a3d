#include "lum-monte-carlo/QmcRanGen.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

std::vector<std::uint32_t> FirstPrimes(std::size_t count) {
    std::vector<std::uint32_t> primes;
    primes.reserve(count);
    for (std::uint32_t candidate = 2; primes.size() < count; ++candidate) {
        const bool isPrime = std::none_of(primes.begin(), primes.end(), [&](std::uint32_t p) {
            return p * p <= candidate && candidate % p == 0;
        });
        if (isPrime) primes.push_back(candidate);
    }
    return primes;
}

constexpr double kLowest = 1e-12;
constexpr double kHighest = 0.999999999999;
constexpr double kLowBreak = 0.02425;
constexpr double kHighBreak = 1.0 - kLowBreak;

constexpr double a[] = {-39.69683028665376, 220.9460984245205, -275.9285104469687,
                        138.3577518672690,  -30.66479806614716, 2.506628277459239};
constexpr double b[] = {-54.47609879822406, 161.5858368580409, -155.6989798598866,
                        66.80131188771972,  -13.28068155288572};
constexpr double c[] = {-0.007784894002430293, -0.3223964580411365, -2.400758277161838,
                        -2.549732539343734,    4.374664141464968,   2.938163982698783};
constexpr double d[] = {0.007784695709041462, 0.3224671290700398, 2.445134137142996,
                        3.754408661907416};

double TailRatio(double q) {
    return (((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
           ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
}

}  // namespace

QmcRanGen::QmcRanGen(std::size_t dimensions) : m_bases(FirstPrimes(dimensions)) {}

void QmcRanGen::StartPath(std::uint64_t pathIndex) { m_counter = pathIndex; }

void QmcRanGen::NextPath(double* normals, std::size_t count) {
    ZEP_REQUIRE(count <= m_bases.size(), "Halton sequence has fewer dimensions than draws asked for");
    const std::uint64_t point = m_counter + 1;
    for (std::size_t i = 0; i < count; ++i) normals[i] = InverseNormal(RadicalInverse(point, m_bases[i]));
    ++m_counter;
}

std::unique_ptr<RandomGen> QmcRanGen::ForThread() const {
    return std::make_unique<QmcRanGen>(m_bases.size());
}

double QmcRanGen::RadicalInverse(std::uint64_t n, std::uint32_t base) {
    const double inverseBase = 1.0 / base;
    double scale = inverseBase;
    double value = 0.0;
    while (n > 0) {
        value += static_cast<double>(n % base) * scale;
        n /= base;
        scale *= inverseBase;
    }
    return value;
}

double QmcRanGen::InverseNormal(double u) {
    u = std::clamp(u, kLowest, kHighest);
    if (u < kLowBreak) return TailRatio(std::sqrt(-2.0 * std::log(u)));
    if (u > kHighBreak) return -TailRatio(std::sqrt(-2.0 * std::log(1.0 - u)));
    const double q = u - 0.5;
    const double r = q * q;
    return (((((a[0] * r + a[1]) * r + a[2]) * r + a[3]) * r + a[4]) * r + a[5]) * q /
           (((((b[0] * r + b[1]) * r + b[2]) * r + b[3]) * r + b[4]) * r + 1.0);
}

}  // namespace zep
