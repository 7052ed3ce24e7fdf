// The process-wide limit on the host reductions' vector code, from TRESK_SIMD at load time.
#include "preprocessing/simd.hpp"

#include <cstdlib>
#include <cstring>

namespace tresk {
namespace {

SimdLevel FromEnvironment() {
  const char* value = std::getenv("TRESK_SIMD");
  if (value != nullptr && std::strcmp(value, "scalar") == 0)
    return kSimdScalar;
  if (value != nullptr && std::strcmp(value, "sse") == 0)
    return kSimdSse;
  return kSimdAvx;
}

SimdLevel limit = FromEnvironment();

} // namespace

SimdLevel SimdLimit() {
  return limit;
}

void SetSimdLimit(SimdLevel level) {
  limit = level;
}

} // namespace tresk
