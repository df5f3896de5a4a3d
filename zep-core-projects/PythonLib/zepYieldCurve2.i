// A currency pair's discount curves and the FX forward between them: zep.YieldCurve2 and its
// M-class face MYieldCurve2.
%{
#include "lum-interest-rates/YieldCurve2.hpp"
#include "MYieldCurve2.hpp"
%}

%shared_ptr(zep::YieldCurve2)
%ignore zep::YieldCurve2::Domestic;
%ignore zep::YieldCurve2::Foreign;
%ignore zep::python::MYieldCurve2::Curves;
%feature("docstring") zep::YieldCurve2
"A currency pair's discount curves and the FX forward between them, domestic units per foreign
unit. YieldCurve2(domestic, foreign, spot, scale=10000): the forward by covered interest parity,
spot * DF_foreign / DF_domestic. YieldCurve2(domestic, spot, scale, times, points): quoted forward
points (forward = spot + points / scale) at times in years, linear in time; the foreign curve is
implied from them. Forward(date), ForwardPoints(date).";
%feature("docstring") zep::python::MYieldCurve2
"YieldCurve2 in the M-class frame: MYieldCurve2(), MYieldCurve2(yieldCurve2),
MYieldCurve2(domestic, foreign, spot[, scale]) or MYieldCurve2(domestic, spot, scale, times,
points); failures read 'MYieldCurve2::<operation> failed: ...'. Spot(), Scale(), Forward(date),
ForwardPoints(date), DomesticCurve(), ForeignCurve(). Pickles.";
%include "lum-interest-rates/YieldCurve2.hpp"
%include "MYieldCurve2.hpp"
