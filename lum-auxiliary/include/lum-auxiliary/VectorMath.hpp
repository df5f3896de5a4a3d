// Elementwise exp, log and square root over arrays, four lanes at a time through glibc's vector math library
// where the processor has AVX2 (within 4 ulp of the scalar functions), else one by one.
// Simulations call these on whole paths so that the transcendental work is batched.
#pragma once

#include <cstddef>

namespace zep {

void ExpInPlace(double* values, std::size_t count);
void LogInPlace(double* values, std::size_t count);
// Correctly rounded, as the scalar square root: only the speed differs.
void SqrtInPlace(double* values, std::size_t count);

}  // namespace zep
