// The Python-facing booked structured product: any product of the loader (a product class from
// its term sheet, or a scripted definition) priced with its market. It prices, runs the Greeks
// and writes the report as MXScriptStructure does, and shows the script its terms generated.
#pragma once

#include <map>
#include <string>

#include "MXScriptStructure.hpp"

namespace zep::python {

class MStructuredDerivativeProduct : public MXScriptStructure {
public:
    MStructuredDerivativeProduct() = default;  // an empty product: every operation answers "not initialized!"

    // JSON or YAML texts; an empty market for a scripted definition that carries its own.
    static MStructuredDerivativeProduct FromText(const std::string& definition, const std::string& market);
    static MStructuredDerivativeProduct FromFiles(const std::string& definitionPath, const std::string& marketPath);

    // "AutoCall", "Snowball", "TargetRedemptionForward", "AsianPayoff" or "Scripted".
    std::string ProductType() const;
    // The generated payoff script with one comment per event date.
    std::string Script() const;
    // The present value paid on each paying event date, by "YYYY-MM-DD"; they add up to Price.
    std::map<std::string, double> CashFlowValues() const;
    // The levels its report draws beside the paths by default: barriers and strikes.
    std::map<std::string, double> ReportLevels() const;

private:
    MStructuredDerivativeProduct(boost::shared_ptr<XScriptStructure> product, std::string type, std::string script,
                                 std::map<std::string, double> levels);

    std::string m_type;
    std::string m_script;
    std::map<std::string, double> m_levels;
};

// A market file's text (JSON or YAML) checked against the Market schema, as JSON text.
std::string CheckedMarketJson(const std::string& text);

}  // namespace zep::python
