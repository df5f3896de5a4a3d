// The standard bivariate normal distribution function P(X < a, Y < b), corr(X, Y) = rho, to about
// 1e-15: Genz's (2004) reading of Drezner and Wesolowsky's integral in the correlation, Gauss-Legendre
// rules of 6, 12 or 20 points as |rho| grows, and near |rho| = 1 the singular part taken out in
// closed form.
#pragma once

namespace zep {

double BivariateNormalCdf(double a, double b, double rho);

}  // namespace zep
