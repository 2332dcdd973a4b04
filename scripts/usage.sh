# shellcheck shell=bash
# The usage of a script is the comment at its top. Sourced by each script with its own arguments:
# where --help is among them, this prints the usage on standard output and ends the script.

usage_of=$(readlink -f -- "${BASH_SOURCE[1]}")
readonly usage_of

print_usage() { sed -n -e '1d' -e '/^#/!q' -e 's/^# \{0,1\}//p' -- "$usage_of"; }

# Ends the script because of an argument that it does not take.
refuse_arguments() {
  print_usage >&2
  exit 2
}

for word in "$@"; do
  if [ "$word" = --help ]; then
    print_usage
    exit 0
  fi
done
unset word
