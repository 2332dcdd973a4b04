#!/usr/bin/env bash
# Walks the ways in as a new user, each on a bare Debian 12:
#
#   scripts/check_install.sh OUT [source | package | workflow | container]...
#
# OUT has what scripts/package.sh made. Without further words it walks all ways: from the source archive by
# the first command of the README, by the Debian package, by the package and Snakemake with the workflow, and by the
# steps of packaging/docker/Dockerfile.
# It needs root and what `scripts/setup.sh package` installs. Each command is printed before it runs.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -lt 1 ] || [ ! -d "$1" ] || [[ $1 == -* ]]; then refuse_arguments; fi

out=$(readlink -f -- "$1")
shift
ways=("$@")
[ $# -gt 0 ] || ways=(source package workflow container)
for way in "${ways[@]}"; do
  [[ $way =~ ^(source|package|workflow|container)$ ]] || refuse_arguments
done
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
source scripts/debian_root.sh
require_root

scratch=$(mktemp --directory)
readonly out scratch
trap 'rm -rf -- "$scratch"' EXIT

archives=("$out"/quorix-*.tar.gz)
packages=("$out"/quorix_*.deb)
readonly archive=${archives[0]} package=${packages[0]}
name=${archive##*/}
readonly name=${name%.tar.gz}

root=''
user=''
# begin USER: a bare system, in which USER types.
begin() {
  root=$scratch/root
  user=$1
  rm -rf -- "$root"
  make_root "$root"
  if [ "$user" != root ]; then in_root "$root" root useradd --create-home "$user"; fi
}

# typed COMMAND: prints a command and runs it in the system.
typed() {
  printf '%s$ %s\n' "$user" "$1"
  in_root "$root" "$user" bash -o pipefail -ec "$1" </dev/null
}

# expect_report FILE: FILE, which a command wrote in the system, is the report of the example.
expect_report() {
  sed -n '/^>/,$p' "$root/$1" >"$scratch/found"
  sed -n '/^>/,$p' examples/example.report >"$scratch/expected"
  diff -- "$scratch/expected" "$scratch/found"
  echo "== The report is that of the example"
}

# readme_block HEADING NUMBER: the commands of a block of code below a heading of the README, on one line.
readme_block() {
  awk -v heading="## $1" -v number="$2" '
    /^## / { is_there = $0 == heading }
    is_there && /^```/ { if (!(is_in = !is_in)) next; ++block; next }
    is_there && is_in && block == number' README.md | sed -e ':a' -e 'N' -e '$!ba' -e 's/\n/ \&\& /g'
}

walk_source() {
  echo "== From source, by the first command of the README"
  begin root
  tar --extract --no-same-owner --file="$archive" --directory="$root/root"
  typed "cd ~/$name && ./scripts/run.sh >~/report.txt 2>~/messages.txt; tail -n 3 ~/messages.txt"
  expect_report root/report.txt
  typed 'apt-get --quiet --quiet --yes --no-install-recommends install snakemake >/dev/null 2>&1'
  typed "cd ~/$name && snakemake --profile workflow/profiles/local 2>&1 | tail -n 2"
  expect_report "root/$name/results/example/example.report"

  echo "== From source, by hand"
  begin root
  tar --extract --no-same-owner --file="$archive" --directory="$root/root"
  echo 'APT::Get::Assume-Yes "true";' >"$root/etc/apt/apt.conf.d/yes" # in place of a user who types it
  typed "cd ~/$name && { $(readme_block 'Build by hand and install' 1); } >~/messages.txt 2>&1 ||
    { tail -n 20 ~/messages.txt; exit 1; }"
  if grep 'warning:' "$root/root/messages.txt"; then echo 'The compiler warns' && exit 1; fi
  typed "cd ~/$name && $(readme_block 'Build by hand and install' 2) >/dev/null"
  typed "cd ~/$name/examples && $(readme_block 'A first run' 1 | sed 's/^cd examples && //')"
  expect_report "root/$name/examples/example.report"
  typed 'quorix --version && quorix-tools --version && ls /usr/local/share/man/man1'
  typed "cd ~/$name/examples && quorix-tools html -o page.html example.report && head -c 15 page.html && echo"
}

# Files of the system, without what apt and the commands for users keep for themselves.
list_files() {
  (cd -- "$root" && find . -xdev \( -path ./var/lib/apt -o -path ./var/cache -o -path ./var/log \
    -o -path ./var/lib/dpkg -o -path ./tmp -o -path ./home -o -path ./etc/ld.so.cache \
    -o -path ./usr/local/share/ca-certificates -o -path ./etc/resolv.conf -o -path './etc/*-' \) \
    -prune -o -print | sort)
}

walk_package() {
  echo "== By the Debian package"
  begin root
  cp -- "$package" "$root/tmp"
  typed 'apt-get --quiet --quiet update'
  typed 'apt-get --quiet --quiet --yes --no-install-recommends install man-db bash-completion >/dev/null 2>&1'
  list_files >"$scratch/before"
  typed "apt-get --quiet --yes install /tmp/${package##*/} 2>&1 | tail -n 4"
  in_root "$root" root useradd --create-home somebody
  user=somebody
  typed 'cd ~ && quorix /usr/share/doc/quorix/examples/example.fa report.txt'
  expect_report home/somebody/report.txt
  typed 'quorix-tools html -o ~/page.html ~/report.txt && head -c 15 ~/page.html && echo'
  for page in quorix quorix-tools quorix-tools-convert; do
    typed "man $page | sed -n '/^NAME/{n;p;}'"
  done
  # The shell finds the completions by itself, as at its first Tab; 124 tells it to try again with them.
  # shellcheck disable=SC2016  # the shell in the system expands
  typed '. /usr/share/bash-completion/bash_completion; _completion_loader quorix || [ $? -eq 124 ]; complete -p quorix'
  user=root
  typed 'apt-get --quiet --yes purge quorix 2>&1 | tail -n 2; apt-get --quiet --quiet --yes autoremove >/dev/null'
  in_root "$root" root userdel somebody
  list_files >"$scratch/after"
  diff -- "$scratch/before" "$scratch/after"
  echo "== Nothing is left of the package"
}

walk_workflow() {
  echo "== By the Debian package and Snakemake, with the workflow"
  begin root
  cp -- "$package" "$root/tmp"
  typed 'apt-get --quiet --quiet update'
  typed "apt-get --quiet --yes --no-install-recommends install /tmp/${package##*/} snakemake 2>&1 |
  grep -e '^Need to get' -e '^After this'"
  in_root "$root" root useradd --create-home somebody
  user=somebody
  typed 'mkdir ~/genomes && gzip -c /usr/share/doc/quorix/examples/example.fa >~/genomes/example.fa.gz'
  local workflow=/usr/share/quorix/workflow
  typed "cd ~ && snakemake --snakefile $workflow/Snakefile --profile $workflow/profiles/local \
  --config genomes=genomes ranges=3 min_range_bases=1 page=true tracks=bed,trgt 2>&1 | tail -n 2; ls results/example"
  expect_report home/somebody/results/example/example.report
  echo "== A wrong option is told before the first job"
  typed "cd ~ && ! snakemake --snakefile $workflow/Snakefile --profile $workflow/profiles/local \\
  --config genomes=~/genomes options='--maxUnit 9' >messages.txt 2>&1 && grep -A 1 'PARSE ERROR' messages.txt"
}

walk_container() {
  echo "== By the steps of the Dockerfile"
  mkdir -- "$scratch/context"
  tar --extract --strip-components=1 --file="$archive" --directory="$scratch/context"
  # shellcheck disable=SC2016  # the shell in the container expands
  scripts/run_dockerfile.sh "$scratch/context" "$scratch/image" 'quorix --version' \
    'quorix /usr/share/doc/quorix/examples/example.fa report.txt' \
    'quorix-tools html -o page.html report.txt' 'test "$(id -u)" -ne 0' 'test ! -w /usr/bin/quorix'
  root=$scratch/image
  expect_report data/report.txt
}

for way in "${ways[@]}"; do "walk_$way"; done
