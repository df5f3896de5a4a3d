#include "MXScriptStructure.hpp"

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Logger.hpp"
#include "lum-monte-carlo/CudaMonteCarloPricer.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/ScriptGreeks.hpp"
#include "lum-monte-carlo/ScriptReport.hpp"
#include "lum-monte-carlo/ScriptingReporter.hpp"

namespace zep::python {

namespace {

boost::shared_ptr<XScriptStructure> Built(XScriptInputs inputs) {
    return boost::make_shared<XScriptStructure>(std::move(inputs));
}

template <class Value>
Value Logged(const char* name, bool log, Value value) {
    if constexpr (std::is_arithmetic_v<Value>) {
        if (log) Logger().info("[MXScriptStructure] {} = {}", name, value);
    } else {
        if (log)
            for (const auto& [key, figure] : value) Logger().info("[MXScriptStructure] {} {} = {}", name, key, figure);
    }
    return value;
}

}  // namespace

MXScriptStructure::MXScriptStructure(boost::shared_ptr<XScriptStructure> product)
    : MWrapper(std::move(product)) {}

MXScriptStructure::MXScriptStructure(const DateInput& today, double spot, double volatility,
                                     double rate1, double rate2, int model,
                                     const std::vector<double>& modelParameters,
                                     const std::vector<std::string>& eventDates,
                                     const std::vector<std::string>& eventScripts,
                                     long long numSimulations, unsigned long long seed,
                                     double dayBasis, bool adaptiveShift,
                                     double adaptiveShiftBarrier, const std::string& priceVariable,
                                     bool quasiRandom, double notional) {
    m_object = Guarded("MXScriptStructure::MXScriptStructure", [&] {
        XScriptInputs in;
        in.today = today.Value();
        in.spot = spot;
        in.volatility = volatility;
        in.rate1 = rate1;
        in.rate2 = rate2;
        in.model = model;
        in.modelParameters = modelParameters;
        for (const std::string& text : eventDates) in.eventDates.emplace_back(std::string_view(text));
        in.eventScripts = eventScripts;
        in.numSimulations = numSimulations;
        in.seed = seed;
        in.dayBasis = dayBasis;
        in.adaptiveShift = adaptiveShift;
        in.adaptiveShiftBarrier = adaptiveShiftBarrier;
        in.priceVariable = priceVariable;
        for (char& c : in.priceVariable) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        in.quasiRandom = quasiRandom;
        in.notional = notional;
        return Built(std::move(in));
    });
}

MXScriptStructure MXScriptStructure::FromDefinition(const std::string& text) {
    return MXScriptStructure(Guarded("MXScriptStructure::FromDefinition",
                                     [&] { return Built(ProductDefinitionFromText(text)); }));
}

MXScriptStructure MXScriptStructure::FromFile(const std::string& path) {
    return MXScriptStructure(Guarded("MXScriptStructure::FromFile",
                                     [&] { return Built(ProductDefinitionFromFile(path)); }));
}

MXScriptStructure MXScriptStructure::OnLocalVolatility(const MXScriptStructure& product,
                                                       boost::shared_ptr<FXVolSurface> surface) {
    return MXScriptStructure(Guarded("MXScriptStructure::OnLocalVolatility", [&] {
        return boost::make_shared<XScriptStructure>(
            zep::OnLocalVolatility(product.Object("zep::MXScriptStructure::OnLocalVolatility").Inputs(), surface));
    }));
}

#define ZEP_MX_OPERATION(Name, Body)                                                     \
    Guarded("MXScriptStructure::" #Name, [&] {                                           \
        const XScriptStructure& product = Object("zep::MXScriptStructure::" #Name);      \
        return Logged(#Name, log, Body);                                                  \
    })

std::string MXScriptStructure::Description() const {
    return Guarded("MXScriptStructure::Description",
                   [&] { return Object("zep::MXScriptStructure::Description").Description(); });
}

std::vector<std::string> MXScriptStructure::VariableNames() const {
    return Guarded("MXScriptStructure::VariableNames", [&] {
        return Object("zep::MXScriptStructure::VariableNames").Payoff().VariableNames();
    });
}

double MXScriptStructure::Price(bool log) const { return ZEP_MX_OPERATION(Price, product.Price()); }

double MXScriptStructure::AnnualizedPrice(bool log) const {
    return ZEP_MX_OPERATION(AnnualizedPrice, product.RemainingTime() > 0.0
                                                 ? product.Price() / product.RemainingTime()
                                                 : product.Price());
}

std::map<std::string, double> MXScriptStructure::ResultByVariable(bool log) const {
    return ZEP_MX_OPERATION(ResultByVariable, product.ResultByVariable());
}

double MXScriptStructure::PV(bool log) const {
    return ZEP_MX_OPERATION(PV, product.Inputs().notional * product.Price());
}

double MXScriptStructure::MarketValue(bool log) const {
    return ZEP_MX_OPERATION(MarketValue, product.Inputs().notional * product.Price());
}

double MXScriptStructure::Delta(bool log) const { return ZEP_MX_OPERATION(Delta, zep::Delta(product)); }
double MXScriptStructure::Gamma(bool log) const { return ZEP_MX_OPERATION(Gamma, zep::Gamma(product)); }
double MXScriptStructure::Vega(bool log) const { return ZEP_MX_OPERATION(Vega, zep::Vega(product)); }
double MXScriptStructure::Theta(bool log) const { return ZEP_MX_OPERATION(Theta, zep::Theta(product)); }
double MXScriptStructure::Rho(bool log) const { return ZEP_MX_OPERATION(Rho, zep::Rho(product)); }
double MXScriptStructure::Vanna(bool log) const { return ZEP_MX_OPERATION(Vanna, zep::Vanna(product)); }
double MXScriptStructure::Volga(bool log) const { return ZEP_MX_OPERATION(Volga, zep::Volga(product)); }
double MXScriptStructure::ForwardDelta(bool log) const {
    return ZEP_MX_OPERATION(ForwardDelta, zep::ForwardDelta(product));
}
std::map<std::string, double> MXScriptStructure::BasicGreeks(bool log) const {
    return ZEP_MX_OPERATION(BasicGreeks, zep::BasicGreeks(product));
}
std::map<std::string, double> MXScriptStructure::AllGreeks(bool log) const {
    return ZEP_MX_OPERATION(AllGreeks, zep::AllGreeks(product));
}
double MXScriptStructure::GetRate1(bool log) const {
    return ZEP_MX_OPERATION(GetRate1, product.Inputs().rate1);
}
double MXScriptStructure::GetRate2(bool log) const {
    return ZEP_MX_OPERATION(GetRate2, product.Inputs().rate2);
}
double MXScriptStructure::GetForward(bool log) const {
    return ZEP_MX_OPERATION(GetForward, product.Forward());
}

double MXScriptStructure::DistanceToBarrierSigma(double barrier) const {
    return Guarded("MXScriptStructure::DistanceToBarrierSigma", [&] {
        const auto& product = Object("zep::MXScriptStructure::DistanceToBarrierSigma");
        return zep::DistanceToBarrierSigma(
            product, std::isnan(barrier) ? std::nullopt : std::optional<double>(barrier));
    });
}

double MXScriptStructure::Reprice(const std::string& fieldName, double shift) const {
    return Guarded("MXScriptStructure::Reprice", [&] {
        return Object("zep::MXScriptStructure::Reprice").Reprice(fieldName, shift);
    });
}

double MXScriptStructure::PriceStandardError() const {
    return Guarded("MXScriptStructure::PriceStandardError", [&] {
        return Object("zep::MXScriptStructure::PriceStandardError").PriceStandardError();
    });
}

double MXScriptStructure::GpuPrice() const {
    return Guarded("MXScriptStructure::GpuPrice", [&]() -> double {
        Object("zep::MXScriptStructure::GpuPrice");
        CudaMonteCarloPricer::Price();
    });
}

std::string MXScriptStructure::WriteReport(const std::string& directory, const std::string& reportName,
                                           const std::vector<std::string>& levelNames,
                                           const std::vector<double>& levelValues,
                                           const std::vector<std::string>& greekNames,
                                           const std::vector<double>& greekValues) const {
    return Guarded("MXScriptStructure::WriteReport", [&] {
        const XScriptStructure& product = Object("zep::MXScriptStructure::WriteReport");
        ZEP_REQUIRE(levelNames.size() == levelValues.size() && greekNames.size() == greekValues.size(),
                    "Report levels and Greeks need one value per name");
        std::vector<ScriptReportData::Level> levels;
        for (std::size_t i = 0; i < levelNames.size(); ++i) levels.push_back({levelNames[i], levelValues[i]});
        std::vector<std::pair<std::string, double>> greeks;
        for (std::size_t i = 0; i < greekNames.size(); ++i) greeks.emplace_back(greekNames[i], greekValues[i]);
        if (greeks.empty())
            for (const auto& greek : zep::BasicGreeks(product)) greeks.push_back(greek);
        const ScriptingReporter reporter(CollectReportData(product, reportName, std::move(levels), std::move(greeks)));
        return reporter.Write(directory, reportName);
    });
}

#undef ZEP_MX_OPERATION

}  // namespace zep::python
