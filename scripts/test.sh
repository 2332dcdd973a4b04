#!/usr/bin/env bash
# Sets all up, then checks everything; the first failure ends it.
#
#   scripts/test.sh            all of it, as continuous integration does
#   scripts/test.sh --quick    format, build and tests with g++ alone, for daily work
#
# --quick leaves out the tests with the label `long`: faults, hostile input, determinism, load, the
# attack on filters, and random comparisons with the plain engine. On success the last that is printed
# is how long each stage took. A compiler cache (ccache) is used where one is installed.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"

cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
jobs=$(nproc)
readonly jobs

current_stage=''
stage_began=0
stage_times=''

# stage TEXT: says what comes next, and when it began.
stage() {
  end_stage
  current_stage=$1
  stage_began=$SECONDS
  printf '\n== [%02d:%02d] %s\n' $((SECONDS / 60)) $((SECONDS % 60)) "$1"
}

# Notes how long the current stage took.
end_stage() {
  local text
  [ -n "$current_stage" ] || return 0
  printf -v text '%5d s  %s\n' $((SECONDS - stage_began)) "$current_stage"
  stage_times+=$text
}

print_stage_times() {
  end_stage
  printf '\n== Stages, %d s in all\n%s' "$SECONDS" "$stage_times"
}

say_where_it_ended() { # STATUS
  [ "$1" -eq 0 ] || printf '\n== Failed: %s\n' "$current_stage"
}

check_format() {
  stage "Format of sources (clang-format)"
  find bench examples include python src tests tools \( -name '*.cpp' -o -name '*.h' \) -print0 | sort --zero-terminated |
    xargs --null clang-format --dry-run -Werror
}

configure() { # PRESET
  local fresh=()
  stage "Configuring '$1'"
  # A folder of another generator cannot be brought up to date.
  if [ "$1" != release ] && [ -f "build-$1/Makefile" ]; then fresh=(--fresh); fi
  cmake --preset "$1" "${fresh[@]}"
  [ ${#fresh[@]} -eq 0 ] || rm -- "build-$1/Makefile"
}

build() { # PRESET [WORD]...
  stage "Building '$1'${3:+: ${*:3}}"
  cmake --build --preset "$1" --parallel "$jobs" "${@:2}"
}

run_tests() { # PRESET [WORD]...
  stage "Tests of '$1'"
  ctest --preset "$1" --parallel "$jobs" "${@:2}"
}

# What clang-tidy finds in the file that it is given, and not in what that includes: paths through
# functions, and what is of no use.
readonly own_checks='-*,clang-analyzer-*,clang-diagnostic-*,misc-unused-*-decls,bugprone-suspicious-include,readability-redundant-preprocessor'
# All other checks look at declarations and statements, most of them in headers of the standard
# library; files of a library that the preset 'clang' compiles at once share that work.
readonly shared_checks='-clang-analyzer-*,-bugprone-suspicious-include'

# lint_file FOLDER CHECKS FILE: FOLDER tells how FILE is compiled.
# Warnings of system headers are counted even when they are hidden, so the output of a clean file
# is dropped. A file that is compiled for each kind of processor is looked at for one of them: the
# lines are the same for all.
lint_file() {
  local output
  output=$(clang-tidy -p "$1" --quiet --checks="$2" --extra-arg=-DHWY_COMPILE_ONLY_STATIC "$3" 2>&1) || {
    printf '%s\n' "$output"
    return 1
  }
}
export -f lint_file

# The files that the preset 'clang' compiles for src, tools and bench: joined ones and single ones.
list_joined_files() {
  sed --quiet 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' build-clang/compile_commands.json | sort --unique |
    grep --extended-regexp "^$PWD/((src|tools|bench)/|build-clang/(src|tools|bench)/.*/Unity/)"
}

lint() {
  stage "Lint of src, tools, bench and python (clang-tidy)"
  # The longest runs first, so that none is left for the end: the search of paths takes most of the
  # time, and the longer a file, the longer it takes.
  # shellcheck disable=SC2016  # the $1 is for the inner shell
  {
    find src tools bench python -name '*.cpp' -printf '%s %p\n' | sort --numeric-sort --reverse |
      cut --delimiter=' ' --fields=2- |
      awk -v checks="$own_checks" '{ print "build-dev"; print checks; print }'
    list_joined_files | awk -v checks="$shared_checks" '{ print "build-clang"; print checks; print }'
  } | xargs --delimiter='\n' --max-args=3 --max-procs="$jobs" bash -c 'lint_file "$@"' lint_file

  stage "Lint of src and tools (cppcheck)"
  cppcheck --std=c++20 --language=c++ --enable=warning,style,performance,portability --quiet \
    --inline-suppr --suppressions-list=.cppcheck-suppressions --error-exitcode=1 \
    -I src -I include -I . -DHWY_ONCE=1 -DHWY_TARGET=64 src tools
}

check_package() {
  stage "Debian package (cpack, lintian)"
  rm -rf build/package
  cpack --config build/CPackConfig.cmake -B build/package
  lintian --allow-root --fail-on error,warning build/package/*.deb
}

main() {
  local is_quick=false
  case "${1-}" in
    '') ;;
    --quick) is_quick=true ;;
    *) refuse_arguments ;;
  esac
  [ $# -le 1 ] || refuse_arguments

  trap 'say_where_it_ended $?' EXIT
  stage "Packages"
  scripts/setup.sh test
  if command -v ccache >/dev/null; then
    # The headers that are compiled once are as good as their text to it.
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS-pch_defines,time_macros}
  fi
  check_format
  configure dev
  if [ "$is_quick" = true ]; then
    build dev --target quorix_quick_tests
    run_tests dev --label-exclude long
    print_stage_times
    return
  fi

  configure clang
  lint
  configure release
  build release
  stage "Hardening of the release program"
  tests/architecture/check_hardening.sh build/quorix
  check_package
  build dev --target all_verify_interface_header_sets all
  run_tests dev
  build clang --target quorix_unit_tests
  run_tests clang --label-regex unit
  configure asan-ubsan
  build asan-ubsan
  run_tests asan-ubsan
  print_stage_times
}

main "$@"
