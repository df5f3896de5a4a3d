// A one-dimensional float64 buffer of a Python object (a NumPy array), held for the length of
// one call so that library code can read or fill it in place as a std::span.
#pragma once

#include <Python.h>

#include <span>

namespace zep::python {

class DoubleBuffer {
public:
    DoubleBuffer() = default;
    DoubleBuffer(const DoubleBuffer&) = delete;
    DoubleBuffer& operator=(const DoubleBuffer&) = delete;
    ~DoubleBuffer();

    // False, with a Python TypeError set, unless the object exposes a contiguous one-dimensional
    // float64 buffer (writable when asked).
    bool Acquire(PyObject* object, bool writable);
    std::span<double> Span() const;

private:
    Py_buffer m_view{};
    bool m_held = false;
};

}  // namespace zep::python
