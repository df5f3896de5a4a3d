// The Python-facing scripted product: builds an XScriptStructure from call arguments or from a
// JSON/YAML product definition and exposes its price and sensitivities. Every operation reports
// failures with the prefix "MXScriptStructure::<operation> failed: ".
#pragma once

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep::python {

class MXScriptStructure : public MWrapper<XScriptStructure> {
public:
    MXScriptStructure() = default;  // an empty product: every operation answers "not initialized!"
    // model: 1 BlackSchole, 2 Bachelier, 3 Heston, 4 Dupire; event dates as date texts.
    MXScriptStructure(const DateInput& today, double spot, double volatility, double rate1,
                      double rate2, int model, const std::vector<double>& modelParameters,
                      const std::vector<std::string>& eventDates,
                      const std::vector<std::string>& eventScripts, long long numSimulations = 10000,
                      unsigned long long seed = 12345, double dayBasis = 365.0,
                      bool adaptiveShift = false, double adaptiveShiftBarrier = 0.0,
                      const std::string& priceVariable = "", bool quasiRandom = false,
                      double notional = 1.0);

    static MXScriptStructure FromDefinition(const std::string& text);
    static MXScriptStructure FromFile(const std::string& path);
    // The product priced under Dupire on the market smile: the local volatility of `surface`
    // takes the place of the model and its parameters; spot, rates, events and settings stay.
    static MXScriptStructure OnLocalVolatility(const MXScriptStructure& product,
                                               boost::shared_ptr<zep::FXVolSurface> surface);

    std::string Description() const;
    std::vector<std::string> VariableNames() const;

    // `log`: also write the figure to the library log.
    double Price(bool log = false) const;
    double AnnualizedPrice(bool log = false) const;
    std::map<std::string, double> ResultByVariable(bool log = false) const;
    double MarketValue(bool log = false) const;
    double PV(bool log = false) const;
    double Delta(bool log = false) const;
    double Gamma(bool log = false) const;
    double Vega(bool log = false) const;
    double Theta(bool log = false) const;
    double Rho(bool log = false) const;
    double Vanna(bool log = false) const;
    double Volga(bool log = false) const;
    double ForwardDelta(bool log = false) const;
    std::map<std::string, double> BasicGreeks(bool log = false) const;
    std::map<std::string, double> AllGreeks(bool log = false) const;
    // NaN: the product's adaptive-shift barrier.
    double DistanceToBarrierSigma(double barrier = NAN) const;
    double GetRate1(bool log = false) const;
    double GetRate2(bool log = false) const;
    double GetForward(bool log = false) const;

    // The price with one named input moved: "spot", "spot_Volatility", "spot_time" (days),
    // "rate1", "rate2", "discount", "time" (days).
    double Reprice(const std::string& fieldName, double shift) const;
    // Standard error of the price estimate from the same run settings as Price.
    double PriceStandardError() const;
    // GPU pricing asked for directly: this build has no GPU pricer.
    double GpuPrice() const;

    // Prices the product and writes its Markdown report to <directory>/<reportName>_xscript.md,
    // returning the path. Levels (barriers, triggers) are drawn beside the paths; the Greeks
    // shown are the given ones, or BasicGreeks when none are given.
    std::string WriteReport(const std::string& directory, const std::string& reportName,
                            const std::vector<std::string>& levelNames,
                            const std::vector<double>& levelValues,
                            const std::vector<std::string>& greekNames,
                            const std::vector<double>& greekValues) const;

protected:
    explicit MXScriptStructure(boost::shared_ptr<XScriptStructure> product);

private:
    friend struct RiskAdapters;  // hands the product to the risk layer
};

}  // namespace zep::python
