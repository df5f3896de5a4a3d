// Barrier options: the Black-Scholes closed forms (EuropeanBarrierBS) and the barrier type codes.
%{
#include "lum-closed-form/EuropeanBarrierBS.hpp"
%}

%feature("docstring") zep::EuropeanBarrierBS
"A European call or put knocked in or out when the spot touches a barrier, watched continuously
until expiry, under Black-Scholes (domestic and foreign rates): closed forms for one barrier,
the Ikeda-Kunitomo series for a corridor. No rebate.

EuropeanBarrierBS(optionType, barrierType, strike, barrier, volatility, timeToExpiry,
                  timeToDelivery, domesticRate, foreignRate, spot)
EuropeanBarrierBS(optionType, barrierType, strike, barrierLow, barrierUp, volatility,
                  timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot)

optionType: 0 call, 1 put. barrierType: BarrierType_DOWN_AND_IN (2), BarrierType_DOWN_AND_OUT
(3), BarrierType_UP_AND_IN (4), BarrierType_UP_AND_OUT (5), BarrierType_DOUBLE_KNOCK_IN (6),
BarrierType_DOUBLE_KNOCK_OUT (7). The barrier runs to expiry; carry and discounting run to
delivery, so that a barrier out of reach gives the BSVanilla price.";

%include "lum-closed-form/EuropeanBarrierBS.hpp"
