// The GPU pricer of scripted products. This build has none: the class reports that, and
// asking it to price raises.
#pragma once

namespace zep {

class CudaMonteCarloPricer {
public:
    static bool IsAvailable() { return false; }
    // Raises "CudaMonteCarloPricer: GPU scripting not available in this build. ..."
    [[noreturn]] static void Price();
};

}  // namespace zep
