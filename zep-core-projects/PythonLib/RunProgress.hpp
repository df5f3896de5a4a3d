// Ctrl-C and progress for long Monte Carlo runs started from Python. The simulation frame asks
// this observer between chunks of paths, from the thread that called into zep and holds the
// interpreter lock, so it may run Python code: the signal handlers and a progress callable.
#pragma once

#include <Python.h>

namespace zep::python {

// Installed once, when the module starts.
void InstallRunObserver();

// True: a progress bar on standard error; False: none; None: the bar in interactive sessions
// only (the default); a callable: called with (done, total) paths. The bar and the callable
// start after a second of running and come at most ten times a second. Returns None, or NULL
// with TypeError set for anything else.
PyObject* SetProgress(PyObject* setting);

}  // namespace zep::python
