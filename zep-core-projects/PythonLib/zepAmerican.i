// American options: finite differences, Barone-Adesi-Whaley and the Leisen-Reimer tree.
%{
#include "zep-pde/AmericanOption.hpp"
%}

%feature("docstring") zep::AmericanOption
"An American call (0) or put (1), expiry and delivery as one date (years), continuous domestic
and foreign rates.

AmericanOption(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate, spot)
Price(engine='fd', nodes=200, timeSteps=200): engine 'fd' (Crank-Nicolson after two implicit
half steps on nodes x timeSteps, spots gathered at the strike, early exercise by projection after
each step), 'baw'
(Barone-Adesi-Whaley) or 'binomial' (Leisen-Reimer tree of timeSteps steps).
EuropeanPrice(): the Black-Scholes price of the same terms.
ExerciseBoundary(nodes=200, timeSteps=200): [(time in years, critical spot)] from the grid.";
%include "zep-pde/AmericanOption.hpp"
