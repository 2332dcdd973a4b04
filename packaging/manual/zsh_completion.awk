# Writes the completions of a program for zsh from the tables that read_help.awk makes of its help:
#
#   awk -v program=NAME -f zsh_completion.awk PROGRAM_TABLE [COMMAND_TABLE]...
#
# A program has commands if its table names some; the table of the command NAME is then a file of
# that name.

BEGIN { FS = "\t" }

# Returns a text for the brackets of a specification that stands in single quotes.
function quoted(text) {
  gsub(/\\/, "\\\\", text)
  gsub(/\[/, "\\[", text)
  gsub(/\]/, "\\]", text)
  gsub(/:/, "\\:", text)
  gsub(/'/, "'\\''", text)
  return text
}

FNR == 1 {
  command = ARGV[1] == FILENAME ? "" : FILENAME
  sub(/^.*\//, "", command)
}
$1 == "command" {
  commands[++command_count] = $2
  described = described sprintf("    '%s:%s'\n", $2, quoted($3))
}
$1 == "option" {
  count = split($2, flags, / /)
  value = ""
  if ($4 != "") value = ":" tolower($3) ":(" $4 ")"
  else if ($3 == "FILE") value = ":file:_files"
  else if ($3 != "") value = ":" tolower($3) ": "
  for (i = 1; i <= count; i++) {
    if (flags[i] == "--") continue  # the shell's own
    # An option may be given again: commands know which may.
    specs[command] = specs[command] sprintf(" \\\n        '*%s[%s]%s'", flags[i], quoted($5), value)
  }
}
$1 == "positional" { specs[command] = specs[command] " \\\n        '*:file:_files'" }

END {
  identifier = program
  gsub(/-/, "_", identifier)
  printf "#compdef %s\n# Completions of %s for zsh.\n\n", program, program
  if (command_count == 0) {
    printf "_arguments%s\n", specs[""]
    exit
  }
  print "local state line"
  print "local -a commands"
  printf "commands=(\n%s)\n", described
  printf "_arguments -C%s \\\n        '1:command:->command' \\\n        '*::argument:->arguments'\n", specs[""]
  print "case $state in"
  print "  command) _describe command commands ;;"
  print "  arguments)"
  print "    case $words[1] in"
  for (i = 1; i <= command_count; i++) {
    printf "      %s) _arguments%s ;;\n", commands[i], specs[commands[i]]
  }
  print "    esac\n    ;;\nesac"
}
