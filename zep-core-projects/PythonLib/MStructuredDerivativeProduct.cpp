#include "MStructuredDerivativeProduct.hpp"

#include <cstdio>

#include <boost/make_shared.hpp>

#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/products/CashFlows.hpp"
#include "lum-monte-carlo/products/ProductLoader.hpp"

namespace zep::python {


MStructuredDerivativeProduct::MStructuredDerivativeProduct(boost::shared_ptr<XScriptStructure> product, std::string type,
                                                           std::string script, std::map<std::string, double> levels)
    : MXScriptStructure(std::move(product)), m_type(std::move(type)), m_script(std::move(script)), m_levels(std::move(levels)) {}

MStructuredDerivativeProduct MStructuredDerivativeProduct::FromText(const std::string& definition, const std::string& market) {
    return Guarded("MStructuredDerivativeProduct::FromText", [&] {
        BookedProduct booked = BookProductFromText(definition, market);
        return MStructuredDerivativeProduct(boost::make_shared<XScriptStructure>(booked.inputs),
                                            booked.product ? booked.product->TypeName() : "Scripted", booked.Script(),
                                            booked.product ? booked.product->Levels() : std::map<std::string, double>{});
    });
}

MStructuredDerivativeProduct MStructuredDerivativeProduct::FromFiles(const std::string& definitionPath,
                                                                     const std::string& marketPath) {
    const std::string definition = Guarded("MStructuredDerivativeProduct::FromFiles", [&] { return DefinitionFileText(definitionPath); });
    const std::string market =
        Guarded("MStructuredDerivativeProduct::FromFiles", [&] { return marketPath.empty() ? "" : DefinitionFileText(marketPath); });
    return FromText(definition, market);
}

std::string MStructuredDerivativeProduct::ProductType() const {
    Object("zep::MStructuredDerivativeProduct::ProductType");
    return m_type;
}

std::string MStructuredDerivativeProduct::Script() const {
    Object("zep::MStructuredDerivativeProduct::Script");
    return m_script;
}

std::map<std::string, double> MStructuredDerivativeProduct::CashFlowValues() const {
    return Guarded("MStructuredDerivativeProduct::CashFlowValues", [&] {
        std::map<std::string, double> flows;
        for (const auto& [date, value] :
             PresentValuesByDate(Object("zep::MStructuredDerivativeProduct::CashFlowValues").Inputs())) {
            char text[16];
            std::snprintf(text, sizeof text, "%04d-%02d-%02d", static_cast<int>(date.Year()), static_cast<int>(date.Month()),
                          static_cast<int>(date.DayOfMonth()));
            flows[text] = value;
        }
        return flows;
    });
}

std::map<std::string, double> MStructuredDerivativeProduct::ReportLevels() const {
    Object("zep::MStructuredDerivativeProduct::ReportLevels");
    return m_levels;
}

std::string CheckedMarketJson(const std::string& text) {
    return Guarded("CheckedMarketJson", [&] {
        const nlohmann::json tree = DefinitionTree(text);
        MarketFromTree(tree);
        return tree.dump();
    });
}

}  // namespace zep::python
