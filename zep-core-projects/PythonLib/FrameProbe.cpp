#include "FrameProbe.hpp"

#include <stdexcept>

#include <boost/make_shared.hpp>

namespace zep::python {

namespace {
struct UnknownFailure {};
}  // namespace

void RaiseLibraryFailure(const std::string& kind, const std::string& message) {
    static std::string bareText;  // a bare-text failure points at storage that outlives the throw
    if (kind == "text") {
        bareText = message;
        throw bareText.c_str();
    }
    if (kind == "invalid_argument") throw std::invalid_argument(message);
    if (kind == "out_of_range") throw std::out_of_range(message);
    if (kind == "runtime_error") throw std::runtime_error(message);
    if (kind == "exception") throw std::bad_alloc();
    if (kind == "error") ZEP_FAIL(message);
    if (kind == "unknown") throw UnknownFailure{};
    throw std::invalid_argument("'" + kind + "' is not a failure kind");
}

MFrameProbe::MFrameProbe(const std::string& kind, const std::string& message)
    : MWrapper(boost::make_shared<FailureSource>(FailureSource{kind, message})) {}

void MFrameProbe::Fail() const {
    Guarded("MFrameProbe::Fail", [&] {
        const auto& source = Object("zep::python::MFrameProbe::Fail");
        RaiseLibraryFailure(source.kind, source.message);
    });
}

}  // namespace zep::python
