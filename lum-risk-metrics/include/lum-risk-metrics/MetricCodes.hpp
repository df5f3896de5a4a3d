// Codes shared with the risk-metrics layer: product families, metric identifiers and the
// factors of market scenarios. Each group is numbered from 0 in its listed order.
#pragma once

namespace zep::metrics {

// The gap before WM_PRODUCT is reserved for the rate, credit and FX families still to come.
enum class ProductType { CASH_RATES = 0, FRN = 1, SHORT_TERM_PAPER = 2, IRS = 3, OIS = 4,
                         FIXED_RATE_BOND = 5, FX_FORWARD = 6, FX_VANILLA_OPTION = 7, BASIS_SWAP = 8,
                         FRA = 9, FX_SWAP = 10, NDF = 11, CROSS_CURRENCY_SWAP = 12, CDS = 13,
                         FX_BARRIER_OPTION = 14, FX_DIGITAL_OPTION = 15,
                         WM_PRODUCT = 55, NON_STANDARD = 56 };
// Sensitivities are per market move: DELTA, GAMMA, VEGA and FX_DELTA per 1% (of spot, or one
// volatility point), DV01, KEY_RATE_DV01 (one figure per curve pillar) and RHO per basis point,
// THETA per calendar day, CS01 per basis point of credit spread.
enum class Metric { PV = 0, MARKET_VALUE = 1, NPV = 2, DELTA = 3, GAMMA = 4, VEGA = 5, THETA = 6,
                    RHO = 7, DV01 = 8, FX_DELTA = 9, PAR_RATE = 10, MODIFIED_DURATION = 11,
                    KEY_RATE_DV01 = 12, CS01 = 13 };
enum class UnitCode { CCY, CCY_PER_BP, CCY_PER_BP2, CCY_PER_PCT, CCY_PER_DAY, YEAR, YEAR_PER_BP,
                      PCT, BP, PROB, COUNT };
enum class MetricAggregationType { SUM, WEIGHTED_AVERAGE, MARKET_VALUE_WEIGHTED, NO_AGGREGATION,
                                   SPECIAL_CALCULATION, PORTFOLIO_RECALC_ONLY, COMPONENT_SUM, MAX,
                                   MIN, FIRST, LAST };
enum class MetricProvenance { NORMAL, PLACEHOLDER, MOCK, DEGRADED, ERROR_FALLBACK };
enum class BondAdapterPricingMode { AUTO, MARKET, MODEL };
enum class YieldCurveFactor { LEVEL, SLOPE, CURVATURE, KEY_RATE, TWIST_SHORT_LONG };
enum class FXForwardFactor { SPOT_SHOCK, FORWARD_POINTS_LEVEL, FORWARD_POINTS_SLOPE,
                             KEY_TENOR_SHOCK };
enum class VolSurfaceFactor { ATM_VOL_LEVEL, VOL_TERM_STRUCTURE, RISK_REVERSAL_25D, BUTTERFLY_25D,
                              RISK_REVERSAL_10D, BUTTERFLY_10D, VOL_SMILE_SHIFT };
enum class SpreadCurveFactor { SPREAD_LEVEL, SPREAD_SLOPE, SPREAD_CURVATURE, KEY_SPREAD_SHOCK,
                               WIDENING, TIGHTENING };
enum class CreditCurveFactor { CDS_SPREAD_LEVEL, CDS_SPREAD_SLOPE, HAZARD_RATE_LEVEL,
                               DEFAULT_PROB_SHOCK, RECOVERY_RATE_SHOCK };
enum class ScenarioType { DETERMINISTIC, HISTORICAL, REGULATORY, CUSTOM };
enum class ScenarioGroupApplyMode { SEQUENTIAL, PARALLEL };

}  // namespace zep::metrics
