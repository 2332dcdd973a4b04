#!/usr/bin/env bash
# Runs the steps of packaging/docker/Dockerfile in bare Debian 12 systems, without a container engine:
#
#   scripts/run_dockerfile.sh CONTEXT IMAGE [COMMAND]...
#
# CONTEXT is the folder with the sources. IMAGE receives the system of the last stage, in which each
# COMMAND then runs as its user, in its folder. It needs root and what `scripts/setup.sh package` installs.
# The steps that are understood are FROM, WORKDIR, COPY, RUN, USER and CMD, each word as Docker reads it but
# without quotes.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -lt 2 ] || [ ! -d "$1" ]; then refuse_arguments; fi
source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/debian_root.sh"
require_root

context=$(readlink -f -- "$1")
image=$(realpath --canonicalize-missing -- "$2")
shift 2
stages=$(mktemp --directory)
readonly context image stages
trap 'rm -rf -- "$stages"' EXIT

root='' user='' folder='' command='' stage_count=0

refuse_step() {
  echo "run_dockerfile: cannot run: $1" >&2
  exit 1
}

# start_stage IMAGE [AS NAME]
start_stage() {
  [[ $1 == debian:12* ]] || refuse_step "FROM $*"
  stage_count=$((stage_count + 1))
  root=$stages/${3-last}
  user=root folder=/ command=''
  make_root "$root"
}

# copy [--from=STAGE] SOURCE... TARGET
copy() {
  local from=$context words target file
  if [[ $1 == --from=* ]]; then
    from=$stages/${1#--from=}
    shift
  fi
  words=("$@")
  target=${words[-1]}
  unset 'words[-1]'
  if [[ $target != /* ]]; then target=$folder/$target; fi
  mkdir --parents -- "$root/$target"
  for file in "${words[@]}"; do
    if [ "$file" = . ]; then
      tar --create --directory="$from" . | tar --extract --no-same-owner --directory="$root/$target"
    else
      # shellcheck disable=SC2086  # names may be patterns
      cp -R -- "$from"/$file "$root/$target"
    fi
  done
}

step() { # INSTRUCTION TEXT
  local words
  printf 'STEP %s %s\n' "$1" "$2"
  read -r -a words <<<"$2"
  case $1 in
    FROM) start_stage "${words[@]}" ;;
    WORKDIR)
      folder=$2
      mkdir --parents -- "$root/$folder"
      ;;
    COPY) copy "${words[@]}" ;;
    RUN) in_root "$root" "$user" sh -ec "cd '$folder' && $2" </dev/null >"$stages/output" 2>&1 ||
      { tail -n 30 -- "$stages/output" && refuse_step "RUN $2"; } ;;
    USER) user=$2 ;;
    CMD) command=$2 ;;
    *) refuse_step "$1 $2" ;;
  esac
}

line=''
while IFS= read -r text || [ -n "$text" ]; do
  if [[ $text =~ ^[[:space:]]*# ]] || [[ -z $text && -z $line ]]; then continue; fi
  line+=$text
  if [[ $line == *\\ ]]; then
    line=${line%\\}
    continue
  fi
  step "${line%% *}" "${line#* }"
  line=''
done <"$context/packaging/docker/Dockerfile"

[ "$stage_count" -gt 1 ] || refuse_step 'one stage alone'
[ "$user" != root ] || refuse_step 'an image whose user is root'
# The command of the image, a list of words in JSON, and then those that were asked for.
read -r -a words <<<"$(tr -d '[]",' <<<"$command")"
printf '%s: CMD %s\n' "$user" "${words[*]}"
in_root "$root" "$user" sh -ec "cd '$folder' && ${words[*]}" </dev/null >"$stages/output"
[ -s "$stages/output" ] || refuse_step 'a command that prints nothing'
for typed in "$@"; do
  printf '%s$ %s\n' "$user" "$typed"
  in_root "$root" "$user" sh -ec "cd '$folder' && $typed" </dev/null
done
mkdir --parents -- "${image%/*}"
mv -- "$root" "$image"
