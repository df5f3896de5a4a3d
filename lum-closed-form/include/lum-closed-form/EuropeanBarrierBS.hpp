// A European call or put that is knocked in or out when the spot touches a barrier, watched
// continuously until expiry, under Black-Scholes with a domestic and a foreign rate: the
// Reiner-Rubinstein closed forms for one barrier, the Ikeda-Kunitomo series for a corridor.
//
// Barrier type codes (they cross the Python boundary):
//
// | code | type              | knocked by                      |
// |------|-------------------|---------------------------------|
// | 2    | DOWN_AND_IN       | spot at or below the barrier    |
// | 3    | DOWN_AND_OUT      | spot at or below the barrier    |
// | 4    | UP_AND_IN         | spot at or above the barrier    |
// | 5    | UP_AND_OUT        | spot at or above the barrier    |
// | 6    | DOUBLE_KNOCK_IN   | spot at or outside either level |
// | 7    | DOUBLE_KNOCK_OUT  | spot at or outside either level |
//
// The FX split between expiry and delivery: the barrier is watched and the volatility runs until
// the expiry T, while the payoff is settled at delivery Td. Carry and discounting run to delivery,
// as in BSVanilla: the forward is S DFf(Td) / DFd(Td), reached by a drift b = (rd - rf) Td / T
// over [0, T], and payments are discounted by DFd(Td). So a barrier moved out of reach gives the
// BSVanilla price exactly, and with T = Td these are the textbook formulas. No rebate is paid.
#pragma once

namespace zep {

enum class BarrierType : int {
    DOWN_AND_IN = 2,
    DOWN_AND_OUT = 3,
    UP_AND_IN = 4,
    UP_AND_OUT = 5,
    DOUBLE_KNOCK_IN = 6,
    DOUBLE_KNOCK_OUT = 7,
};

class EuropeanBarrierBS {
public:
    // One barrier; optionType BSVanilla::Call or BSVanilla::Put.
    EuropeanBarrierBS(int optionType, int barrierType, double strike, double barrier, double volatility,
                      double timeToExpiry, double timeToDelivery, double domesticRate, double foreignRate,
                      double spot);
    // A corridor (barrierLow, barrierUp), for DOUBLE_KNOCK_IN and DOUBLE_KNOCK_OUT.
    EuropeanBarrierBS(int optionType, int barrierType, double strike, double barrierLow, double barrierUp,
                      double volatility, double timeToExpiry, double timeToDelivery, double domesticRate,
                      double foreignRate, double spot);

    // Premium in domestic currency per unit of the underlying, paid at delivery. An expired option
    // is worth its undiscounted intrinsic value on spot if it is alive (out: not knocked; in:
    // knocked), else nothing.
    double Price() const;

    // The double knock-out series (image terms n = -N..N) stops once a pair of terms moves the
    // sum by less than this relative amount, and after kMaxSeriesTerms pairs in any case.
    static constexpr double kSeriesTolerance = 1e-16;
    static constexpr int kMaxSeriesTerms = 100;

private:
    bool IsKnocked() const;
    double VanillaPrice() const;
    double SingleKnockOut() const;
    double SingleKnockIn() const;
    double DoubleKnockOut() const;

    int m_optionType;
    int m_barrierType;
    double m_strike;
    double m_barrier;  // the single barrier, or the lower level of a corridor
    double m_barrierUp;
    double m_volatility;
    double m_timeToExpiry;
    double m_timeToDelivery;
    double m_domesticRate;
    double m_foreignRate;
    double m_spot;
};

}  // namespace zep
