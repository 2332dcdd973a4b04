# report_edits FILE [OPTION]...: the repeat of a file under each combination of the report's options.
report_edits() {
  local file=$1 unit perfection flanking
  shift
  for unit in 0 1 2; do for perfection in 0 1 2; do for flanking in 0 2; do
    echo "reportUnit $unit, NPerfectionMode $perfection, flanking $flanking"
    quorix "$@" --reportUnit "$unit" --NPerfectionMode "$perfection" --flanking "$flanking" \
      "$file" 2>>messages | sed '1,/^sequence length/d; /^# Analysis/,$d' || exit
  done; done; done
}
