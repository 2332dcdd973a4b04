# Writes the completions of a program for bash from the tables that read_help.awk makes of its help:
#
#   awk -v program=NAME -f bash_completion.awk PROGRAM_TABLE [COMMAND_TABLE]...
#
# A program has commands if its table names some; the table of the command NAME is then a file of
# that name.

BEGIN { FS = "\t" }

FNR == 1 {
  command = ARGV[1] == FILENAME ? "" : FILENAME
  sub(/^.*\//, "", command)
}
$1 == "command" { commands = commands " " $2 }
$1 == "option" {
  options[command] = options[command] " " $2
  if ($3 == "") next
  flags = $2
  gsub(/ /, "|", flags)
  if ($4 != "") action = "words '" $4 "'"
  else if ($3 == "FILE") action = "files"
  else action = ":"
  values[command] = values[command] "        " flags ") _quorix_offer_" action "; return ;;\n"
  sub(/_quorix_offer_:/, ":", values[command])
}
$1 == "positional" { takes_files[command] = 1 }

function print_case(name) {
  if (values[name] != "") printf "      case $previous in\n%s      esac\n", values[name]
  printf "      options='%s'\n", substr(options[name], 2)
}

END {
  identifier = program
  gsub(/-/, "_", identifier)
  printf "# Completions of %s for bash.\n\n", program
  print "_quorix_offer_words() { mapfile -t COMPREPLY < <(compgen -W \"$1\" -- \"$current\"); }"
  print "_quorix_offer_files() {"
  print "  compopt -o filenames 2>/dev/null"
  print "  mapfile -t COMPREPLY < <(compgen -f -- \"$current\")"
  print "}\n"
  printf "_%s() {\n", identifier
  print "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}"
  print "  local command='' options='' i"
  print "  COMPREPLY=()"
  print "  # An equals sign is a word of its own."
  print "  if [ \"$current\" = '=' ]; then current=''; fi"
  print "  if [ \"$previous\" = '=' ]; then previous=${COMP_WORDS[COMP_CWORD - 2]}; fi"
  if (commands != "") {
    print "  for ((i = 1; i < COMP_CWORD; ++i)); do"
    print "    case ${COMP_WORDS[i]} in"
    print "      -*) ;;"
    print "      *)\n        command=${COMP_WORDS[i]}\n        break\n        ;;"
    print "    esac"
    print "  done"
  }
  print "  case $command in"
  print "    '')"
  print_case("")
  if (commands != "") {
    printf "      case $current in\n        -*) ;;\n        *) options='%s' ;;\n      esac\n", substr(commands, 2)
  }
  print "      ;;"
  count = split(commands, names, / /)
  for (i = 1; i <= count; i++) {
    if (names[i] == "") continue
    printf "    %s)\n", names[i]
    print_case(names[i])
    print "      ;;"
  }
  print "  esac"
  print "  case $current in"
  print "    -*) _quorix_offer_words \"$options\" ;;"
  if (commands != "") print "    *) if [ -z \"$command\" ]; then _quorix_offer_words \"$options\"; else _quorix_offer_files; fi ;;"
  else print "    *) _quorix_offer_files ;;"
  print "  esac"
  print "}"
  printf "complete -F _%s %s\n", identifier, program
}
