#!/usr/bin/env bash
# Installs the Debian packages that a purpose needs, and of those only the missing ones:
#
#   scripts/setup.sh run | test | coverage | measure | bench | fuzz | mutate | package
#
# For bench, a program that is only measured beside ours is installed if that can be done.
# It needs root or sudo only while a package is missing; where all are there, apt is not called.
# All that it says goes to standard error.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"

readonly run_packages=(g++ cmake make libtclap-dev libhwy-dev libcli11-dev zlib1g-dev)
# What reads the man pages, completions and metadata.
readonly reader_packages=(man-db mandoc python3 python3-yaml zsh)
readonly test_packages=("${run_packages[@]}" "${reader_packages[@]}"
  libgtest-dev librapidcheck-dev libbenchmark-dev clang clang-format clang-tidy cppcheck locales
  ninja-build nlohmann-json3-dev
  # What uses the library.
  mypy pkg-config pybind11-dev python3-dev python3-numpy
  # What draws plots.
  python3-matplotlib
  # What makes and reads the package.
  dpkg-dev file lintian
  # What runs the workflow.
  snakemake
  # What reads the output.
  bedtools ca-certificates chromium genometools nodejs npm python3-jsonschema samtools tabix)
readonly coverage_packages=("${run_packages[@]}" "${reader_packages[@]}"
  libgtest-dev librapidcheck-dev gcovr ninja-build nlohmann-json3-dev python3-matplotlib)
readonly measure_packages=("${run_packages[@]}" time)
readonly bench_packages=("${run_packages[@]}" libbenchmark-dev)
readonly mutate_packages=("${run_packages[@]}" libgtest-dev librapidcheck-dev ninja-build python3)
readonly package_packages=("${run_packages[@]}" ca-certificates debootstrap dpkg-dev file git
  lintian nodejs npm python3-jinja2 python3-yaml qemu-user)
readonly fuzz_packages=("${run_packages[@]}" clang libclang-rt-dev llvm)

say() { printf '%s\n' "$*" >&2; }

# Ends the script with the packages that the user has to bring.
give_up() {
  say "setup: $1"
  say "setup: what is needed are these Debian packages, or the like of them: $2"
  exit 1
}

# is_installed PACKAGE (for any architecture)
is_installed() {
  # Packages of Node from elsewhere bring npm with them, and Debian's npm conflicts with those.
  if [ "$1" = npm ] && command -v npm >/dev/null; then return; fi
  [[ $(dpkg-query --show --showformat='${db:Status-Status} ' "$1" 2>/dev/null) == installed* ]]
}

# as_root COMMAND [WORD]...
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif [ -t 0 ]; then
    sudo "$@"
  else
    sudo --non-interactive "$@" # nobody is there to type a password
  fi
}

# apt WORD...: apt-get that asks nothing.
apt() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get --quiet --yes "$@" >&2
}

# install PACKAGE...
install() {
  if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
    give_up "packages are missing, and only root or sudo could install them" "$*"
  fi
  say "setup: installing $*"
  # The lists of a fresh system are empty and those of an old one name versions that are gone. A
  # source that cannot be reached need not be the one that has the packages, so we go on.
  apt update || say "setup: some package lists could not be fetched; trying with those at hand"
  apt install --no-install-recommends "$@" || give_up "the packages could not be installed" "$*"
}

main() {
  local packages=() missing=() package
  [ $# -le 1 ] || refuse_arguments
  case "${1-}" in
    run) packages=("${run_packages[@]}") ;;
    test) packages=("${test_packages[@]}") ;;
    coverage) packages=("${coverage_packages[@]}") ;;
    measure) packages=("${measure_packages[@]}") ;;
    bench) packages=("${bench_packages[@]}") ;;
    fuzz) packages=("${fuzz_packages[@]}") ;;
    mutate) packages=("${mutate_packages[@]}") ;;
    package) packages=("${package_packages[@]}") ;;
    '')
      print_usage
      exit 0
      ;;
    *) refuse_arguments ;;
  esac
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    give_up "this is no Debian-like system: dpkg-query or apt-get is missing" "${packages[*]}"
  fi

  for package in "${packages[@]}"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] || install "${missing[@]}"

  # In a subshell, since giving up ends it.
  if [ "${1-}" = bench ] && ! is_installed tantan; then
    (install tantan) || say "setup: tantan is left out"
  fi
}

main "$@"
