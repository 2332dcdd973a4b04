#!/usr/bin/env bash
# Builds and installs into PREFIX, with the compiler and the flags of the environment (CXX, CXXFLAGS,
# LDFLAGS, CMAKE_ARGS). The programs choose the instructions of the processor when they run, so no flag
# names one.
set -euo pipefail

# shellcheck disable=SC2086  # CMAKE_ARGS is a list of words
cmake -S . -B build-conda ${CMAKE_ARGS-} \
  -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$PREFIX" \
  -DQUORIX_BUILD_TOOLS=ON \
  -DQUORIX_BUILD_PAGE=ON
cmake --build build-conda --parallel "${CPU_COUNT-1}"
cmake --install build-conda
