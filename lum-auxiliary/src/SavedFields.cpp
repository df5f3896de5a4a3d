#include "lum-auxiliary/SavedFields.hpp"

#include <charconv>
#include <sstream>
#include <stdexcept>

#include <boost/property_tree/json_parser.hpp>

namespace zep::fields {

namespace {

std::string Text(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

double Number(const std::string& text, const std::string& name) {
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        throw std::invalid_argument("Saved field '" + name + "' is not a number: '" + text + "'");
    return value;
}

}  // namespace

void PutDouble(Tree& fields, const std::string& name, double value) {
    fields.put(name, Text(value));
}

double GetDouble(const Tree& fields, const std::string& name) {
    return Number(fields.get<std::string>(name), name);
}

void PutDoubles(Tree& fields, const std::string& name, const std::vector<double>& values) {
    Tree array;
    for (double value : values) {
        Tree element;
        element.put_value(Text(value));
        array.push_back({"", element});
    }
    fields.put_child(name, array);
}

std::vector<double> GetDoubles(const Tree& fields, const std::string& name) {
    std::vector<double> values;
    for (const auto& element : fields.get_child(name))
        values.push_back(Number(element.second.data(), name));
    return values;
}

std::string ToJson(const Tree& fields) {
    std::ostringstream out;
    boost::property_tree::write_json(out, fields, false);
    return out.str();
}

Tree FromJson(const std::string& text) {
    std::istringstream in(text);
    Tree fields;
    try {
        boost::property_tree::read_json(in, fields);
    } catch (const boost::property_tree::json_parser_error& e) {
        throw std::invalid_argument(std::string("Saved object is not valid JSON: ") + e.what());
    }
    return fields;
}

}  // namespace zep::fields
