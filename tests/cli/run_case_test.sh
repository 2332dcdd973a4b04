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
  printf '# To have something to spoil.\nquorix in.txt deep/out.txt\n' >"$sample/cmd"
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
expect_failure 'the input in.txt has changed' append cmd 'echo more >>in.txt; exit 3'
expect_failure 'the input in.txt has changed' append cmd 'mv in.txt a; ln -s a in.txt; exit 3'
expect_failure 'the input in.txt is gone' append cmd 'rm in.txt; exit 3'
expect_failure 'the input rest has changed' \
  eval 'mkdir input/rest; echo >input/rest/x; echo "rm -r rest; echo >rest; exit 3" >>cmd'
expect_failure 'the case does not say why' eval 'echo quorix in.txt deep/out.txt >cmd'
expect_failure 'the case does not say why' eval 'echo "#" >cmd; echo quorix in.txt deep/out.txt >>cmd'

# Nothing of any kind may be left behind unless the case says so.
for make in 'echo more >made' ': >made' 'mkdir made' 'ln -s nowhere made' 'mkfifo made'; do
  expect_failure 'made is left behind, and not expected' append cmd "$make; exit 3"
done
expect_failure '.hidden is left behind, and not expected' append cmd 'echo more >.hidden; exit 3'
expect_failure 'deep/made is left behind, and not expected' append cmd 'echo >deep/made; exit 3'

# What the defaults say for a file that is not there: status 0, and nothing on either stream.
expect_failure 'exit differs' rm exit
expect_failure 'stdout differs' rm stdout
expect_failure 'stderr differs' rm stderr
expect_failure 'stdout differs' eval 'rm stdout; echo "echo; exit 3" >>cmd'
quiet_case() {
  rm -rf "$sample"
  mkdir -p "$sample"
  printf '# Nothing to see.\n%s\n' "$1" >"$sample/cmd"
}
quiet_case :
run || complain 'a case that the defaults describe'
for command in 'exit 1' 'exit 255' 'kill -TERM $BASHPID'; do
  quiet_case "$command"
  run && complain "passes without an exit file in spite of: $command"
done
quiet_case 'echo'
run && complain 'passes without a stdout file in spite of an empty line'
quiet_case 'echo "12.34.56 - #   1 - copied" >&2'
run && complain 'passes without a stderr file in spite of a progress line'

# A shared input comes to a case that names it, as it is, and must stay so.
quiet_case "cmp one.fa '$here/input/one.fa'"
run || complain 'a case with a shared input'
quiet_case '[ ! -e one""\.fa ] && [ -z "$(ls)" ]'
run || complain 'a shared input that is not named is there'
quiet_case 'echo more >>one.fa'
run && complain 'passes with a shared input that has changed'
quiet_case 'cat one.fa'
mkdir "$sample/input"
echo own | tee "$sample/input/one.fa" >"$sample/stdout"
run || complain 'an input of the case does not take the place of a shared one'

make_case
rm "$sample/cmd"
run && complain 'passes without a cmd'

# Accepting makes what happened the expectation, and touches nothing else of the case.
make_case
rm -r "$sample/files" "$sample/stdout" "$sample/exit"
run --accept || complain 'cannot accept'
run || complain 'what was accepted does not pass'
[ "$(cat "$sample/exit" "$sample/stdout" "$sample/stderr" "$sample/files/deep/out.txt")" = \
  $'3\ncopied\nHH.MM.SS - #   1 - copied\ntext' ] || complain 'something else was accepted'
[ ! -e "$sample/files/in.txt" ] || complain 'an input that nobody touched was accepted'
quiet_case :
echo 3 | tee "$sample/exit" "$sample/stdout" >"$sample/stderr"
run --accept || complain 'cannot accept a quiet case'
[ "$(ls "$sample")" = cmd ] || complain 'accepting writes what the defaults say'

[ "$failures" -eq 0 ] && echo 'run_case.sh notices everything'
