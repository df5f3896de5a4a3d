#include "DoubleBuffer.hpp"

#include <cstring>

namespace zep::python {

DoubleBuffer::~DoubleBuffer() {
    if (m_held) PyBuffer_Release(&m_view);
}

bool DoubleBuffer::Acquire(PyObject* object, bool writable) {
    const int flags = PyBUF_C_CONTIGUOUS | PyBUF_FORMAT | (writable ? PyBUF_WRITABLE : 0);
    if (PyObject_GetBuffer(object, &m_view, flags) != 0) {
        PyErr_Clear();
        PyErr_SetString(PyExc_TypeError, writable ? "expected a writable contiguous float64 array"
                                                  : "expected a contiguous float64 array");
        return false;
    }
    m_held = true;
    if (m_view.ndim != 1 || m_view.itemsize != sizeof(double) || m_view.format == nullptr ||
        std::strcmp(m_view.format, "d") != 0) {
        PyErr_SetString(PyExc_TypeError, "expected a one-dimensional float64 array");
        return false;
    }
    return true;
}

std::span<double> DoubleBuffer::Span() const {
    return {static_cast<double*>(m_view.buf), static_cast<std::size_t>(m_view.shape[0])};
}

}  // namespace zep::python
