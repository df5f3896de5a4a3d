#include "lum-closed-form/HistVols.hpp"

#include <algorithm>
#include <cmath>
#include <span>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

bool UsesLambda(int model) {
    return model == HistVols::EwmaRecursion || model == HistVols::EwmaNormalised;
}

}  // namespace

void HistVols::CheckModel(int sampleNum, std::size_t returnCount, int model, double lambda) {
    ZEP_REQUIRE(sampleNum >= 2 && returnCount >= static_cast<std::size_t>(sampleNum),
                "not enough return samples");
    ZEP_REQUIRE(model == HistVols::EqualWeights || UsesLambda(model), "unknown HistVols model");
    if (UsesLambda(model)) ZEP_REQUIRE(lambda >= 0.0 && lambda < 1.0, "lambda must be in [0,1)");
}

// The annualised volatility of one window of returns under the model.
double HistVols::WindowVol(std::span<const double> window, int model, double lambda, double annualisation) {
    const double n = static_cast<double>(window.size());
    double variance = 0.0;
    if (model == HistVols::EqualWeights) {
        double sum = 0.0, sumOfSquares = 0.0;
        for (double r : window) {
            sum += r;
            sumOfSquares += r * r;
        }
        const double mean = sum / n;
        variance = (sumOfSquares - n * mean * mean) / (n - 1.0);
    } else if (model == HistVols::EwmaRecursion) {
        for (double r : window) variance = std::max(lambda * variance + (1.0 - lambda) * r * r, 0.0);
    } else {
        // The recursion's weights (1 - lambda) lambda^(n-i) sum to 1 - lambda^n; dividing by it
        // removes the bias of starting from zero variance.
        const double denominator = 1.0 - std::pow(lambda, n);
        ZEP_REQUIRE(denominator > 0.0, "invalid lambda/ n causing zero denom");
        double weight = (1.0 - lambda) / denominator;  // the latest return's weight
        double weightSum = 0.0;
        for (auto r = window.rbegin(); r != window.rend(); ++r) {
            variance += weight * *r * *r;
            weightSum += weight;
            weight *= lambda;
        }
        ZEP_REQUIRE(std::fabs(weightSum - 1.0) <= 1e-10, "invalid weights normalization");
    }
    return std::sqrt(std::max(variance, 0.0) * annualisation);
}

HistVols::HistVols(std::vector<Date> dates, std::vector<double> quotes) {
    ZEP_REQUIRE(dates.size() == quotes.size(), "dates and quotes not same size!");
    ZEP_REQUIRE(quotes.size() >= 3,
                "HistVols: need at least 3 price observations for historical volatility");
    m_dates = std::move(dates);
    m_quotes = std::move(quotes);
}

std::vector<double> HistVols::Returns(int returnKind) const {
    for (double price : m_quotes) ZEP_REQUIRE(price > 0.0, "Price<=0");
    std::vector<double> returns(m_quotes.size() - 1);
    for (std::size_t i = 0; i + 1 < m_quotes.size(); ++i) {
        const double previous = m_quotes[i], next = m_quotes[i + 1];
        returns[i] = returnKind == LogReturns ? std::log(next / previous) : (next - previous) / previous;
    }
    return returns;
}

const std::vector<double>& HistVols::setAll(int sampleNum, int model, double lambda,
                                            int returnKind, double annualisationFactor) {
    ZEP_REQUIRE(m_dates.size() == m_quotes.size() && m_quotes.size() >= 2,
                "times/quotes size mismatch or too small");
    const std::vector<double> returns = Returns(returnKind);
    CheckModel(sampleNum, returns.size(), model, lambda);
    const std::size_t window = static_cast<std::size_t>(sampleNum);
    std::vector<Date> volDates;
    std::vector<double> vols;
    for (std::size_t end = window; end <= returns.size(); ++end) {
        vols.push_back(WindowVol(std::span(returns).subspan(end - window, window), model, lambda,
                                 annualisationFactor));
        volDates.push_back(m_dates[end]);  // return `end - 1` ends at observation `end`
    }
    m_volDates = std::move(volDates);
    m_vols = std::move(vols);
    return m_vols;
}

double HistVols::GetVol(int sampleNum, int model, double lambda, int returnKind,
                        double annualisationFactor) const {
    ZEP_REQUIRE(static_cast<long>(sampleNum) < static_cast<long>(m_quotes.size()),
                "HistVols::GetVol: not enough price observations for requested window");
    const std::vector<double> returns = Returns(returnKind);
    CheckModel(sampleNum, returns.size(), model, lambda);
    return WindowVol(std::span(returns).last(static_cast<std::size_t>(sampleNum)), model, lambda,
                     annualisationFactor);
}

}  // namespace zep
