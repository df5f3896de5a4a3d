#include "lum-monte-carlo/products/ProductLoader.hpp"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/products/AsianPayoff.hpp"
#include "lum-monte-carlo/products/AutoCall.hpp"
#include "lum-monte-carlo/products/ProductSchemas.hpp"
#include "lum-monte-carlo/products/SchemaValidator.hpp"
#include "lum-monte-carlo/products/Snowball.hpp"
#include "lum-monte-carlo/products/TargetRedemptionForward.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

namespace {

using Json = nlohmann::json;

const std::vector<std::string> kProductTypes{"AutoCall", "Snowball", "TargetRedemptionForward", "AsianPayoff"};

// Reads the fields of a definition its schema has accepted.
class Terms {
public:
    Terms(const Json& tree, std::string type) : m_tree(tree), m_type(std::move(type)) {}

    bool Has(const std::string& key) const { return m_tree.contains(key); }
    double Number(const std::string& key, double fallback = 0.0) const { return Has(key) ? m_tree[key].get<double>() : fallback; }
    // A count the schema has found integral; one beyond int would be undefined to convert.
    int Count(const std::string& key, int fallback) const {
        const double value = Number(key, fallback);
        if (!(value >= 0.0 && value <= 1e6)) BadTerm(m_type, key, "must be a count from 0 to 1000000");
        return static_cast<int>(value);
    }
    std::string Text(const std::string& key, const std::string& fallback) const {
        return Has(key) ? m_tree[key].get<std::string>() : fallback;
    }
    bool Flag(const std::string& key) const { return Has(key) && m_tree[key].get<bool>(); }
    Date DateOf(const Json& text, const std::string& path) const {
        try {
            return Date(std::string_view(text.get<std::string>()));
        } catch (...) {
            BadTerm(m_type, path, "is not a valid date: '" + text.get<std::string>() + "'");
        }
    }
    Date DateField(const std::string& key) const { return DateOf(m_tree[key], key); }
    std::vector<Date> Dates(const std::string& key) const {
        if (m_tree[key].is_object()) return ScheduleDates(key);
        std::vector<Date> dates;
        for (std::size_t i = 0; i < m_tree[key].size(); ++i) dates.push_back(DateOf(m_tree[key][i], IndexedPath(key, i)));
        return dates;
    }
    // The adjusted period ends of a schedule from start to end by tenor.
    std::vector<Date> ScheduleDates(const std::string& key) const {
        const Json& node = m_tree[key];
        ScheduleRules rules;
        rules.centres = node.value("calendar", "");
        static const std::map<std::string, std::int32_t> rolls{{"Following", Following}, {"Preceding", Preceding},
                                                               {"ModifiedFollowing", ModifiedFollowing},
                                                               {"ModifiedPreceding", ModifiedPreceding},
                                                               {"Unadjusted", Unadjusted}};
        rules.accrualAdjustment = rolls.at(node.value("roll", "ModifiedFollowing"));
        rules.generation = node.value("generation", "forward") == "forward" ? DateGeneration::Forward : DateGeneration::Backward;
        std::vector<Date> dates;
        try {
            rules.tenor = Period(node["tenor"].get<std::string>());
            const Schedule schedule(DateOf(node["start"], key + ".start"), DateOf(node["end"], key + ".end"), rules,
                                    Calendar::Shared());
            // Two period ends can roll onto the same business day: it is observed once.
            for (const SchedulePeriod& period : schedule.Periods())
                if (dates.empty() || dates.back() != period.accrualEnd) dates.push_back(period.accrualEnd);
        } catch (const std::invalid_argument&) {
            throw;  // a date of the schedule, already named
        } catch (const Error& e) {
            BadTerm(m_type, key, "is not a valid schedule: " + e.Message());
        } catch (const char* text) {
            BadTerm(m_type, key, std::string("is not a valid schedule: ") + text);
        }
        return dates;
    }
    // One number or a list of them.
    std::vector<double> Levels(const std::string& key) const {
        const Json& node = m_tree[key];
        return node.is_array() ? node.get<std::vector<double>>() : std::vector<double>{node.get<double>()};
    }
    KnockIn KnockInTerms() const { return {Number("knock_in_barrier"), Text("knock_in_monitoring", "continuous")}; }
    std::map<Date, double> DatedNumbers(const std::string& key) const {
        std::map<Date, double> numbers;
        if (!Has(key)) return numbers;
        for (const auto& [text, value] : m_tree[key].items()) numbers[DateOf(Json(text), key + "." + text)] = value.get<double>();
        return numbers;
    }

private:
    const Json& m_tree;
    std::string m_type;
};

std::shared_ptr<const StructuredProduct> Built(const std::string& type, const Terms& t) {
    if (type == "AutoCall") {
        AutoCallTerms terms{t.Number("initial_level"), t.DateField("strike_date"), t.Dates("observation_dates"),
                            t.Levels("autocall_levels"), t.Levels("coupons"), t.Number("coupon_barrier"), t.Flag("memory"),
                            t.KnockInTerms(), t.Number("put_strike", 1.0), t.Count("underlyings", 1),
                            t.Flag("knocked_in"), t.Number("missed_coupons")};
        return std::make_shared<AutoCall>(std::move(terms));
    }
    if (type == "Snowball") {
        SnowballTerms terms{t.Number("initial_level"), t.DateField("strike_date"), t.Dates("observation_dates"),
                            t.Levels("knock_out_levels"), t.Number("coupon_rate"), t.KnockInTerms(), t.Flag("knocked_in")};
        return std::make_shared<Snowball>(std::move(terms));
    }
    if (type == "TargetRedemptionForward") {
        TargetRedemptionForwardTerms terms{t.Dates("fixing_dates"), t.Number("strike"), t.Number("pivot"),
                                           t.Number("leverage", 1.0), t.Number("target_amount"),
                                           t.Count("target_count", 0), t.Text("last_gain", "full")};
        return std::make_shared<TargetRedemptionForward>(std::move(terms), t.DateField("trade_date"));
    }
    AsianPayoffTerms terms{t.Dates("fixing_dates"), t.DatedNumbers("past_fixings"), t.Text("average", "arithmetic"),
                           t.Text("averaged", "price"), t.Text("option_type", "call"), t.Number("strike")};
    return std::make_shared<AsianPayoff>(std::move(terms));
}

bool IsScripted(const Json& definition) {
    return definition.is_object() && (!definition.contains("type") || definition["type"] == "Scripted");
}

std::string TypeOf(const Json& definition) {
    if (!definition.is_object()) throw std::invalid_argument("Product definition: field '(top level)' must be a mapping");
    const Json& type = definition["type"];
    std::string known;
    for (const std::string& name : kProductTypes) known += name + ", ";
    if (!type.is_string() || std::find(kProductTypes.begin(), kProductTypes.end(), type.get<std::string>()) == kProductTypes.end())
        throw std::invalid_argument("Product definition: field 'type' names an unknown product type " + JsonText(type) +
                                    ": one of " + known + "Scripted");
    return type.get<std::string>();
}

}  // namespace

std::string BookedProduct::Script() const {
    if (product) return product->Script(inputs.today);
    std::string text = "# Scripted\n";
    for (std::size_t i = 0; i < inputs.eventDates.size(); ++i)
        text += "\n# " + inputs.eventDates[i].ToString() + "\n" + inputs.eventScripts[i];
    return text;
}

std::shared_ptr<const StructuredProduct> StructuredProductFromTree(const Json& definition) {
    const std::string type = TypeOf(definition);
    ValidateAgainstSchema(definition, ProductSchema(type), type);
    return Built(type, Terms(definition, type));
}

XScriptInputs MarketFromTree(const Json& market) {
    ValidateAgainstSchema(market, ProductSchema("Market"), "Market");
    return MarketDefinitionFromTree(market);
}

BookedProduct BookProduct(const Json& definition, const Json* market) {
    if (IsScripted(definition)) {
        Json merged = definition;
        if (market) {
            ValidateAgainstSchema(*market, ProductSchema("Market"), "Market");
            for (const auto& [key, value] : market->items()) merged[key] = value;
        }
        merged.erase("type");
        return {nullptr, ProductDefinitionFromTree(merged)};
    }
    auto product = StructuredProductFromTree(definition);
    if (!market) throw std::invalid_argument(product->TypeName() + ": a market is needed to price it");
    XScriptInputs in = product->Inputs(MarketFromTree(*market));
    in.notional = definition.value("notional", 1.0);
    return {std::move(product), std::move(in)};
}

BookedProduct BookProductFromText(const std::string& definition, const std::string& market) {
    const Json marketTree = market.empty() ? Json() : DefinitionTree(market);
    return BookProduct(DefinitionTree(definition), market.empty() ? nullptr : &marketTree);
}

BookedProduct BookProductFromFiles(const std::string& definitionPath, const std::string& marketPath) {
    return BookProductFromText(DefinitionFileText(definitionPath), marketPath.empty() ? "" : DefinitionFileText(marketPath));
}

}  // namespace zep
