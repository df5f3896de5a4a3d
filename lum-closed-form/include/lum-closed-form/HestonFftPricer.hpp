// European prices of one Heston maturity across a whole strike grid by the Carr-Madan transform:
// the damped call e^(alpha k) c(k), k = ln(K / F), has a Fourier transform known in closed form
// from the characteristic function; one FFT of N Simpson-weighted samples (spacing eta) gives it on
// N log-strikes spaced 2 pi / (N eta), centred on the forward. Strikes between grid points are
// read off by cubic Lagrange interpolation in log-strike through the four nearest points.
//
// The FFTW plan and the work buffers are made once here (planning is serialised, FFTW's planner
// not being thread-safe); Prices then allocates nothing. One pricer per thread.
#pragma once

#include <complex>
#include <span>
#include <vector>

#include "lum-closed-form/HestonModel.hpp"

namespace zep {

struct FftSettings {
    int points = 2048;       // a power of two
    double spacing = 0.2;    // eta, in the frequency variable
    double damping = 1.5;    // alpha: e^(alpha k) c(k) must be integrable, E[S^(1 + alpha)] finite
};

class HestonFftPricer {
public:
    HestonFftPricer(const HestonModel& model, double timeToExpiry, const FftSettings& settings = {});
    ~HestonFftPricer();
    HestonFftPricer(const HestonFftPricer&) = delete;
    HestonFftPricer& operator=(const HestonFftPricer&) = delete;

    // Fills prices[i] for strikes[i], Garman-Kohlhagen conventions as HestonModel::Price. Strikes
    // must lie inside the grid's inner part (GridLogMoneyness, less two points at each end).
    void Prices(int optionType, std::span<const double> strikes, double timeToDelivery, double domesticRate,
                double foreignRate, double spot, std::span<double> prices);

    // The grid's log-moneyness ln(K / F) and the undiscounted call prices over the forward there.
    const std::vector<double>& GridLogMoneyness() const { return m_logMoneyness; }
    const std::vector<double>& GridCallsOverForward() const { return m_calls; }

private:
    void Release();
    void Transform(const HestonModel& model, double timeToExpiry);

    FftSettings m_settings;
    std::vector<double> m_logMoneyness;
    std::vector<double> m_calls;
    std::complex<double>* m_buffer = nullptr;  // fftw_malloc'd, N complex
    void* m_plan = nullptr;                    // fftw_plan
};

}  // namespace zep
