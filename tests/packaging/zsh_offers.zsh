# Prints what zsh offers where the key for completion is pressed at the end of a line, one a line:
#
#   zsh --no-rcs zsh_offers.zsh FOLDER LINE
#
# FOLDER has the completions. An interactive shell reads the line as if it was typed. It sources this
# file too: every offer goes through compadd, which is replaced there by one that notes it.

if [[ -o interactive ]]; then
  PS1= PS2= RPS1=
  fpath=($QUORIX_COMPLETIONS $fpath)
  autoload -U compinit && compinit -D -u
  setopt no_beep no_list_beep no_auto_list
  compadd() {
    # -O, -A and -D collect words for another call, which is the one that offers them.
    if (( $@[(I)-[OAD]] )); then
      builtin compadd "$@"
      return
    fi
    local -a quorix_offers
    builtin compadd -O quorix_offers "$@"
    print -rl -- $quorix_offers >>$QUORIX_NOTES
    builtin compadd "$@"
  }
  note_and_clear() {
    zle complete_word_by_notes
    BUFFER=
    print ready >>$QUORIX_NOTES
  }
  zle -C complete_word_by_notes complete-word _main_complete
  zle -N note_and_clear
  bindkey '^T' note_and_clear
  print started >>$QUORIX_NOTES
  return
fi

zmodload zsh/zpty
self=${0:A}
notes=$(mktemp)
trap 'rm -f -- $notes' EXIT
export QUORIX_NOTES=$notes QUORIX_COMPLETIONS=$1 TERM=dumb

# wait_for WORD: until the other shell has noted it.
wait_for() {
  local -i tries
  local output
  for ((tries = 0; tries < 400; ++tries)); do
    if grep --quiet "^$1\$" $notes; then return 0; fi
    while zpty -r -t shell output; do :; done # its output must not fill the pipe
    sleep 0.05
  done
  print -u2 "zsh_offers: the shell did not answer"
  exit 1
}

zpty shell zsh --no-rcs --interactive
zpty -w shell "source ${(q)self}"
wait_for started
: >$notes
zpty -w -n shell "$2"$'\C-T'
wait_for ready
sed -e '/^ready$/d' -e '/^$/d' -- $notes
zpty -d shell
