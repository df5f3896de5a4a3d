// A book priced over NumPy arrays reports a row the engine refuses as NaN rather than failing the
// whole call, so one bad row leaves the others' prices usable.
#pragma once

#include <limits>

#include "lum-auxiliary/Error.hpp"

namespace zep::python {

// The row's price, or NaN when the engine refuses its terms; library failures come both as
// zep::Error and as the bare validation texts of the Black-Scholes engine.
template <class Price>
double RowPriceOrNaN(Price&& price) {
    try {
        return price();
    } catch (const zep::Error&) {
    } catch (const char*) {
    }
    return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace zep::python
