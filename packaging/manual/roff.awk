# Texts as the source of a man page, for the other awk scripts.

# Returns a text as prose: lines of up to 78 characters, and a new one after each sentence. A hyphen
# that begins a word is a minus, which can be copied into a shell.
function roff(text,    words, count, i, word, line, out) {
  count = split(text, words, / +/)
  for (i = 1; i <= count; i++) {
    word = words[i]
    gsub(/\\/, "\\e", word)
    if (line != "" && (length(line) + 1 + length(word) > 76 || line ~ /[a-z0-9)][.]$/)) {
      out = out protected(line) "\n"
      line = ""
    }
    line = line (line == "" ? "" : " ") with_minus(word)
  }
  return out protected(line)
}

# A word whose hyphens are minuses, except those between letters or digits.
function with_minus(word,    out, i, before, after) {
  for (i = 1; i <= length(word); i++) {
    before = i == 1 ? "" : substr(word, i - 1, 1)
    after = substr(word, i + 1, 1)
    if (substr(word, i, 1) == "-" && !(before ~ /[A-Za-z0-9]/ && after ~ /[A-Za-z0-9]/)) out = out "\\"
    out = out substr(word, i, 1)
  }
  # A whole option can be copied.
  if (out ~ /^\\-/) {
    gsub(/\\-/, "-", out)
    gsub(/-/, "\\-", out)
  }
  return out
}

# Returns a text as it would be typed: each hyphen is a minus.
function roff_typed(text) {
  gsub(/\\/, "\\e", text)
  gsub(/-/, "\\-", text)
  return protected(text)
}

# A line that began with one of these would be a request.
function protected(text) { return (text ~ /^[.']/ ? "\\&" : "") text }
