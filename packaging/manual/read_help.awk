# Turns the --help of a program into a table that the writers of man pages and completions read:
#
#   awk -f read_help.awk HELP
#
# Both forms of help are understood: that of quorix, which begins with "USAGE:", and that of
# quorix-tools. Each line of the table is a kind and its fields, with tabs between them:
#
#   form        long                                the help is that of quorix or like it
#   about       TEXT                                what the program does
#   usage       TEXT                                the arguments, if the help shows them on one line
#   group       NAME                                the options below belong together
#   option      FLAGS   VALUE   CHOICES   TEXT      FLAGS and CHOICES are separated by blanks
#   positional  NAME    VALUE   CHOICES   TEXT
#   command     NAME    TEXT
#   footer      LINE                                one for each line below the options
#
# VALUE is the name of the kind of value: FILE, int and so on, or nothing for an option without one.

function trimmed(text) {
  gsub(/[ \t]+/, " ", text)
  sub(/^ /, "", text)
  sub(/ $/, "", text)
  return text
}

# Prints the entry that was gathered in `head` and `body`, and forgets it.
function finish_entry(    words, count, i, word, flags, name, value, choices, kind) {
  if (head == "") return
  head = trimmed(head)
  if (section == "COMMANDS") {
    printf "command\t%s\t%s\n", head, trimmed(body)
    head = body = ""
    return
  }
  kind = head ~ /^-/ ? "option" : "positional"
  if (kind == "positional" && head ~ /^</) {  # <Name with blanks> (note)
    name = head
    sub(/^</, "", name)
    sub(/>.*/, "", name)
    head = ""
  }
  count = split(head, words, /,? +|,/)
  for (i = 1; i <= count; i++) {
    word = words[i]
    if (word == "REQUIRED" || word == "..." || word == "") continue
    if (kind == "option" && word ~ /^-/) {
      flags = flags (flags == "" ? "" : " ") word
    } else if (kind == "positional" && name == "") {
      name = word
    } else {
      value = value (value == "" ? "" : ",") word
    }
  }
  # <a|b|c> and TEXT:{a,b,c} name what may be chosen; the form with '<' stands beside each flag.
  if (value ~ /^</) {
    sub(/>.*/, "", value)
    sub(/^</, "", value)
    if (value ~ /\|/) {
      choices = value
      value = "NAME"
    }
  } else if (value ~ /:\{/) {
    choices = value
    sub(/^.*:\{/, "", choices)
    sub(/\}.*/, "", choices)
    value = "NAME"
  }
  gsub(/[|,]/, " ", choices)
  printf "%s\t%s\t%s\t%s\t%s\n", kind, (kind == "option" ? flags : name), value, choices, trimmed(body)
  head = body = ""
}

{ sub(/\r$/, "") }

NR == 1 && /^$/ { next }
/^USAGE: *$/ && section == "" {
  is_long_form = 1
  section = "USAGE"
  print "form\tlong"
  next
}

# --- the help of quorix: heads are indented by three blanks, texts by five, the rest of a head by six

is_long_form && /^Where: *$/ {
  section = "OPTIONS"
  next
}
is_long_form && section == "USAGE" { next }
is_long_form && /^   [-<]/ {
  finish_entry()
  head = $0
  next
}
is_long_form && /^      / && body == "" {
  rest = trimmed($0)
  head = head (rest ~ /^[|,]/ ? "" : " ") rest
  next
}
is_long_form && /^     / {
  rest = trimmed($0)
  body = body (rest ~ /^[|,]/ ? "" : " ") rest
  next
}
is_long_form && /^   [^ ]/ {
  finish_entry()
  about = about " " trimmed($0)
  next
}
is_long_form { next }

# --- the help of quorix-tools: sections with entries, whose texts begin in a column further right

section == "FOOTER" || /^Examples:/ {
  if (section != "FOOTER") finish_entry()
  section = "FOOTER"
  printf "footer\t%s\n", $0
  next
}
/^[Uu][Ss][Aa][Gg][Ee]: / {
  section = "USAGE"
  sub(/^[^ ]* /, "")
  usage = trimmed($0)
  next
}
section == "" {
  about = about " " trimmed($0)
  next
}
/^[A-Za-z][A-Za-z ]*:$/ {
  finish_entry()
  section = toupper($0)
  sub(/:$/, "", section)
  if (section == "SUBCOMMANDS") section = "COMMANDS"
  name_of_group = $0
  sub(/:$/, "", name_of_group)
  if (section != "COMMANDS" && section != "POSITIONALS") printf "group\t%s\n", name_of_group
  next
}
/^ ? ? ?[^ ]/ {
  finish_entry()
  head = trimmed($0)
  # Between a head and a text that begins on the same line are two blanks or more.
  line = $0
  sub(/^ +/, "", line)
  if (match(line, /  +[^ -]/)) {
    head = substr(line, 1, RSTART - 1)
    body = substr(line, RSTART + RLENGTH - 1)
  }
  next
}
/^    / && head != "" {
  body = body " " trimmed($0)
  next
}

END {
  finish_entry()
  about = trimmed(about)
  if (about == "") {
    print "read_help: this is no help of a program" >"/dev/stderr"
    exit 1
  }
  printf "about\t%s\n", about
  if (usage != "") printf "usage\t%s\n", usage
}
