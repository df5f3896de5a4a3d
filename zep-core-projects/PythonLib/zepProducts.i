// Structured products booked from their term sheets: MStructuredDerivativeProduct, the
// definition and market loaders; the keyword constructors zep.AutoCall, ... are in products.py.
%{
#include "MStructuredDerivativeProduct.hpp"
%}

%feature("docstring") zep::python::MStructuredDerivativeProduct
"A booked structured product priced by Monte Carlo: a product class (AutoCall, Snowball,
TargetRedemptionForward, AsianPayoff) from its term sheet, or a scripted definition.

MStructuredDerivativeProduct.FromText(definition, market), .FromFiles(definitionPath, marketPath):
JSON or YAML; the definition's `type` picks the class and its fields are checked against the
type's schema (zep/data/schemas); the market holds valuation_date, market (spot, volatility,
rate1, rate2), model and simulation. Script() is the generated payoff script as priced at the
valuation date; CashFlows() the present value paid on each date; Price, Greeks and WriteReport
(with the script and the product's levels) as for MXScriptStructure. Built more simply with zep.AutoCall(market, ...) and the
other keyword constructors, or zep.load_product(path, market).";

%feature("docstring") zep::python::CheckedMarketJson
"CheckedMarketJson(text) -> str: a market file's JSON or YAML text checked against the Market
schema, as JSON text (zep.load_market reads it into a dict).";

%include "MStructuredDerivativeProduct.hpp"

%extend zep::python::MStructuredDerivativeProduct {
    %pythoncode %{
        def CashFlows(self) -> "list[tuple[datetime.date, float]]":
            """(payment date, present value) of every paying event date, in date order; the values
            add up to Price. Re-prices the product once on the same paths."""
            import datetime
            return [(datetime.date.fromisoformat(day), value) for day, value in sorted(self.CashFlowValues().items())]

        def Greeks(self) -> "dict[str, float]":
            """The basic Greeks by name (as BasicGreeks)."""
            return self.BasicGreeks()

        def WriteReport(self, directory: "str", reportName: "str", levels: "dict[str, float] | None" = None,
                        greeks: "dict[str, float] | None" = None) -> "str":
            """Prices the product and writes its Markdown report to <directory>/<reportName>_xscript.md,
            with the generated, commented script at its end; returns the path. levels: {name: value}
            drawn beside the paths, the product's barriers and strikes (ReportLevels) when not given."""
            if levels is None:
                levels = self.ReportLevels()
            path = MXScriptStructure.WriteReport(self, directory, reportName, levels, greeks)
            with open(path, "a", encoding="utf-8") as report:
                report.write("\n## Generated payoff script (" + self.ProductType() + ")\n\n```\n" + self.Script() + "```\n")
            return path
    %}
}
