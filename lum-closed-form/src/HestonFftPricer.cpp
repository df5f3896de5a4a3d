#include "lum-closed-form/HestonFftPricer.hpp"

#include <fftw3.h>

#include <cmath>
#include <mutex>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep {
namespace {

using Complex = std::complex<double>;

std::mutex& PlannerMutex() {
    static std::mutex mutex;
    return mutex;
}

// Cubic Lagrange interpolation through (x[j..j+3], y[j..j+3]).
double Cubic(const double* x, const double* y, double at) {
    double sum = 0.0;
    for (int a = 0; a < 4; ++a) {
        double weight = 1.0;
        for (int b = 0; b < 4; ++b)
            if (b != a) weight *= (at - x[b]) / (x[a] - x[b]);
        sum += weight * y[a];
    }
    return sum;
}

// The transform of the damped call below which samples no longer count (call prices are over the forward).
constexpr double kNegligible = 1e-18;
constexpr int kNegligibleRun = 8;

}  // namespace

HestonFftPricer::HestonFftPricer(const HestonModel& model, double timeToExpiry, const FftSettings& settings)
    : m_settings(settings) {
    const int n = settings.points;
    ZEP_REQUIRE(n >= 16 && n <= (1 << 22) && (n & (n - 1)) == 0, "FFT points must be a power of two from 16 to 2^22");
    ZEP_REQUIRE(settings.spacing > 0.0 && std::isfinite(settings.spacing), "FFT spacing must be a finite number > 0");
    ZEP_REQUIRE(settings.damping > 0.0 && std::isfinite(settings.damping), "FFT damping must be a finite number > 0");
    ZEP_REQUIRE(timeToExpiry >= BSVanilla::kExpiryThreshold && std::isfinite(timeToExpiry),
                "time to expiry must be a finite number > 0");
    ZEP_REQUIRE(timeToExpiry < model.MomentExplosionTime(1.0 + settings.damping),
                "Heston FFT: the moment E[S^(1 + damping)] is infinite at this expiry: lower the damping");
    m_logMoneyness.resize(n);
    m_calls.resize(n);
    {
        std::lock_guard lock(PlannerMutex());
        m_buffer = reinterpret_cast<Complex*>(fftw_malloc(sizeof(fftw_complex) * n));
        m_plan = fftw_plan_dft_1d(n, reinterpret_cast<fftw_complex*>(m_buffer), reinterpret_cast<fftw_complex*>(m_buffer),
                                  FFTW_FORWARD, FFTW_ESTIMATE);
    }
    if (!m_buffer || !m_plan) {
        Release();
        ZEP_FAIL("FFTW could not plan the transform");
    }
    // A constructor that throws runs no destructor: the FFTW resources are released here.
    try {
        Transform(model, timeToExpiry);
    } catch (...) {
        Release();
        throw;
    }
}

HestonFftPricer::~HestonFftPricer() { Release(); }

void HestonFftPricer::Release() {
    std::lock_guard lock(PlannerMutex());
    if (m_plan) fftw_destroy_plan(static_cast<fftw_plan>(m_plan));
    if (m_buffer) fftw_free(m_buffer);
    m_plan = nullptr;
    m_buffer = nullptr;
}

// c(k) = e^(-alpha k) / pi * Re Integral_0^inf e^(-i v k) psi(v) dv,
// psi(v) = phi(v - (alpha + 1) i) / (alpha^2 + alpha - v^2 + i (2 alpha + 1) v),
// sampled at v_j = j eta with Simpson weights; k_m = -b + m lambda, lambda eta = 2 pi / N.
void HestonFftPricer::Transform(const HestonModel& model, double timeToExpiry) {
    const int n = m_settings.points;
    const double eta = m_settings.spacing;
    const double alpha = m_settings.damping;
    const double lambda = 2.0 * M_PI / (n * eta);
    const double b = 0.5 * n * lambda;
    // Past the frequency where psi has decayed for good (kNegligibleRun samples in a row below
    // kNegligible; it falls off exponentially there), the samples are set to zero rather than
    // evaluated: at short expiries the grid reaches far beyond it.
    int negligibleRun = 0;
    for (int j = 0; j < n; ++j) {
        if (negligibleRun == kNegligibleRun) {
            m_buffer[j] = 0.0;
            continue;
        }
        const double v = j * eta;
        const Complex psi = model.CharacteristicFunction(Complex(v, -(alpha + 1.0)), timeToExpiry) /
                            Complex(alpha * alpha + alpha - v * v, (2.0 * alpha + 1.0) * v);
        negligibleRun = std::abs(psi) < kNegligible ? negligibleRun + 1 : 0;
        const double simpson = eta / 3.0 * (j == 0 ? 1.0 : (j % 2 == 1 ? 4.0 : 2.0));
        m_buffer[j] = std::exp(Complex(0.0, v * b)) * psi * simpson;
    }
    fftw_execute(static_cast<fftw_plan>(m_plan));
    for (int m = 0; m < n; ++m) {
        const double k = -b + m * lambda;
        m_logMoneyness[m] = k;
        m_calls[m] = std::exp(-alpha * k) / M_PI * m_buffer[m].real();
        if (!std::isfinite(m_calls[m]))
            ZEP_FAIL("the Heston FFT gives no finite price: lower the damping (the moment E[S^(1 + alpha)] may be infinite)");
    }
}

void HestonFftPricer::Prices(int optionType, std::span<const double> strikes, double timeToDelivery,
                             double domesticRate, double foreignRate, double spot, std::span<double> prices) {
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put, "option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(strikes.size() == prices.size(), "strikes and prices must have the same length");
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "spot must be a finite number > 0");
    ZEP_REQUIRE(timeToDelivery >= 0.0 && std::isfinite(timeToDelivery) && std::isfinite(domesticRate) &&
                    std::isfinite(foreignRate),
                "time to delivery and rates must be finite numbers, the time >= 0");
    const double discount = std::exp(-domesticRate * timeToDelivery);
    const double forward = spot * std::exp((domesticRate - foreignRate) * timeToDelivery);
    const int n = m_settings.points;
    const double lowest = m_logMoneyness[1];
    const double lambda = m_logMoneyness[1] - m_logMoneyness[0];
    for (std::size_t i = 0; i < strikes.size(); ++i) {
        const double strike = strikes[i];
        ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "strike must be a finite number > 0");
        const double k = std::log(strike / forward);
        const double position = std::floor((k - lowest) / lambda);
        ZEP_REQUIRE(position >= 0.0 && position <= n - 4,
                    "strike lies outside the FFT strike grid: widen it with more points or a smaller spacing");
        const int j = static_cast<int>(position);
        const double call = forward * Cubic(&m_logMoneyness[j], &m_calls[j], k);
        const double undiscounted = optionType == BSVanilla::Call ? call : call - (forward - strike);
        prices[i] = discount * undiscounted;
    }
}

}  // namespace zep
