// Gives every distinct variable name an index into the variable array, in order of first
// appearance over the events in date order, and fills the index of every NodeVar.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class VarIndexer : public Visitor {
public:
    using Visitor::Visit;
    void Visit(NodeVar& node) override;

    const std::vector<std::string>& VariableNames() const { return m_names; }

private:
    std::unordered_map<std::string, std::int32_t> m_indices;
    std::vector<std::string> m_names;
};

}  // namespace zep
