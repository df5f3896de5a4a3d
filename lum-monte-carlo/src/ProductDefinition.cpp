#include "lum-monte-carlo/ProductDefinition.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <type_traits>

#include <nlohmann/json.hpp>
#include <yaml-cpp/yaml.h>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/script/FieldName.hpp"
#include "lum-monte-carlo/script/ScriptPrinter.hpp"

namespace zep {

namespace {

using Json = nlohmann::json;

[[noreturn]] void Malformed(const std::string& field, const std::string& problem) {
    throw std::invalid_argument("Product definition: field '" + field + "' " + problem);
}

// YAML scalars carry no type: booleans and numbers are recognised by their text, the rest
// (dates included) stay strings.
Json ScalarFromYaml(const std::string& text) {
    if (text == "true" || text == "false") return text == "true";
    if (!text.empty()) {
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (end == text.c_str() + text.size()) return value;
    }
    return text;
}

// An alias repeats the subtree of its anchor, even one that holds the alias itself, so a short
// YAML text can stand for an endless or exponentially large tree. A product definition is a few
// levels deep and a few thousand nodes large; reading stops well beyond that.
constexpr int kMaxYamlDepth = 64;
constexpr std::size_t kMaxYamlNodes = 100000;

Json FromYaml(const YAML::Node& node, int depth, std::size_t& nodesLeft) {
    if (depth > kMaxYamlDepth || nodesLeft == 0)
        throw std::invalid_argument("Product definition: malformed YAML: more than " + std::to_string(kMaxYamlNodes) +
                                    " nodes or " + std::to_string(kMaxYamlDepth) +
                                    " levels once its aliases are expanded");
    --nodesLeft;
    switch (node.Type()) {
        case YAML::NodeType::Sequence: {
            Json list = Json::array();
            for (const auto& item : node) list.push_back(FromYaml(item, depth + 1, nodesLeft));
            return list;
        }
        case YAML::NodeType::Map: {
            Json object = Json::object();
            for (const auto& item : node)
                object[item.first.as<std::string>()] = FromYaml(item.second, depth + 1, nodesLeft);
            return object;
        }
        case YAML::NodeType::Scalar: return ScalarFromYaml(node.Scalar());
        default: return nullptr;
    }
}

Json Parsed(const std::string& text) {
    const auto first = std::find_if(text.begin(), text.end(), [](unsigned char c) { return !std::isspace(c); });
    try {
        if (first != text.end() && *first == '{') return Json::parse(text);
        std::size_t nodesLeft = kMaxYamlNodes;
        return FromYaml(YAML::Load(text), 1, nodesLeft);
    } catch (const Json::exception& e) {
        throw std::invalid_argument(std::string("Product definition: malformed JSON: ") + e.what());
    } catch (const YAML::Exception& e) {
        throw std::invalid_argument(std::string("Product definition: malformed YAML: ") + e.what());
    }
}

class Reader {
public:
    Reader(const Json& node, std::string path) : m_node(node), m_path(std::move(path)) {}

    bool Has(const std::string& key) const { return m_node.is_object() && m_node.contains(key); }
    std::string Path(const std::string& key) const { return m_path.empty() ? key : m_path + "." + key; }

    Reader Child(const std::string& key) const {
        if (!Has(key)) Malformed(Path(key), "is missing");
        return Reader(m_node.at(key), Path(key));
    }
    double Number(const std::string& key) const {
        const Reader child = Child(key);
        if (!child.m_node.is_number()) Malformed(child.m_path, "must be a number");
        return child.m_node.get<double>();
    }
    double Number(const std::string& key, double fallback) const {
        return Has(key) ? Number(key) : fallback;
    }
    bool Flag(const std::string& key, bool fallback) const {
        if (!Has(key)) return fallback;
        const Reader child = Child(key);
        if (!child.m_node.is_boolean()) Malformed(child.m_path, "must be true or false");
        return child.m_node.get<bool>();
    }
    std::string Text(const std::string& key) const {
        const Reader child = Child(key);
        if (!child.m_node.is_string()) Malformed(child.m_path, "must be a text");
        return child.m_node.get<std::string>();
    }
    Date DateField(const std::string& key) const {
        const std::string text = Text(key);
        Date date;
        try {
            date = Date(std::string_view(text));
        } catch (...) {
            Malformed(Path(key), "is not a valid date: '" + text + "'");
        }
        // An empty text reads as the null date, which no event or valuation can fall on.
        if (date.IsNull()) Malformed(Path(key), "is not a valid date: '" + text + "'");
        return date;
    }
    std::vector<Reader> Items(const std::string& key) const {
        const Reader child = Child(key);
        if (!child.m_node.is_array()) Malformed(child.m_path, "must be a list");
        std::vector<Reader> items;
        for (std::size_t i = 0; i < child.m_node.size(); ++i)
            items.emplace_back(child.m_node[i], child.m_path + "[" + std::to_string(i) + "]");
        return items;
    }
    const Json& Node() const { return m_node; }
    const std::string& Where() const { return m_path; }

private:
    const Json& m_node;
    std::string m_path;
};

// The integer a number of the definition stands for, its fraction cut off. A number the integer
// type cannot hold is refused: converting it would be undefined.
template <class Integer>
Integer IntegerOf(double value, const std::string& field, const std::string& problem) {
    const double beyond = std::ldexp(1.0, std::numeric_limits<Integer>::digits);  // 2^31, 2^63, 2^64
    const double lowest = std::is_signed_v<Integer> ? -beyond : 0.0;
    if (!(value >= lowest && value < beyond)) Malformed(field, problem);
    return static_cast<Integer>(value);
}

std::int32_t ModelCode(const Reader& model) {
    const Reader type = model.Child("type");
    if (type.Node().is_number())
        return IntegerOf<std::int32_t>(type.Node().get<double>(), type.Where(), "must be a model name or code");
    if (!type.Node().is_string()) Malformed(type.Where(), "must be a model name or code");
    std::string name = type.Node().get<std::string>();
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    static const std::map<std::string, std::int32_t> codes{
        {"blackscholes", 1}, {"blackschole", 1}, {"bachelier", 2}, {"heston", 3}, {"dupire", 4}};
    const auto found = codes.find(name);
    if (found == codes.end())
        Malformed(type.Where(), "names an unknown model: '" + type.Node().get<std::string>() + "'");
    return found->second;
}

std::vector<Date> ScheduleDates(const Reader& schedule) {
    const Date start = schedule.DateField("start");
    const Date end = schedule.DateField("end");
    if (end < start) Malformed(schedule.Path("end"), "is before the schedule's start");
    const bool weekdaysOnly = schedule.Flag("weekdays_only", true);
    std::vector<Date> dates;
    for (Date d = start; d <= end; d = d + 1) {
        const bool weekend = d.Weekday() == 1 || d.Weekday() == 7;
        if (!weekdaysOnly || !weekend) dates.push_back(d);
    }
    return dates;
}

std::string ScriptNumber(const Reader& fields, const std::string& name, double value) {
    try {
        return ScriptNumberText(value);
    } catch (const std::invalid_argument& e) {
        Malformed(fields.Path(name), e.what());
    }
}

std::string FieldAssignments(const Reader& root) {
    if (!root.Has("fields")) return "";
    const Reader fields = root.Child("fields");
    if (!fields.Node().is_object()) Malformed(fields.Where(), "must be a mapping of names to numbers");
    std::string script;
    for (const auto& [name, value] : fields.Node().items()) {
        ValidateFieldName("product", name);
        if (!value.is_number()) Malformed(fields.Path(name), "must be a number");
        script += name + " = " + ScriptNumber(fields, name, value.get<double>()) + "\n";
    }
    return script;
}

XScriptInputs MarketOf(const Reader& root) {
    if (!root.Node().is_object()) Malformed("(top level)", "must be a mapping");
    XScriptInputs in;
    in.today = root.DateField("valuation_date");
    const Reader market = root.Child("market");
    in.spot = market.Number("spot");
    in.volatility = market.Number("volatility", in.volatility);
    in.rate1 = market.Number("rate1");
    in.rate2 = market.Number("rate2");
    const Reader model = root.Child("model");
    in.model = ModelCode(model);
    if (model.Has("parameters")) {
        for (const Reader& value : model.Items("parameters")) {
            if (!value.Node().is_number()) Malformed(value.Where(), "must be a number");
            in.modelParameters.push_back(value.Node().get<double>());
        }
    }
    if (root.Has("simulation")) {
        const Reader sim = root.Child("simulation");
        in.numSimulations = IntegerOf<std::int64_t>(sim.Number("paths", static_cast<double>(in.numSimulations)),
                                                    sim.Path("paths"), "is out of range for a number of paths");
        in.seed = IntegerOf<std::uint64_t>(sim.Number("seed", static_cast<double>(in.seed)), sim.Path("seed"),
                                           "is out of range for a seed");
        in.dayBasis = sim.Number("day_basis", in.dayBasis);
        in.quasiRandom = sim.Flag("quasi_random", in.quasiRandom);
        in.adaptiveShift = sim.Flag("adaptive_shift", in.adaptiveShift);
        in.adaptiveShiftBarrier = sim.Number("adaptive_shift_barrier", in.adaptiveShiftBarrier);
    }
    return in;
}

XScriptInputs FromTree(const Json& tree) {
    const Reader root(tree, "");
    XScriptInputs in = MarketOf(root);
    if (root.Has("price_variable")) in.priceVariable = root.Text("price_variable");
    in.notional = root.Number("notional", in.notional);

    std::map<Date, std::string> scripts;
    for (const Reader& event : root.Items("events")) {
        const std::string script = event.Text("script");
        if (event.Has("schedule")) {
            for (const Date& d : ScheduleDates(event.Child("schedule"))) scripts[d] += script + "\n";
        } else {
            scripts[event.DateField("date")] += script + "\n";
        }
    }
    if (scripts.empty()) Malformed("events", "must hold at least one event");
    for (const auto& [date, script] : scripts) {
        in.eventDates.push_back(date);
        in.eventScripts.push_back(script);
    }
    for (char& c : in.priceVariable) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    in.eventScripts.front() = FieldAssignments(root) + in.eventScripts.front();
    return in;
}

}  // namespace

nlohmann::json DefinitionTree(const std::string& text) { return Parsed(text); }

XScriptInputs ProductDefinitionFromTree(const nlohmann::json& tree) { return FromTree(tree); }

XScriptInputs MarketDefinitionFromTree(const nlohmann::json& tree) { return MarketOf(Reader(tree, "")); }

XScriptInputs ProductDefinitionFromText(const std::string& text) { return FromTree(Parsed(text)); }

std::string DefinitionFileText(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::invalid_argument("Product definition: cannot read file '" + path + "'");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

XScriptInputs ProductDefinitionFromFile(const std::string& path) {
    return ProductDefinitionFromText(DefinitionFileText(path));
}

}  // namespace zep
