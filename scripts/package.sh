#!/usr/bin/env bash
# Makes what a release attaches, and checks it:
#
#   scripts/package.sh OUT [COMMIT]
#
# OUT receives the source archive of the commit (HEAD without one), the Debian package that is built
# from this archive, and their SHA-256 sums. The package is built twice, in two folders, languages and time
# zones; unless both have the same bytes and lintian finds nothing wrong, the script fails. The second
# package then stays in OUT with the ending .second. It needs what `scripts/setup.sh package` installs.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -lt 1 ] || [ $# -gt 2 ] || [[ $1 == -* ]]; then refuse_arguments; fi

mkdir --parents -- "$1"
out=$(readlink -f -- "$1")
readonly out commit=${2-HEAD}
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."

scratch=$(mktemp --directory)
readonly scratch
trap 'rm -rf -- "$scratch"' EXIT

version=$(git show "$commit:CMakeLists.txt" | sed -n 's/^set(QUORIX_VERSION_TEXT \(.*\))$/\1/p')
[ -n "$version" ] || { echo "package: $commit states no version" >&2 && exit 1; }
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct "$commit")
# Each build starts from nothing: a compiler cache may hide what a folder changes.
export SOURCE_DATE_EPOCH CCACHE_DISABLE=1
umask 022 # which shows in the package
readonly name=quorix-$version
readonly archive=$out/$name.tar.gz

echo "== Source archive"
git archive --format=tar --prefix="$name/" "$commit" | gzip -9 --no-name >"$archive"

# build FOLDER: makes the package of the archive there.
build() {
  mkdir --parents -- "$1"
  tar --extract --file="$archive" --directory="$1"
  cd -- "$1/$name"
  cmake --preset release -DQUORIX_BUILD_TOOLS=ON -DQUORIX_BUILD_PAGE=ON -DQUORIX_BUILD_MANUAL=ON >cmake.log
  cmake --build --preset release --parallel "$(nproc)" >build.log
  cpack --config build/CPackConfig.cmake -B package >cpack.log
}

echo "== First build"
(TZ=UTC LC_ALL=C build "$scratch/one")
echo "== Second build"
(TZ=Asia/Kathmandu LC_ALL=C.UTF-8 build "$scratch/another folder")
packages=("$scratch/one/$name/package/"*.deb)
readonly package=${packages[0]}
second="$scratch/another folder/$name/package/${package##*/}"
cp -- "$package" "$out"
cmp -- "$package" "$second" || { cp -- "$second" "$out/${package##*/}.second" && exit 1; }
echo "Both builds have the same bytes"

echo "== lintian"
lintian --allow-root --fail-on error,warning -- "$package"

cd -- "$out"
sha256sum -- "${archive##*/}" "${package##*/}" | tee -- "$name.sha256"
