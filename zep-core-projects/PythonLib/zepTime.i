// Dates, tenors and frequencies. Wherever a date is expected, a zep.Date, a date text or a
// datetime.date is accepted.
%{
#include "lum-time/Date.hpp"
#include "lum-time/Frequency.hpp"
#include "lum-time/Period.hpp"
#include "DateConversion.hpp"

namespace zep::python {
// Every item of a Python sequence as a date: a zep.Date, a date text or a datetime.date.
// NotADate when the object is no sequence or an item is no date; Failed when the library
// rejected a date text (the Python error is then set). Lives here because it needs the wrapper's
// type record of zep.Date.
inline Conversion DatesFromPython(PyObject* sequence, std::vector<zep::Date>& dates) {
    PyObject* items = PySequence_Fast(sequence, "");
    if (!items) {
        PyErr_Clear();
        return Conversion::NotADate;
    }
    auto outcome = Conversion::Converted;
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(items);
    dates.reserve(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i < count && outcome == Conversion::Converted; ++i) {
        PyObject* item = PySequence_Fast_GET_ITEM(items, i);
        void* pointer = nullptr;
        zep::Date date;
        if (SWIG_IsOK(SWIG_ConvertPtr(item, &pointer, SWIGTYPE_p_zep__Date, SWIG_POINTER_NO_NULL)))
            date = *static_cast<zep::Date*>(pointer);
        else
            outcome = DateFromPython(item, date);
        if (outcome == Conversion::Converted) dates.push_back(date);
    }
    Py_DECREF(items);
    return outcome;
}
}  // namespace zep::python
%}

%typemap(in) const zep::Date& (zep::Date converted) {
    if ($input == Py_None) {
        SWIG_exception_fail(SWIG_NullReferenceError, "invalid null reference " "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
    }
    {
        void* pointer = nullptr;
        if (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor, 0))) {
            $1 = reinterpret_cast<$ltype>(pointer);
        } else {
            const auto outcome = zep::python::DateFromPython($input, converted);
            if (outcome == zep::python::Conversion::Failed) SWIG_fail;
            if (outcome == zep::python::Conversion::NotADate) {
                SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
            }
            $1 = &converted;
        }
    }
}
// Dates given to an M class travel unparsed (DateInput.hpp): the class reads them in its guard.
namespace zep::python {
class DateInput;
}
%{
namespace zep::python {
inline std::optional<DateInput> AnyDateInput(PyObject* object) {
    void* pointer = nullptr;
    if (SWIG_IsOK(SWIG_ConvertPtr(object, &pointer, SWIGTYPE_p_zep__Date, SWIG_POINTER_NO_NULL)))
        return DateInput(*static_cast<zep::Date*>(pointer));
    return DateInputFromPython(object);
}
}  // namespace zep::python
%}
%typemap(doc, type="Date") const zep::python::DateInput& "$1_name: Date";
%typemap(doc, type="DateVector") const std::vector<zep::python::DateInput>& "$1_name: DateVector";
%typemap(in) const zep::python::DateInput& (std::optional<zep::python::DateInput> converted) {
    converted = zep::python::AnyDateInput($input);
    if (!converted) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
    }
    $1 = &*converted;
}
%typemap(in) const std::vector<zep::python::DateInput>& (std::vector<zep::python::DateInput> converted) {
    PyObject* items = PyUnicode_Check($input) ? nullptr : PySequence_Fast($input, "");
    if (items == nullptr) {
        PyErr_Clear();
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
    }
    bool allDates = true;
    for (Py_ssize_t i = 0; allDates && i < PySequence_Fast_GET_SIZE(items); ++i) {
        auto input = zep::python::AnyDateInput(PySequence_Fast_GET_ITEM(items, i));
        if (input) converted.push_back(std::move(*input));
        allDates = input.has_value();
    }
    Py_DECREF(items);
    if (!allDates) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""': every element must be a date");
    }
    $1 = &converted;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const zep::python::DateInput&, const zep::Date& {
    $1 = zep::python::LooksLikeDate($input) ||
         SWIG_CheckState(SWIG_ConvertPtr($input, 0, $descriptor(zep::Date*), SWIG_POINTER_NO_NULL));
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const std::vector<zep::python::DateInput>& {
    $1 = PySequence_Check($input) && !PyUnicode_Check($input);
}

namespace zep {
%ignore Date::Date(std::string_view);
%ignore Date::operator=;
%ignore Date::operator++;
%ignore Date::operator--;
%ignore Date::operator+;
%ignore Date::operator-;
%ignore operator<<;
%rename(__lt__) Period::operator<;
}

%feature("docstring") zep::Date
"A calendar date, stored as a spreadsheet-compatible serial day number.

Date() is the null date; Date(serial), Date(day, month, year), and Date(text) with any of
YYYY/MM/DD, YYYY-MM-DD, DD/MM/YYYY, DD-MM-YYYY, YYYYMMDD, DD-MM-YY, DD/MM/YY, DDMMYYYY,
DDMthYY, DDMMYY; a datetime.date is accepted too. Valid dates run 1901-01-01 to 2199-12-31.";
%feature("docstring") zep::Period
"A tenor: Period(length, unit), Period(text) such as '3M', '-1Y', 'O/N', 'SW', or
Period(frequency) for the coupon period of a regular frequency.";

%include "lum-time/Frequency.hpp"
%include "lum-time/Date.hpp"
%include "lum-time/Period.hpp"

%pythonprepend zep::Date::Date %{
    if len(args) == 1 and type(args[0]).__name__ == "datetime64":
        args = (Date._serials_of_datetime64(args[0]).item(),)
%}

%extend zep::Date {
    Date(const zep::Date& other) { return new zep::Date(other); }
    void _Increment() { ++*$self; }
    void _Decrement() { --*$self; }
    zep::Date __add__(std::int32_t days) const { return *$self + days; }
    zep::Date __add__(const zep::Period& period) const { return *$self + period; }
    zep::Date __radd__(std::int32_t days) const { return *$self + days; }
    std::int32_t __sub__(const zep::Date& other) const {
        return $self->SerialNumber() - other.SerialNumber();
    }
    zep::Date __sub__(std::int32_t days) const { return *$self - days; }
    zep::Date __sub__(const zep::Period& period) const {
        return $self->Advance(-period.Length(), period.Units());
    }
    std::string __str__() const { return $self->ToString(); }
    %pythoncode %{
        def __repr__(self):
            if self.IsNull():
                return "zep.Date()"
            return "zep.Date('%04d-%02d-%02d')" % (self.Year(), self.Month(), self.DayOfMonth())

        def __hash__(self):
            # Equal dates hash alike, and alike with the datetime.date they equal.
            return hash(0) if self.IsNull() else hash(self.to_date())

        def Increment(self) -> "Date":
            """Moves the date one day on, in place, and returns it, as the prefix ++ does."""
            self._Increment()
            return self

        def Decrement(self) -> "Date":
            """Moves the date one day back, in place, and returns it, as the prefix -- does."""
            self._Decrement()
            return self

        def _compare(self, other, test):
            if not isinstance(other, Date):
                try:
                    other = Date(other)
                except (TypeError, RuntimeError):
                    return NotImplemented
            return test(self.SerialNumber(), other.SerialNumber())

        def __eq__(self, other): return self._compare(other, int.__eq__)
        def __ne__(self, other): return self._compare(other, int.__ne__)
        def __lt__(self, other): return self._compare(other, int.__lt__)
        def __le__(self, other): return self._compare(other, int.__le__)
        def __gt__(self, other): return self._compare(other, int.__gt__)
        def __ge__(self, other): return self._compare(other, int.__ge__)

        def to_date(self) -> "datetime.date":
            """The date as a datetime.date; ValueError for the null date, which has none."""
            import datetime
            if self.IsNull():
                raise ValueError("the null date has no calendar date")
            return datetime.date(self.Year(), self.Month(), self.DayOfMonth())

        @classmethod
        def from_date(cls, value: "datetime.date") -> "Date":
            """The zep.Date of a datetime.date (the constructor takes one too)."""
            return cls(value)

        def to_datetime64(self) -> "numpy.datetime64":
            """The date as a numpy.datetime64 day; NaT for the null date."""
            import numpy
            if self.IsNull():
                return numpy.datetime64("NaT", "D")
            return numpy.datetime64(self.SerialNumber() - Date._EPOCH_SERIAL, "D")

        # numpy.datetime64 counts days from 1970-01-01, this serial number.
        _EPOCH_SERIAL = 25569

        @staticmethod
        def _serials_of_datetime64(values):
            import numpy
            days = numpy.asarray(values).astype("datetime64[D]")
            return numpy.where(numpy.isnat(days), 0, days.astype(numpy.int64) + Date._EPOCH_SERIAL)

        @staticmethod
        def from_datetime64(values: "numpy.typing.ArrayLike") -> "Date | list[Date]":
            """A zep.Date of a numpy.datetime64 scalar, or a list of them of an array of any
            datetime64 unit (cut to the day); NaT gives the null date."""
            import numpy
            serials = Date._serials_of_datetime64(values)
            if numpy.ndim(values) == 0:
                return Date(int(serials))
            return [Date(int(serial)) for serial in serials.ravel()]

        @staticmethod
        def datetime64_array(dates: "Sequence[Date | str | datetime.date]") -> "numpy.typing.NDArray[numpy.datetime64]":
            """A numpy datetime64[D] array of a sequence of dates (zep.Date, text or
            datetime.date); the null date gives NaT."""
            import numpy
            serials = numpy.fromiter(((d if isinstance(d, Date) else Date(d)).SerialNumber() for d in dates),
                                     dtype=numpy.int64)
            days = (serials - Date._EPOCH_SERIAL).astype("datetime64[D]")
            days[serials == 0] = numpy.datetime64("NaT")
            return days
    %}
}

%extend zep::Period {
    std::string __str__() const { return $self->Text(); }
    %pythoncode %{
        def __repr__(self):
            return "zep.Period('%s')" % self.Text()

        def __eq__(self, other):
            if not isinstance(other, Period):
                return NotImplemented
            return (self.Length(), self.Units()) == (other.Length(), other.Units())

        def __hash__(self):
            return hash((self.Length(), self.Units()))

        # Ordering as the library's operator < decides it: approximate across units (a month
        # is 30 days), and undecidable pairs raise.
        def __le__(self, other):
            return self == other or self < other

        def __gt__(self, other):
            if not isinstance(other, Period):
                return NotImplemented
            return other < self

        def __ge__(self, other):
            return self == other or self > other
    %}
}
