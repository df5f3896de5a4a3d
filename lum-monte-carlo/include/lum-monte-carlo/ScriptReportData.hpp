// Everything a pricing report of a scripted product shows, gathered after the pricing so that
// the report needs nothing from the simulator itself.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lum-time/Date.hpp"

namespace zep {

struct ScriptReportData {
    // One simulated path as the report shows it: the spot and every script variable after each
    // event date's statements ran.
    struct SamplePath {
        std::vector<double> spots;                   // one per event date
        std::vector<std::vector<double>> variables;  // per event date, one per variable
    };
    // The distribution of the simulated spot on one event date, over all paths.
    struct SpotStatistics {
        double mean = 0.0, standardDeviation = 0.0, minimum = 0.0, maximum = 0.0;
        double percentile5 = 0.0, percentile95 = 0.0;
    };
    // A named level to draw beside the paths (a barrier, an autocall trigger).
    struct Level {
        std::string name;
        double value = 0.0;
    };

    std::string productName;
    std::string currency;

    Date today;
    double spot = 0.0, volatility = 0.0, rate1 = 0.0, rate2 = 0.0;
    std::string modelName;
    std::vector<double> modelParameters;

    long numSimulations = 0;
    unsigned long seed = 0;
    int threads = 1;
    std::string runMode;
    std::string generator;
    double dayBasis = 365.0;

    std::vector<Date> eventDates;
    std::vector<std::string> eventScripts;
    std::vector<double> discountFactors;  // per event date, the numeraire factor applied to PAYS
    std::vector<std::string> variableNames;
    std::vector<Level> levels;

    std::vector<SamplePath> samplePaths;        // the paths shown, usually three
    std::vector<SpotStatistics> spotStatistics; // per event date
    std::string priceVariable;
    double price = 0.0;
    std::vector<double> variableMeans;           // per variable
    std::vector<double> variableStandardErrors;  // per variable, of the mean
    std::vector<std::pair<std::string, double>> greeks;
    // Price with half and all of the paths, to show how far the estimate has settled.
    std::vector<std::pair<long, double>> convergence;
};

}  // namespace zep
