// Discount factors for a whole NumPy array in one call: the arrays travel through the buffer
// protocol, so the loop over the points runs in C++ with no Python object per point.
#pragma once

#include <Python.h>

#include "lum-interest-rates/YieldCurve.hpp"

namespace zep::python {

// `times` (float64, years) and `out` (writable float64) hold the same number of values.
void FillDiscountFactorsAtTimes(const zep::YieldCurve& curve, PyObject* times, PyObject* out);
// `serials` (int32 date serial numbers) and `out` (writable float64) of the same length.
void FillDiscountFactorsAtSerials(const zep::YieldCurve& curve, PyObject* serials, PyObject* out);

}  // namespace zep::python
