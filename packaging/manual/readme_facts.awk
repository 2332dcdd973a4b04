# What the README says about the options and exit statuses of quorix, as lines "fact FLAG DEFAULT TEXT"
# and "status NUMBER TEXT", with tabs:
#
#   awk -f readme_facts.awk README.md
#
# Some help texts of quorix name defaults that are not in force, so a manual takes them from here.

function plain(cell) {
  gsub(/`/, "", cell)
  gsub(/\]\([^)]*\)/, "", cell)  # links keep their text
  gsub(/\[/, "", cell)
  sub(/^ +/, "", cell)
  sub(/ +$/, "", cell)
  return cell
}

BEGIN { FS = "|" }
/^## / { section = $0 }
section == "## Options" && /^\| `/ {
  count = split(plain($2), flags, /, /)
  printf "fact\t%s\t%s\t%s\n", flags[count], plain($3), plain($5)
  facts++
}
section == "## Exit statuses" && /^\| [0-9]/ {
  printf "status\t%s\t%s.\n", plain($2), plain($3)
  statuses++
}
END {
  if (facts == 0 || statuses == 0) {
    print "readme_facts: the tables of options and exit statuses were not found" >"/dev/stderr"
    exit 1
  }
}
