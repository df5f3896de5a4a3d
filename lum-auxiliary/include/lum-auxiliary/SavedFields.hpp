// Saving objects as JSON property trees: numbers are written in their shortest exact form so
// that a saved and reloaded curve reproduces every discount factor to the last bit.
#pragma once

#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>

namespace zep::fields {

using Tree = boost::property_tree::ptree;

void PutDouble(Tree& fields, const std::string& name, double value);
double GetDouble(const Tree& fields, const std::string& name);
// A JSON array of numbers.
void PutDoubles(Tree& fields, const std::string& name, const std::vector<double>& values);
std::vector<double> GetDoubles(const Tree& fields, const std::string& name);

std::string ToJson(const Tree& fields);
// Raises std::invalid_argument naming the parser's complaint on malformed text.
Tree FromJson(const std::string& text);

}  // namespace zep::fields
