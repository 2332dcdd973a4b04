#!/usr/bin/env bash
# Runs the program on processors that this machine may not have, under the user-mode emulator QEMU:
#
#   scripts/check_processors.sh [x86_64 | aarch64]...
#
# x86_64 runs the release program on the oldest processor of that name, on one with SSE4 and on one with AVX2,
# and the unit tests of the search on the first two. aarch64 builds programs and unit tests with Debian's cross
# compiler in a bare Debian 12, and runs them there. The reports of the examples must be the same everywhere.
# Without a word both are done. It needs what `scripts/setup.sh test` and `scripts/setup.sh package` install;
# aarch64 needs root.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
for word in "$@"; do
  [[ $word =~ ^(x86_64|aarch64)$ ]] || refuse_arguments
done
[ $# -gt 0 ] || set -- x86_64 aarch64

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
source scripts/debian_root.sh
jobs=$(nproc)
scratch=$(mktemp --directory)
readonly jobs scratch
trap 'rm -rf -- "$scratch"' EXIT

# check_examples WORD...: a script of the examples, with a program that the words run, makes what is kept.
check_examples() {
  local made
  made=$(mktemp --directory --tmpdir="$scratch")
  {
    echo '#!/bin/sh'
    printf 'exec'
    printf ' %q' "$@"
    # shellcheck disable=SC2016  # for the script that is written
    echo ' "$@"'
  } >"$made/program"
  chmod +x "$made/program"
  mkdir "$made/zoo"
  examples/zoo/make_zoo.py "$made/program" "$made/zoo"
  diff --recursive --exclude=make_zoo.py examples/zoo "$made/zoo"
  echo "The examples have the same reports: $*"
}

check_x86_64() {
  local processor program
  [ -f build/CMakeCache.txt ] || cmake --preset release >"$scratch/log"
  cmake --build --preset release --target quorix --parallel "$jobs" >>"$scratch/log"
  [ -f build-dev/CMakeCache.txt ] || cmake --preset dev >>"$scratch/log"
  cmake --build --preset dev --target quorix_search_test --parallel "$jobs" >>"$scratch/log"
  # QEMU's own processor is the baseline: SSE2, and hardly more.
  for processor in qemu64 Nehalem Haswell; do
    check_examples qemu-x86_64 -cpu "$processor" "$PWD/build/quorix"
  done
  program=$(find build-dev/tests/unit -name quorix_search_test -type f)
  # How much the filter works is only pinned for processors with vectors that it has code for.
  qemu-x86_64 -cpu qemu64 "$program" --gtest_brief=1 --gtest_filter=-SearchWork.*
  qemu-x86_64 -cpu Nehalem "$program" --gtest_brief=1
}

readonly arm_packages="g++-aarch64-linux-gnu cmake make ninja-build qemu-user-static python3 libtclap-dev
  libcli11-dev nlohmann-json3-dev libhwy-dev:arm64 zlib1g-dev:arm64 libgtest-dev:arm64 librapidcheck-dev:arm64"

check_aarch64() {
  require_root
  # The system and the build in it stay for the next run.
  local root=$PWD/build-root/aarch64
  if [ ! -f "$root/complete" ]; then
    rm -rf -- "$root"
    make_root "$root"
    echo "== Cross compiler and libraries for arm64"
    in_root "$root" root sh -ec "dpkg --add-architecture arm64; apt-get update
      apt-get install --yes --no-install-recommends $(tr '\n' ' ' <<<"$arm_packages")" >"$scratch/log" 2>&1 ||
      { tail -n 20 -- "$scratch/log" && exit 1; }
    : >"$root/complete"
  fi
  mkdir --parents -- "$root/source"
  # What git has, as it is in the folder now.
  git ls-files -z | tar --create --null --files-from=- | tar --extract --directory="$root/source"
  echo "== Programs and unit tests"
  in_root "$root" root sh -ec "cd /source
    cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUORIX_BUILD_TOOLS=ON -DQUORIX_BUILD_PAGE=OFF \
      -DQUORIX_BUILD_TESTS=ON -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake
    cmake --build build --parallel $jobs --target quorix quorix-tools quorix_unit_tests" >"$scratch/log" 2>&1 ||
    { tail -n 40 -- "$scratch/log" && exit 1; }
  # An emulated process cannot be limited in memory, so that one test would take all that the machine has.
  in_root "$root" root sh -ec "cd /source
    GTEST_FILTER=-FailedRun.throws_when_there_is_no_memory_for_a_record \
      ctest --test-dir build -L unit --output-on-failure --parallel $jobs"
  # The programs run here with the libraries of that system.
  check_examples qemu-aarch64 -L "$root" -E LD_LIBRARY_PATH=/usr/lib/aarch64-linux-gnu "$root/source/build/quorix"
}

for word in "$@"; do "check_$word"; done
