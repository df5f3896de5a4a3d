// The interpolation engine: zep.Interpolation over doubles, the method and extrapolation codes
// as module constants (zep.LinearInterpolation, zep.FlatExtrapolation, ...) and their names.
%{
#include "lum-auxiliary/Interpolation.hpp"
%}

%template(DoubleVector) std::vector<double>;
%template(DoubleMatrix) std::vector<std::vector<double>>;
// The per-region method map travels as a dict {threshold: method code}.
%typemap(in) zep::InterpolationMethodMap {
    if (!PyDict_Check($input)) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum" " of type 'dict'");
    }
    zep::InterpolationMethodMap regions;
    PyObject* threshold = nullptr;
    PyObject* code = nullptr;
    Py_ssize_t position = 0;
    while (PyDict_Next($input, &position, &threshold, &code)) {
        const double key = PyFloat_AsDouble(threshold);
        const unsigned long method = PyLong_AsUnsignedLong(code);
        if (PyErr_Occurred()) SWIG_fail;
        regions[key] = static_cast<zep::InterpolationMethod>(method);
    }
    $1 = regions;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) zep::InterpolationMethodMap {
    $1 = PyDict_Check($input);
}
%typemap(out) const zep::InterpolationMethodMap& {
    $result = PyDict_New();
    for (const auto& [threshold, method] : *$1) {
        PyObject* key = PyFloat_FromDouble(threshold);
        PyObject* value = PyLong_FromUnsignedLong(method);
        PyDict_SetItem($result, key, value);
        Py_DECREF(key);
        Py_DECREF(value);
    }
}

%ignore zep::Interpolation::SaveSettings;
%warnfilter(327) zep::Interpolation;
%ignore zep::Interpolation::LoadSettings;

%feature("docstring") zep::Interpolation
"A tabulated function evaluated under one of nine methods.

Interpolation(x, y, method, extrapolation[, methods[, leftDer, rightDer]]) for one dimension,
Interpolation(x, y, z, method, extrapolation[, methods]) for a grid with z[i][j] at (x[i], y[j]).
`methods` maps an abscissa threshold to the method in force from there on, e.g.
{2.0: zep.LogLinearInterpolation}. Vectors accept lists, tuples and NumPy arrays.";

%include "lum-auxiliary/Interpolation.hpp"

%template(Interpolation) zep::Interpolation<double, double, double>;
