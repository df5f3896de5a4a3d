#include "CurveArrays.hpp"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace zep::python {

namespace {

// A contiguous buffer of one element type, released on scope exit.
class TypedBuffer {
public:
    TypedBuffer(PyObject* object, char format, Py_ssize_t itemSize, bool writable) {
        const int flags = PyBUF_C_CONTIGUOUS | PyBUF_FORMAT | (writable ? PyBUF_WRITABLE : 0);
        if (PyObject_GetBuffer(object, &m_view, flags) != 0) {
            PyErr_Clear();
            throw std::invalid_argument(std::string("expected a contiguous") + (writable ? " writable" : "") +
                                        " array of '" + format + "' values");
        }
        const char* actual = m_view.format ? m_view.format : "B";
        if (*actual == '=' || *actual == '<' || *actual == '@') ++actual;
        if (m_view.itemsize != itemSize || actual[0] != format || actual[1] != '\0') {
            PyBuffer_Release(&m_view);
            throw std::invalid_argument(std::string("expected an array of '") + format + "' values, got '" +
                                        (m_view.format ? m_view.format : "B") + "'");
        }
    }
    ~TypedBuffer() { PyBuffer_Release(&m_view); }
    TypedBuffer(const TypedBuffer&) = delete;
    TypedBuffer& operator=(const TypedBuffer&) = delete;

    template <class T>
    T* Data() const { return static_cast<T*>(m_view.buf); }
    std::size_t Count() const { return static_cast<std::size_t>(m_view.len / m_view.itemsize); }

private:
    Py_buffer m_view{};
};

void RequireSameCount(const TypedBuffer& in, const TypedBuffer& out) {
    if (in.Count() != out.Count())
        throw std::invalid_argument("output holds " + std::to_string(out.Count()) + " values for " +
                                    std::to_string(in.Count()) + " points");
}

}  // namespace

void FillDiscountFactorsAtTimes(const zep::YieldCurve& curve, PyObject* times, PyObject* out) {
    const TypedBuffer in(times, 'd', sizeof(double), false);
    const TypedBuffer result(out, 'd', sizeof(double), true);
    RequireSameCount(in, result);
    curve.DiscountFactorArray(in.Data<double>(), result.Data<double>(), in.Count());
}

void FillDiscountFactorsAtSerials(const zep::YieldCurve& curve, PyObject* serials, PyObject* out) {
    const TypedBuffer in(serials, 'i', sizeof(std::int32_t), false);
    const TypedBuffer result(out, 'd', sizeof(double), true);
    RequireSameCount(in, result);
    const std::int32_t* serial = in.Data<std::int32_t>();
    double* factor = result.Data<double>();
    for (std::size_t i = 0; i < in.Count(); ++i) factor[i] = curve.DiscountFactor(zep::Date(serial[i]));
}

}  // namespace zep::python
