#include "RunProgress.hpp"

#include <unistd.h>

#include <chrono>
#include <string>

#include "lum-monte-carlo/RunObserver.hpp"

namespace zep::python {

namespace {

using Clock = std::chrono::steady_clock;

class PythonRunObserver final : public RunObserver {
public:
    void Started(std::uint64_t) noexcept override {
        m_start = Clock::now();
        m_lastReport = m_start;
        m_barShown = false;
        m_callbackFailed = false;
    }

    bool StopRequested() override {
        // A raised KeyboardInterrupt (or any handler's exception) stays pending for the caller.
        return m_callbackFailed || PyErr_CheckSignals() != 0;
    }

    void Progress(std::uint64_t done, std::uint64_t total) override {
        const Clock::time_point now = Clock::now();
        if (now - m_start < std::chrono::seconds(1) || now - m_lastReport < std::chrono::milliseconds(100)) return;
        m_lastReport = now;
        if (m_callable) {
            PyObject* answer = PyObject_CallFunction(m_callable, "KK", static_cast<unsigned long long>(done),
                                                     static_cast<unsigned long long>(total));
            if (answer == nullptr) m_callbackFailed = true;
            Py_XDECREF(answer);
        } else if (BarWanted()) {
            DrawBar(done, total);
        }
    }

    void Finished() noexcept override {
        if (!m_barShown) return;
        // The interrupt or error of the run stays pending across the write.
        PyObject *type, *value, *traceback;
        PyErr_Fetch(&type, &value, &traceback);
        PySys_WriteStderr("\n");
        PyErr_Restore(type, value, traceback);
        m_barShown = false;
    }

    // Keeps a reference to the callable (or none).
    void SetMode(int mode, PyObject* callable) {
        Py_XINCREF(callable);
        Py_XSETREF(m_callable, callable);
        m_mode = mode;
    }

    static constexpr int kInteractive = 0, kOn = 1, kOff = 2, kCallable = 3;

private:
    bool BarWanted() const {
        if (m_mode == kOn) return true;
        if (m_mode == kOff) return false;
        return PySys_GetObject("ps1") != nullptr && isatty(STDERR_FILENO);
    }

    void DrawBar(std::uint64_t done, std::uint64_t total) {
        constexpr int kWidth = 30;
        const double share = static_cast<double>(done) / static_cast<double>(total);
        const int filled = static_cast<int>(share * kWidth);
        const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, ' ');
        PySys_WriteStderr("\rMonte Carlo [%s] %3d%%  %llu / %llu paths", bar.c_str(), static_cast<int>(share * 100),
                          static_cast<unsigned long long>(done), static_cast<unsigned long long>(total));
        m_barShown = true;
    }

    int m_mode = kInteractive;
    PyObject* m_callable = nullptr;
    Clock::time_point m_start{};
    Clock::time_point m_lastReport{};
    bool m_barShown = false;
    bool m_callbackFailed = false;
};

// Lives as long as the process: runs may be under way while the interpreter shuts down.
PythonRunObserver& Observer() {
    static PythonRunObserver* observer = new PythonRunObserver();
    return *observer;
}

}  // namespace

void InstallRunObserver() { SetRunObserver(&Observer()); }

PyObject* SetProgress(PyObject* setting) {
    if (setting == Py_None) {
        Observer().SetMode(PythonRunObserver::kInteractive, nullptr);
    } else if (PyBool_Check(setting)) {
        Observer().SetMode(setting == Py_True ? PythonRunObserver::kOn : PythonRunObserver::kOff, nullptr);
    } else if (PyCallable_Check(setting)) {
        Observer().SetMode(PythonRunObserver::kCallable, setting);
    } else {
        PyErr_SetString(PyExc_TypeError, "SetProgress expects True, False, None or a callable receiving (done, total)");
        return nullptr;
    }
    Py_RETURN_NONE;
}

}  // namespace zep::python
