#!/usr/bin/env bash
# Does run_case.sh notice? A case that passes is spoiled in one way at a time, and each must fail
# for the reason that it was spoiled in.
set -u -o pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d) || exit
trap 'rm -rf "$scratch"' EXIT
sample=$scratch/sample
failures=0

# Stands in for the program: copies its first file to its second and tells where it was called.
cat >"$scratch/program" <<'END'
#!/usr/bin/env bash
cp "$1" "$2"
echo 'copied'
echo '12.34.56 - #   1 - copied' >&2
exit 3
END
chmod +x "$scratch/program"

make_case() {
  rm -rf "$sample"
  mkdir -p "$sample/input/deep" "$sample/files/deep"
  echo 'quorix in.txt deep/out.txt' >"$sample/cmd"
  echo 'To have something to spoil.' >"$sample/why"
  echo 'text' >"$sample/input/in.txt"
  echo 'old' >"$sample/input/deep/out.txt"
  echo 'text' >"$sample/files/deep/out.txt"
  echo 'copied' >"$sample/stdout"
  echo 'HH.MM.SS - #   1 - copied' >"$sample/stderr"
  echo 3 >"$sample/exit"
}

run() { "$here/run_case.sh" "$@" "$sample" "$scratch/program" >"$scratch/log" 2>&1; }

complain() {
  echo "FAILED: $1"
  cat "$scratch/log"
  failures=$((failures + 1))
}

# expect_failure REASON COMMAND...: spoils a fresh case with the command.
expect_failure() {
  local reason=$1
  shift
  make_case
  (cd "$sample" && "$@") || complain "cannot spoil with: $*"
  if run; then
    complain "passes in spite of: $*"
  elif ! grep -qxF "FAILED: $reason" "$scratch/log"; then
    complain "does not say '$reason' after: $*"
  fi
}

append() { echo "$2" >>"$1"; }

make_case
run || complain 'a case as it should be'

expect_failure 'exit differs' eval 'echo 0 >exit'
expect_failure 'stdout differs' append stdout more
expect_failure 'stderr differs' append stderr more
expect_failure 'stderr differs' append cmd 'echo "HH.MM.SS - # more" >&2; exit 3'
expect_failure 'stdout differs' append cmd "printf '\\0'; exit 3"
expect_failure 'stdout differs' eval "printf copied >stdout"
expect_failure 'file deep/out.txt differs' append files/deep/out.txt more
expect_failure 'there is no file new.txt' append files/new.txt text
expect_failure 'there is a file in.txt' append absent in.txt
expect_failure 'the file made.txt is not expected' append cmd 'echo more >made.txt; exit 3'
expect_failure 'the file .hidden is not expected' append cmd 'echo more >.hidden; exit 3'
expect_failure 'the input in.txt has changed' append cmd 'echo more >>in.txt; exit 3'
expect_failure 'the input in.txt is gone' append cmd 'rm in.txt; exit 3'
expect_failure 'the case does not say which exit it expects' rm exit
expect_failure 'the case does not say which stdout it expects' rm stdout
expect_failure 'the case does not say which stderr it expects' rm stderr
expect_failure 'the case has no why' rm why

make_case
rm "$sample/cmd"
run && complain 'passes without a cmd'

# Accepting makes what happened the expectation, and touches nothing else of the case.
make_case
rm -r "$sample/files" "$sample/stdout"
echo 0 >"$sample/exit"
run --accept || complain 'cannot accept'
run || complain 'what was accepted does not pass'
[ "$(cat "$sample/exit" "$sample/stdout" "$sample/stderr" "$sample/files/deep/out.txt")" = \
  $'3\ncopied\nHH.MM.SS - #   1 - copied\ntext' ] || complain 'something else was accepted'
[ ! -e "$sample/files/in.txt" ] || complain 'an input that nobody touched was accepted'

[ "$failures" -eq 0 ] && echo 'run_case.sh notices everything'
