// The zep module: one interface file per subsystem, included here in dependency order.
%module(package="zep") zeplib

%{
#include "ExceptionTranslation.hpp"
%}

%include <stdint.i>
%include <std_string.i>
// Members that are undefined behaviour on an empty vector, and the allocator, stay in C++:
// Python users have v[0], v[-1] and v.pop(), which check.
%ignore std::vector::pop_back;
%ignore std::vector::front;
%ignore std::vector::back;
%ignore std::vector::get_allocator;
%include <std_vector.i>
%ignore std::map::get_allocator;
%include <std_map.i>
%include <boost_shared_ptr.i>

// Every library call runs inside this guard; the translation keeps the library's catch order.
%exception {
    try {
        $action
    } catch (...) {
        zep::python::SetPythonErrorFromActiveException();
        SWIG_fail;
    }
}

%include "zepFrame.i"
%include "zepTime.i"
%include "zepReport.i"
%include "zepScript.i"
%include "zepCalendar.i"
%include "zepInterpolation.i"
%include "zebCurve.i"
%include "zepVanilla.i"
%include "zepXScript.i"
