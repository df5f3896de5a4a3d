// What the thread that starts a long simulation does between chunks of paths: it asks whether
// the user wants the run stopped (Ctrl-C in an interactive session) and reports progress. The
// Python binding installs one observer for the process; the core runs without one.
#pragma once

#include <cstdint>
#include <exception>

namespace zep {

class RunObserver {
public:
    virtual ~RunObserver() = default;
    virtual void Started(std::uint64_t totalPaths) noexcept = 0;
    // Asked from the thread that started the run, never from a worker. True stops the run:
    // the workers finish their current chunk, are joined, and the run throws RunInterrupted.
    virtual bool StopRequested() = 0;
    virtual void Progress(std::uint64_t donePaths, std::uint64_t totalPaths) = 0;
    // Called once the run has ended, however it ended.
    virtual void Finished() noexcept = 0;
};

// Process-wide; null (the default) for none. The observer must outlive the runs it watches.
void SetRunObserver(RunObserver* observer);
RunObserver* CurrentRunObserver();

// A run stopped at the observer's request. Deliberately not a zep::Error: nothing failed, and
// the binding turns it into the interrupt the observer saw rather than an error message.
class RunInterrupted : public std::exception {
public:
    const char* what() const noexcept override { return "Monte Carlo run interrupted"; }
};

}  // namespace zep
