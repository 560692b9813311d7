#!/usr/bin/env bash
# completion.sh TINTWERK: completes command lines in bash, zsh and fish, as a person at a terminal would.
set -euo pipefail
scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../host/completion" && pwd)
PATH=$(cd "$(dirname "$1")" && pwd):$PATH
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
cd "$work"
touch photo-one.jpg

in_bash() {
  bash --norc -c 'source "$1/tintwerk.bash"; read -ra COMP_WORDS <<<"$2"; [[ $2 != *" " ]] || COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tintwerk; printf "%s\n" "${COMPREPLY[@]}"' - "$scripts" "$1"
}
in_fish() { HOME=$work fish --no-config -c "source $scripts/tintwerk.fish; complete -C '$1'" | cut -f 1; }
# A terminal of zsh's own, in which the line is typed, a tab after it, and what comes out is read. The command itself is
# not run: its messages may hold the same words.
in_zsh() {
  HOME=$work zsh -f -c 'zmodload zsh/zpty; zpty shell "TERM=dumb zsh -f -i"
    zpty -w shell "PROMPT=; fpath=($1 \$fpath); autoload -U compinit; compinit -u -D; LISTMAX=999; stty -echo; echo READY"
    zpty -r shell out "*READY*READY*"
    zpty -w -n shell "true || $2"$'"'\\t'"'; sleep 1; zpty -w -n shell $'"'\\n'"'; zpty -w shell "echo END"; sleep 1
    zpty -r shell out "*END*"; print -r -- "$out"' - "$scripts" "$1" | tr '\r' '\n'
}

expect() { # LINE WORD: the word is among what completes the line, in all shells
  local shell
  for shell in bash fish zsh; do
    in_$shell "$1" >out.txt || true
    grep -q -- "$2" out.txt || { echo "$shell does not complete '$1' to '$2':"; cat out.txt; exit 1; }
  done
}
expect "tintwerk app" "apply"
expect "tintwerk apply faded-m" "faded-memory"
expect "tintwerk apply huiyi --skip" "--skip-existing"
expect "tintwerk list --category Bla" "BlackAndWhite"
expect "tintwerk filter selective --family mag" "magenta"
# Where only files fit, there are files. (bash offers them by itself, for which it needs a terminal.)
in_fish "tintwerk apply huiyi pho" | grep -q photo-one.jpg
in_zsh "tintwerk apply huiyi pho" | grep -q photo-one.jpg
[ -z "$(in_bash "tintwerk apply huiyi pho")" ]
echo "bash, zsh and fish complete the command"
