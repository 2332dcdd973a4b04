#!/usr/bin/env bash
# Installs the library into a folder of its own, builds the example against it as a stranger would,
# by find_package and by pkg-config, and runs it.
#
#   installed_test.sh BUILD_FOLDER COMPONENT EXAMPLE_FOLDER COMPILER VERSION
set -euo pipefail

[ $# -eq 5 ] ||
  { echo 'usage: installed_test.sh BUILD_FOLDER COMPONENT EXAMPLE_FOLDER COMPILER VERSION' >&2 && exit 2; }
build_folder=$1 component=$2 example_folder=$3 compiler=$4 version=$5
readonly build_folder component example_folder compiler version
scratch=$(mktemp --directory)
trap 'rm -rf -- "$scratch"' EXIT
# The name of a folder may hold blanks, and an installation may be moved.
cmake --install "$build_folder" --prefix "$scratch/first place" --component "$component" >/dev/null
mv -- "$scratch/first place" "$scratch/moved"
readonly prefix=$scratch/moved

fail() {
  printf '%s: %s\n' "$component" "$1"
  exit 1
}

# check PROGRAM: lists known repeats, and an error as a message and a status.
check() {
  local found status=0
  found=$("$1" TTACACACACACGG '' GATTACAGATTACAGATTAC)
  [ "$found" = $'0 2 12 AC 8 100.0\n2 0 20 GATTACA 13 100.0' ] || fail "$1 lists: $found"
  found=$("$1" ACGT-ACGT 2>&1) || status=$?
  [ "$status" -eq 1 ] || fail "$1 ends with status $status"
  [ "$found" = "list_repeats: The text has no base at position 4, but '-'." ] || fail "$1 says: $found"
}

# The header stands alone, also for a strict compiler, from C++17 on.
for standard in c++17 c++20; do
  "$compiler" -std=$standard -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only \
    -x c++ -I "$prefix/include" - <<<'#include <quorix/quorix.h>'
done

configure() { # FOLDER [WORD]...
  cmake -S "$example_folder" -B "$scratch/$1" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_PREFIX_PATH="$prefix" "${@:2}" >"$scratch/$1.log" 2>&1
}
configure by_cmake || { cat -- "$scratch/by_cmake.log" && fail 'find_package finds nothing'; }
cmake --build "$scratch/by_cmake" >"$scratch/build.log" || { cat -- "$scratch/build.log" && exit 1; }
check "$scratch/by_cmake/list_repeats"

# A program that was written for another major version must not get this one.
cp -R -- "$example_folder" "$scratch/newer"
sed --in-place "s/Quorix 3.3 /Quorix $((${version%%.*} + 1)).0 /" "$scratch/newer/CMakeLists.txt"
if cmake -S "$scratch/newer" -B "$scratch/newer/build" -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/newer.log" 2>&1; then
  fail 'find_package takes another major version'
fi
grep --quiet "version: $version" "$scratch/newer.log" || { cat -- "$scratch/newer.log" && exit 1; }

PKG_CONFIG_PATH=$(dirname -- "$(find "$prefix" -name quorix.pc)")
library_folder=${PKG_CONFIG_PATH%/pkgconfig}
export PKG_CONFIG_PATH
[ "$(pkg-config --modversion quorix)" = "$version" ] || fail 'pkg-config tells another version'
# Words of pkg-config are quoted for a shell.
eval "flags=($(pkg-config --cflags --libs quorix))"
# shellcheck disable=SC2154  # set by eval
"$compiler" -std=c++17 "$example_folder/list_repeats.cpp" "${flags[@]}" -o "$scratch/by_pkg_config"
LD_LIBRARY_PATH=$library_folder check "$scratch/by_pkg_config"

shared=$library_folder/libquorix.so.$version
if [ ! -e "$shared" ]; then
  [ -e "$library_folder/libquorix.a" ] || fail 'no library is installed'
  exit 0
fi
readelf --dynamic "$shared" | grep --quiet "soname: \[libquorix.so.${version%%.*}\]" ||
  fail 'the library has another soname'
# All names that others can see are of the public header, and they are versioned.
names=$(nm --dynamic --defined-only --demangle "$shared" | cut --delimiter=' ' --fields=3-)
others=$(grep --invert-match --extended-regexp \
  "^((typeinfo|typeinfo name|vtable) for )?quorix::v${version%%.*}::.*@@QUORIX_${version%%.*}$|^QUORIX_${version%%.*}" \
  <<<"$names") || true
[ -z "$others" ] || fail "the library shows more than its header: $others"
# Programs that are installed call these functions: to add one is a minor change, and to lose or change
# one is a major change.
functions=$(nm --dynamic --defined-only --demangle "$shared" | awk '$2 == "T"' |
  cut --delimiter=' ' --fields=3- | sed 's/@@.*//' | LC_ALL=C sort --unique)
diff "${BASH_SOURCE[0]%/*}/exported_functions.txt" - <<<"$functions" ||
  fail 'the library shows other functions'
# A second libquorix has to be linkable into a process that has its own zlib or engine.
if readelf --dynamic "$shared" | grep --quiet 'TEXTREL'; then fail 'the library is not position-independent'; fi
