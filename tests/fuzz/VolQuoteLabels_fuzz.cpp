// Volatility quote labels, one per line: the market columns of a surface ("ATM", "25RR",
// "BF 10", ...) and the pillar labels ("25P", "ATMM", "10C"). A label list the surface accepts
// gives every column exactly one role, with ATM and the 25-delta pair among them; a pillar label
// the surface accepts has a finite delta of the side its letter names.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-fxo-market/FXVolSurface.hpp"

namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    lines.push_back(text.substr(start));
    return lines;
}

void CheckColumns(const std::vector<std::string>& labels) {
    const auto columns = zep::fuzz::Attempt([&] { return zep::FXVolSurface::processDeltaStrings(labels); });
    if (!columns) return;
    std::set<int> roles = {columns->atm};
    for (const auto* kind : {&columns->riskReversals, &columns->butterflies})
        for (const auto& [delta, column] : *kind) roles.insert(column);
    ZEP_FUZZ_REQUIRE(roles.size() == labels.size() && *roles.begin() == 0 &&
                         *roles.rbegin() == static_cast<int>(labels.size()) - 1,
                     "the accepted labels do not each get one column of their own");
    ZEP_FUZZ_REQUIRE(columns->riskReversals.count(25) == 1 && columns->butterflies.count(25) == 1,
                     "labels without the 25-delta pair are accepted");
}

void CheckPillar(const std::string& label) {
    const auto delta = zep::fuzz::Attempt([&] { return zep::FXVolSurface::DeltaStringToValue(label); });
    if (!delta) return;
    ZEP_FUZZ_REQUIRE(std::isfinite(*delta), "pillar '" + label + "' has a delta that is not finite");
    std::string upper;
    for (char c : label) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const auto first = upper.find_first_not_of(" \t");  // labels are read trimmed of blanks and tabs
    const bool put = first != std::string::npos && upper.find('P', first + 1) != std::string::npos;
    ZEP_FUZZ_REQUIRE(put ? *delta < 0.0 : *delta >= 0.0,
                     "pillar '" + label + "' gets a delta on the other side of the smile");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4096) return 0;  // a real label list is a handful of short labels
    const std::vector<std::string> labels = Lines(std::string(reinterpret_cast<const char*>(data), size));
    CheckColumns(labels);
    for (const std::string& label : labels) CheckPillar(label);
    return 0;
}
