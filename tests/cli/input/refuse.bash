# refuse FILE: ends the case with the status of a run on a file that is no FASTA file, and prints the
# last two lines of standard error and the records that were reported.
refuse() {
  quorix --outputFormat 2 --printRepeatSeqMode 0 "$1" report.txt 2>messages
  local status=$?
  tail -n 2 messages
  sed -n '/^>/,$p' report.txt
  rm report.txt
  exit "$status"
}
