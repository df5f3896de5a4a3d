// Support aid: raises each failure form that library code uses, so that the module's error
// translation and the M-class prefix can be checked from Python on any installation.
#pragma once

#include <string>

#include "MWrapper.hpp"

namespace zep::python {

// kind: "text", "invalid_argument", "out_of_range", "runtime_error", "exception", "error",
// "unknown"; anything else is rejected as an invalid argument.
void RaiseLibraryFailure(const std::string& kind, const std::string& message);

struct FailureSource {
    std::string kind;
    std::string message;
};

class MFrameProbe : public MWrapper<FailureSource> {
public:
    MFrameProbe() = default;  // an object without a library object: every call says so
    MFrameProbe(const std::string& kind, const std::string& message);
    void Fail() const;
};

}  // namespace zep::python
