# shellcheck shell=bash disable=SC2034 # what is set here is for the scripts that source it
# How a run gets its input from one pipe and leaves report and masked copy in two others, so that
# nothing of it is ever on a disk. Sourced, with the name of quorix_load in `quorix_load`.
#
#   start_pipes FOLDER MODE RECORDS NAME_LENGTH BASES LINE_LENGTH SEED
#   quorix ... -- "$input_pipe" "$report_pipe"
#   end_pipes "$?"

readonly grace_in_tenths_of_a_second=50

# start_pipes FOLDER MODE RECORDS NAME_LENGTH BASES LINE_LENGTH SEED: makes the pipes in a folder
# that has none yet and starts the readers of the outputs, and then the writer of the input. Sets
# `input_pipe` and `report_pipe`. The masked copy goes to the pipe that has its name; the reader
# opens the two outputs in the order of the program, since each opening waits for the other side.
start_pipes() {
  local -r where=$1 searched_as=$2
  shift 2
  input_pipe=$where/input.fa report_pipe=$where/report found_file=$where/found
  mkfifo -- "$input_pipe" "$input_pipe.masked" "$report_pipe"
  : >"$found_file"
  "$quorix_load" check "$searched_as" "$@" "$report_pipe" "$input_pipe.masked" >"$found_file" &
  checker=$!
  "$quorix_load" write "$@" >"$input_pipe" &
  writer=$!
}

# end_helper PID: a process that is not done soon after the program's end has nothing to wait for, and is ended.
# 1 if it had to be.
end_helper() {
  local waited
  for ((waited = 0; waited < grace_in_tenths_of_a_second; ++waited)); do
    kill -0 "$1" 2>/dev/null || return 0
    sleep 0.1
  done
  kill -KILL "$1" 2>/dev/null || true
  return 1
}

# end_pipes STATUS: ends what start_pipes has started, after a program with that status, and removes
# the pipes. Sets `pipes_outcome` to "good" or to what failed, and `found` to what the reader has
# printed.
end_pipes() {
  local writer_status=0 checker_status=0
  # Whoever has not been met by the program waits in the opening of a pipe. A softer signal would
  # let a child that is not yet another program run the traps of this shell.
  if [ "$1" != 0 ]; then kill -KILL "$writer" "$checker" 2>/dev/null || true; fi
  end_helper "$writer" || kill -KILL "$checker" 2>/dev/null || true
  end_helper "$checker" || true
  wait "$writer" || writer_status=$?
  wait "$checker" || checker_status=$?
  found=$(cat -- "$found_file")
  rm -f -- "$input_pipe" "$input_pipe.masked" "$report_pipe" "$found_file"
  if [ "$1" != 0 ]; then
    pipes_outcome="status $1"
  elif [ "$checker_status" != 0 ]; then
    pipes_outcome='wrong output'
  elif [ "$writer_status" != 0 ]; then
    pipes_outcome='input not written'
  else
    pipes_outcome=good
  fi
}
