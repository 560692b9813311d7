# Completion of tintwerk for bash. The program itself knows what may follow.
_tintwerk() {
  local candidate meaning
  COMPREPLY=()
  while IFS=$'\t' read -r candidate meaning; do
    COMPREPLY+=("$candidate")
  done < <("${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}
complete -o bashdefault -o default -F _tintwerk tintwerk
