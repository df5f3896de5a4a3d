// An environment variable set for one test's scope and removed again at its end, for the run
// settings the library reads from the environment (threads, time grid, paths).
#pragma once

#include <cstdlib>

namespace zep::testing {

class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : m_name(name) { setenv(name, value, 1); }
    ~ScopedEnv() { unsetenv(m_name); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* m_name;
};

}  // namespace zep::testing
