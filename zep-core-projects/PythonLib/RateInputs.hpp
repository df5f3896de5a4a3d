// What the rate and FX M classes build from plain Python data: schedules from dates, tenors and
// convention names, the market of a leg from its curves (the projection curve defaults to the
// discount curve: single-curve pricing), and the coupon kind from its name.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "DateInput.hpp"
#include "lum-interest-rates/Bond.hpp"
#include "lum-interest-rates/FXForward.hpp"
#include "lum-interest-rates/FixingStore.hpp"
#include "lum-interest-rates/Leg.hpp"
#include "lum-time/Schedule.hpp"

namespace zep::python {

// A leg's description as the M classes take it; dates still unparsed.
struct LegInput {
    std::string tenor = "6M";
    zep::DayCounter dayCounter = zep::DayCounter(zep::Act360);
    std::string centres = "TARGET";
    int fixingLagDays = 2;
    int paymentLagDays = 0;
};

zep::Schedule MakeSchedule(const DateInput& start, const DateInput& end, const LegInput& leg);
// A fixed-rate bond whose coupons accrue unadjusted and pay on the following business day, at
// the frequency its tenor gives (which must divide a year).
zep::Bond MakeBond(double couponRate, const DateInput& issueDate, const DateInput& maturityDate,
                   const std::string& tenor, const zep::DayCounter& dayCounter, const std::vector<double>& notionals,
                   const std::string& centres, bool endOfMonth, bool simpleYieldInLastPeriod = false);
// The position of `name` (any case) among `choices`; fails "'<name>' is an invalid <what> (A or B)."
int ChoiceOf(const std::string& name, const std::vector<std::string>& choices, const char* what);
// "IBOR" (a term rate fixed per period) or "OVERNIGHT" (compounded daily), any case.
zep::CouponKind FloatingKindOf(const std::string& name);

// Curves and fixings kept alive by the instrument that reads them.
struct CurvePair {
    boost::shared_ptr<zep::YieldCurve> discount;
    boost::shared_ptr<zep::YieldCurve> projection;
    boost::shared_ptr<zep::FixingStore> fixings;

    // Fails "<what>: the discount curve is None." when the discount curve is missing.
    CurvePair(boost::shared_ptr<zep::YieldCurve> discountCurve, boost::shared_ptr<zep::YieldCurve> projectionCurve,
              boost::shared_ptr<zep::FixingStore> fixingStore, const char* what);
    zep::LegMarket Market(double fxRate = 1.0) const;
};

// Spot and the two curves of a currency pair.
struct FXCurves {
    double spot;
    zep::Date spotDate;
    boost::shared_ptr<zep::YieldCurve> quoteCurve;
    boost::shared_ptr<zep::YieldCurve> baseCurve;

    FXCurves(double spotRate, const DateInput& spotSettlement, boost::shared_ptr<zep::YieldCurve> quote,
             boost::shared_ptr<zep::YieldCurve> base, const char* what);
    zep::FXMarket Market() const { return {spot, spotDate, quoteCurve.get(), baseCurve.get()}; }
};

}  // namespace zep::python
