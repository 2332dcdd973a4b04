#!/usr/bin/env bash
# Sets all up, then checks everything, from the cheap to the dear; the first failure ends it.
#
#   scripts/test.sh            all of it, as continuous integration does
#   scripts/test.sh --quick    format, build and tests with g++ alone, for daily work
#
# On success the summary of ctest is the last that it prints.
set -euo pipefail

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
jobs=$(nproc)
readonly jobs

current_stage=''

# stage TEXT: says what comes next, and when it began.
stage() {
  current_stage=$1
  printf '\n== [%02d:%02d] %s\n' $((SECONDS / 60)) $((SECONDS % 60)) "$1"
}

say_where_it_ended() { # STATUS
  [ "$1" -eq 0 ] || printf '\n== Failed: %s\n' "$current_stage"
}

check_format() {
  stage "Format of src, tests and bench (clang-format)"
  find src tests bench \( -name '*.cpp' -o -name '*.h' \) -print0 | sort --zero-terminated |
    xargs --null clang-format --dry-run -Werror
}

configure() { # PRESET
  stage "Configuring '$1'"
  cmake --preset "$1"
}

build() { # PRESET [WORD]...
  stage "Building '$1'${3:+: $3}"
  cmake --build --preset "$1" --parallel "$jobs" "${@:2}"
}

run_tests() { # PRESET [WORD]...
  stage "Tests of '$1'"
  ctest --preset "$1" --parallel "$jobs" "${@:2}"
}

# Warnings of system headers are counted even when they are hidden, so the output of a clean file
# is dropped.
lint_file() { # FILE
  local output
  output=$(clang-tidy -p build-dev --quiet "$1" 2>&1) || {
    printf '%s\n' "$output"
    return 1
  }
}
export -f lint_file

lint() {
  stage "Lint of src and bench (clang-tidy)"
  # shellcheck disable=SC2016  # the $1 is for the inner shell
  find src bench -name '*.cpp' -print0 | sort --zero-terminated |
    xargs --null --max-args=1 --max-procs="$jobs" bash -c 'lint_file "$1"' lint_file

  stage "Lint of src (cppcheck)"
  cppcheck --std=c++20 --language=c++ --enable=warning,style,performance,portability --quiet \
    --inline-suppr --suppressions-list=.cppcheck-suppressions --error-exitcode=1 \
    -I src -DHWY_ONCE=1 -DHWY_TARGET=64 src
}

main() {
  local is_quick=false
  case "${1-}" in
    '') ;;
    --quick) is_quick=true ;;
    *)
      printf 'usage: scripts/test.sh [--quick]\n' >&2
      exit 2
      ;;
  esac

  trap 'say_where_it_ended $?' EXIT
  stage "Packages"
  scripts/setup.sh test
  check_format
  configure dev
  if [ "$is_quick" = true ]; then
    build dev
    run_tests dev
    return
  fi

  lint
  configure release
  build release
  stage "Hardening of the release program"
  tests/architecture/check_hardening.sh build/quorix
  build dev --target all_verify_interface_header_sets
  build dev
  run_tests dev
  configure clang
  build clang
  run_tests clang --label-regex unit
  configure asan-ubsan
  build asan-ubsan
  run_tests asan-ubsan
}

main "$@"
