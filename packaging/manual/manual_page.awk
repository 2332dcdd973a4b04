# Writes the man page of a program or command from the table that read_help.awk makes of its help:
#
#   awk -v name=NAME -v version=TEXT -v date=YYYY-MM-DD [-v parent=NAME -v about=TEXT] \
#     [-v template=FILE] -f roff.awk -f manual_page.awk FACTS TABLE
#
# NAME is "quorix-tools convert", for instance, parent the program that the command belongs to, and about what
# that says of it; a command whose help has the long form takes files and ends as quorix does.
# FACTS are lines "fact FLAG DEFAULT TEXT" and "status NUMBER TEXT", with tabs, which are shown instead
# of the texts of a help in the long form. A template is a page in which lines @OPTIONS@ and @STATUSES@ are replaced.

BEGIN {
  FS = "\t"
  page = name
  gsub(/ /, "-", page)
}

$1 == "fact" {
  default_of[$2] = $3
  meaning_of[$2] = $4
  next
}
$1 == "status" {
  statuses = statuses ".TP\n.B " $2 "\n" roff($3) "\n"
  next
}
$1 == "form" { has_facts = 1 }
$1 == "about" && about == "" { about = $2 }
$1 == "usage" { usage = $2 }
$1 == "group" && $2 != "Options" { options = options ".SS " $2 "\n" }
$1 == "option" { options = options option_entry($2, $3, $4, $5) }
$1 == "positional" { positionals = positionals entry("\\fI" roff_typed($2) "\\fP", $5) }
$1 == "command" {
  commands = commands entry("\\fB" page_link(name " " $2) "\\fP(1)", $3)
  pages = pages (pages == "" ? "" : ",\n") ".BR " page_link(name " " $2) " (1)"
}
$1 == "footer" { footer[++footer_count] = $2 }

function page_link(words) {
  gsub(/ /, "-", words)
  return roff_typed(words)
}

function entry(head, text) { return ".TP\n" head "\n" (text == "" ? "\\&" : roff(text)) "\n" }

# A fact says what a help text leaves out, or corrects it.
function option_entry(flags, value, choices, text,    words, count, i, head, long_name, is_corrected) {
  count = split(flags, words, / /)
  long_name = words[count]
  for (i = 1; i <= count; i++) head = head (i == 1 ? "" : ", ") "\\fB" roff_typed(words[i]) "\\fP"
  if (value != "") head = head " \\fI" roff_typed(value) "\\fP"
  is_corrected = has_facts && long_name in meaning_of
  if (is_corrected) {
    text = meaning_of[long_name] "."
    # What may be chosen is spelled as it is.
    if (choices == "") text = toupper(substr(text, 1, 1)) substr(text, 2)
    if (default_of[long_name] != "") text = text " Default: " default_of[long_name] "."
  }
  text = roff(text)
  if (choices != "" && !is_corrected) {
    gsub(/ /, ", ", choices)
    text = text "\nOne of " roff(choices) "."
  }
  return ".TP\n" head "\n" text "\n"
}

# The lines of a footer: indented ones are examples, the others paragraphs.
function print_footer(    i, line, was_indented, is_new) {
  is_new = 1
  for (i = 1; i <= footer_count; i++) {
    line = footer[i]
    if (line ~ /^[A-Z][a-z]*:$/) {
      sub(/:$/, "", line)
      print ".SH " toupper(line)
      is_new = 0
    } else if (line == "") {
      if (was_indented) print ".EE"
      was_indented = 0
      is_new = 1
    } else if (line ~ /^  /) {
      if (!was_indented) print ".EX"
      was_indented = 1
      sub(/^  /, "", line)
      print roff_typed(line)
    } else if (sub(/^Statuses: /, "", line)) {
      print ".SH EXIT STATUS"
      print roff(line)
    } else {
      if (is_new) print has_notes ? ".PP" : ".SH NOTES"
      has_notes = 1
      is_new = 0
      # A paragraph goes on to the next blank line.
      while (i < footer_count && footer[i + 1] != "") line = line " " footer[++i]
      print roff(line)
    }
  }
  if (was_indented) print ".EE"
}

function print_head() {
  printf ".TH %s 1 \"%s\" \"Quorix %s\" \"User Commands\"\n", toupper(roff_typed(page)), date, version
}

function print_from_template(    line) {
  while ((getline line <template) > 0) {
    if (line == "@OPTIONS@") printf "%s", options
    else if (line == "@STATUSES@") printf "%s", statuses
    else print line
  }
}

function print_whole_page(    synopsis) {
  if (has_facts) usage = name " [OPTIONS] IN [REPORT]"
  sub(/\.$/, "", about)
  printf ".SH NAME\n%s \\-\n%s\n", roff_typed(page), roff(tolower(substr(about, 1, 1)) substr(about, 2))
  synopsis = substr(usage, length(name) + 2)
  gsub(/\[OPTIONS\]/, "[OPTION]...", synopsis)
  printf ".SH SYNOPSIS\n.B %s\n%s\n", roff_typed(name), roff_typed(synopsis)
  printf ".SH DESCRIPTION\n%s.\n", roff(about)
  printf "%s", positionals
  if (commands != "") printf ".SH COMMANDS\n%s", commands
  if (options != "") printf ".SH OPTIONS\n%s", options
  print_footer()
  if (has_facts) printf ".SH EXIT STATUS\n%s", statuses
  else if (parent != "") printf ".SH EXIT STATUS\nSee\n.BR %s (1).\n", page_link(parent)
  if (parent != "") {
    pages = ".BR " page_link(parent) " (1)"
  }
  printf ".SH SEE ALSO\n%s%s.BR quorix (1)\n", pages, pages == "" ? "" : ",\n"
}

END {
  if (options == "") {
    print "manual_page: no options in the table" >"/dev/stderr"
    exit 1
  }
  print_head()
  if (template != "") print_from_template()
  else print_whole_page()
}
