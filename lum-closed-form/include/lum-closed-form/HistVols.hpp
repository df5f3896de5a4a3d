// Historical volatility of a price series over a rolling window of returns, annualised: the
// realised figure desks set against implied volatility.
#pragma once

#include <span>
#include <vector>

#include "lum-time/Date.hpp"

namespace zep {

class HistVols {
public:
    enum ReturnKind : int { SimpleReturns = 0, LogReturns = 1 };
    // How the returns of one window are weighted.
    enum Model : int {
        EqualWeights = 0,       // sample variance around the window mean
        EwmaRecursion = 1,      // var = lambda var + (1 - lambda) r^2 from zero over the window
        EwmaNormalised = 2,     // weights (1 - lambda) lambda^(n-i) / (1 - lambda^n), summing to 1
    };

    // Observation dates and prices of equal length, at least three.
    HistVols(std::vector<Date> dates, std::vector<double> quotes);

    // One volatility per window of `sampleNum` consecutive returns, each window ending at each
    // observation in turn; the result is kept with the date of each window's last observation.
    // `lambda` is used by the exponentially weighted models only.
    const std::vector<double>& setAll(int sampleNum, int model = EqualWeights, double lambda = 0.94,
                                      int returnKind = LogReturns,
                                      double annualisationFactor = 252.0);
    // The volatility of the latest window of `sampleNum` returns, with the same conventions.
    double GetVol(int sampleNum, int model = EqualWeights, double lambda = 0.94,
                  int returnKind = LogReturns, double annualisationFactor = 252.0) const;

    const std::vector<Date>& Dates() const { return m_dates; }
    const std::vector<double>& Quotes() const { return m_quotes; }
    // The results of the last setAll: window end dates and volatilities.
    const std::vector<Date>& VolDates() const { return m_volDates; }
    const std::vector<double>& Vols() const { return m_vols; }

private:
    std::vector<double> Returns(int returnKind) const;
    static void CheckModel(int sampleNum, std::size_t returnCount, int model, double lambda);
    static double WindowVol(std::span<const double> window, int model, double lambda,
                            double annualisation);

    std::vector<Date> m_dates;
    std::vector<double> m_quotes;
    std::vector<Date> m_volDates;
    std::vector<double> m_vols;
};

}  // namespace zep
