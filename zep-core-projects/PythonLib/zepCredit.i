// Credit curves: survival probabilities bootstrapped from CDS par spreads.
%{
#include "lum-interest-rates/CreditCurve.hpp"
%}

%ignore zep::CreditConventions;
%ignore zep::CreditCurve::CreditCurve(const Date&, const std::vector<Period>&, const std::vector<double>&, double,
                                      boost::shared_ptr<const YieldCurve>, const CreditConventions&, const Calendar&);
%ignore zep::CreditCurve::ParSpread(const Period&) const;
%ignore zep::CreditCurve::SurvivalProbability(double) const;
%ignore zep::CreditCurve::WithSpreadsShifted;
%feature("docstring") zep::CreditCurve
"The default-time curve of an issuer bootstrapped from its CDS par spreads: a hazard rate
constant between CDS maturities, survival to t = exp(-integral of the hazard).

CreditCurve(referenceDate, tenors, spreads, recovery, discountCurve, premiumTenor='3M',
            centres='TARGET')
tenors ascending ('1Y', '3Y', '5Y'), spreads as decimals (0.01 = 100 bp), recovery in [0, 1).
Each CDS runs from the reference date to reference date + tenor and pays its spread every
premiumTenor (Act/360, Modified Following on the centres, half the accrual on default); the
protection pays 1 - recovery at the middle of the premium period of default. Times are Act/365
Fixed from the reference date. SurvivalProbability(date), DefaultProbability(date),
HazardRate(t), ParSpread(tenor). Pickles.";
%include "lum-interest-rates/CreditCurve.hpp"
%extend zep::CreditCurve {
    CreditCurve(const zep::Date& referenceDate, const std::vector<std::string>& tenors,
                const std::vector<double>& spreads, double recovery,
                boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& premiumTenor = "3M",
                const std::string& centres = "TARGET") {
        if (!discountCurve) throw std::invalid_argument("CreditCurve: no discount curve");
        std::vector<zep::Period> periods;
        for (const std::string& tenor : tenors) periods.emplace_back(tenor);
        zep::CreditConventions conventions;
        conventions.premiumTenor = zep::Period(premiumTenor);
        conventions.centres = centres;
        return new zep::CreditCurve(referenceDate, periods, spreads, recovery, discountCurve, conventions,
                                    zep::Calendar::Shared());
    }
    double ParSpread(const std::string& tenor) const { return $self->ParSpread(zep::Period(tenor)); }
}
