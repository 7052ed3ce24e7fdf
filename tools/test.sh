#!/usr/bin/env bash
# Builds libtresk and runs the whole test suite: the main build (with the GPU unit when nvcc
# is present, warnings as errors) with the Python module's tests, the AddressSanitizer + UBSan
# build of the CPU suite and a short fuzz run of the chain reader.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
JOBS="$(nproc 2>/dev/null || echo 2)"

# Formatting is part of the build contract: every C++/CUDA file as clang-format leaves it.
if command -v clang-format >/dev/null; then
  git ls-files '*.cpp' '*.hpp' '*.cu' | xargs clang-format --dry-run --Werror
fi

cmake --preset ci
cmake --build --preset ci -j "$JOBS"
ctest --preset ci -j "$JOBS" --label-exclude python
# The Python module's tests (pytest under Debian's /usr/bin/python3); none found is a failure.
ctest --preset ci -L python --no-tests=error

if [ "${TRESK_SKIP_ASAN:-0}" != "1" ]; then
  cmake --preset asan
  cmake --build --preset asan -j "$JOBS"
  ctest --preset asan -j "$JOBS"
fi

# A short, repeatable fuzz run of the chain reader (clang, libFuzzer, ASan + UBSan).
if [ "${TRESK_SKIP_FUZZ:-0}" != "1" ]; then
  tools/fuzz.sh "${TRESK_FUZZ_SECONDS:-60}"
fi
