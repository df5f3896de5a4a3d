#include "lum-monte-carlo/script/IfProcessor.hpp"

#include <algorithm>

namespace zep {

void IfProcessor::RecordWrite(const Node& statement) {
    if (m_openIfs.empty()) return;
    const auto& variable = static_cast<const NodeVar&>(*statement.arguments[0]);
    m_openIfs.back().push_back(variable.index);
}

void IfProcessor::Visit(NodeAssign& node) { RecordWrite(node); }
void IfProcessor::Visit(NodePays& node) { RecordWrite(node); }

void IfProcessor::Visit(NodeIf& node) {
    m_openIfs.emplace_back();
    for (std::size_t i = 1; i < node.arguments.size(); ++i) node.arguments[i]->Accept(*this);
    std::vector<std::int32_t> written = std::move(m_openIfs.back());
    m_openIfs.pop_back();
    std::sort(written.begin(), written.end());
    written.erase(std::unique(written.begin(), written.end()), written.end());
    if (!m_openIfs.empty())
        m_openIfs.back().insert(m_openIfs.back().end(), written.begin(), written.end());
    node.affectedVars = std::move(written);
}

}  // namespace zep
