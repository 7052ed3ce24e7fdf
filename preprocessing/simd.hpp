// The widest vector code the host reductions may use. By default the widest the CPU runs; the
// environment variable TRESK_SIMD=scalar or TRESK_SIMD=sse, read when the library loads, or
// SetSimdLimit, narrows it, so that the scalar and SSE paths are tested and compared on machines
// whose CPU has AVX2. Every path gives bit-identical results.
#pragma once

namespace tresk {

enum SimdLevel : int { kSimdScalar = 0, kSimdSse = 1, kSimdAvx = 2 };

// The current limit. Read by the reductions once per call; not meant to change during one.
SimdLevel SimdLimit();
// Sets the limit for later calls (tests and benchmarks; not thread-safe against running calls).
void SetSimdLimit(SimdLevel level);

} // namespace tresk
