#include "lum-monte-carlo/products/SchemaValidator.hpp"

#include <cmath>
#include <set>
#include <stdexcept>

namespace zep {

namespace {

using Json = nlohmann::json;

bool HasType(const Json& value, const std::string& type) {
    if (type == "object") return value.is_object();
    if (type == "array") return value.is_array();
    if (type == "string") return value.is_string();
    if (type == "boolean") return value.is_boolean();
    if (type == "number") return value.is_number();
    // YAML and JSON numbers alike: an integer is a number without a fraction.
    if (type == "integer") return value.is_number() && std::floor(value.get<double>()) == value.get<double>();
    throw std::logic_error("schema: unknown type '" + type + "'");
}

std::string TypeWord(const std::string& type) {
    if (type == "object") return "a mapping";
    if (type == "array") return "a list";
    if (type == "string") return "a text";
    if (type == "boolean") return "true or false";
    return type == "integer" ? "an integer" : "a number";
}

class Validator {
public:
    explicit Validator(std::string what) : m_what(std::move(what)) {}

    void Check(const Json& value, const Json& schema, const std::string& path) const {
        static const std::set<std::string> known{"$schema", "title", "description", "type", "properties", "required",
                                                 "additionalProperties", "items", "minItems", "enum", "minimum",
                                                 "exclusiveMinimum"};
        for (const auto& [keyword, rule] : schema.items())
            if (!known.contains(keyword)) throw std::logic_error("schema: unsupported keyword '" + keyword + "'");
        if (schema.contains("type")) CheckType(value, schema["type"], path);
        if (schema.contains("enum")) CheckEnum(value, schema["enum"], path);
        if (value.is_number()) CheckBounds(value.get<double>(), schema, path);
        if (value.is_object()) CheckObject(value, schema, path);
        if (value.is_array()) CheckArray(value, schema, path);
    }

private:
    [[noreturn]] void Fail(const std::string& path, const std::string& problem) const {
        throw std::invalid_argument(m_what + ": field '" + (path.empty() ? "(top level)" : path) + "' " + problem);
    }
    static std::string Member(const std::string& path, const std::string& key) { return path.empty() ? key : path + "." + key; }

    void CheckType(const Json& value, const Json& type, const std::string& path) const {
        const Json types = type.is_array() ? type : Json::array({type});
        std::string words;
        for (const Json& name : types) {
            if (HasType(value, name.get<std::string>())) return;
            words += (words.empty() ? "" : " or ") + TypeWord(name.get<std::string>());
        }
        Fail(path, "must be " + words);
    }
    void CheckEnum(const Json& value, const Json& choices, const std::string& path) const {
        std::string list;
        for (const Json& choice : choices) {
            if (choice == value) return;
            list += (list.empty() ? "" : ", ") + choice.dump();
        }
        Fail(path, "is " + JsonText(value) + ": must be one of " + list);
    }
    void CheckBounds(double number, const Json& schema, const std::string& path) const {
        if (schema.contains("minimum") && !(number >= schema["minimum"].get<double>()))
            Fail(path, "must be at least " + schema["minimum"].dump());
        if (schema.contains("exclusiveMinimum") && !(number > schema["exclusiveMinimum"].get<double>()))
            Fail(path, "must be above " + schema["exclusiveMinimum"].dump());
    }
    void CheckObject(const Json& value, const Json& schema, const std::string& path) const {
        const Json properties = schema.value("properties", Json::object());
        for (const Json& name : schema.value("required", Json::array()))
            if (!value.contains(name.get<std::string>())) Fail(Member(path, name.get<std::string>()), "is missing");
        for (const auto& [key, member] : value.items()) {
            if (properties.contains(key)) {
                Check(member, properties[key], Member(path, key));
            } else if (schema.contains("additionalProperties")) {
                const Json& others = schema["additionalProperties"];
                if (others.is_boolean() && !others.get<bool>()) Fail(Member(path, key), "is not a known field");
                if (others.is_object()) Check(member, others, Member(path, key));
            }
        }
    }
    void CheckArray(const Json& value, const Json& schema, const std::string& path) const {
        if (schema.contains("minItems") && value.size() < schema["minItems"].get<std::size_t>())
            Fail(path, "must hold at least " + schema["minItems"].dump() + " item(s)");
        if (!schema.contains("items")) return;
        for (std::size_t i = 0; i < value.size(); ++i) Check(value[i], schema["items"], path + "[" + std::to_string(i) + "]");
    }

    std::string m_what;
};

}  // namespace

void ValidateAgainstSchema(const Json& value, const Json& schema, const std::string& what) {
    Validator(what).Check(value, schema, "");
}

std::string JsonText(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace zep
