#include "lum-monte-carlo/script/VarIndexer.hpp"

namespace zep {

void VarIndexer::Visit(NodeVar& node) {
    const auto [entry, inserted] =
        m_indices.try_emplace(node.name, static_cast<std::int32_t>(m_names.size()));
    if (inserted) m_names.push_back(node.name);
    node.index = entry->second;
}

}  // namespace zep
