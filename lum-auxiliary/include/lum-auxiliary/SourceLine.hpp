// Where a call was written, taken as a default argument so that an error raised on the callee's
// behalf names the caller's file and line. The compiler built-ins behind it exist in every
// compiler the library is built with; std::source_location does not (clang 14 on libstdc++ 12,
// the fuzzing build, lacks it).
#pragma once

#include <cstdint>

namespace zep {

struct SourceLine {
    const char* file;
    std::uint32_t line;

    static constexpr SourceLine Current(const char* file = __builtin_FILE(),
                                        std::uint32_t line = __builtin_LINE()) {
        return {file, line};
    }
};

}  // namespace zep
