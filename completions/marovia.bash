# Completion of marovia and marovia-window for bash. What can follow is asked of the program's own
# --help, so that it is always that of the program in use.

# The commands, or the options of the command $2, that $1 tells of.
_marovia_words() {
  if [ -z "${2:-}" ]; then
    "$1" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
    printf '%s\n' --help --version
  else
    "$1" "$2" --help 2>/dev/null | sed -nE 's/^  (-[a-zA-Z],)?(--[a-z0-9-]+).*/\2/p'
  fi
}

# The values between which the option $3 of the command $2 chooses.
_marovia_values() {
  "$1" "$2" --help 2>/dev/null |
    sed -nE "s/^  (-[a-zA-Z],)?$3 ([^ ]+\|[^ ]+)( .*)?$/\2/p" | tr '|' '\n'
}

_marovia() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=
  if [ "$COMP_CWORD" -gt 1 ]; then command=${COMP_WORDS[1]}; fi
  local words=
  if [ -z "$command" ] || [[ $word == -* ]]; then
    words=$(_marovia_words "$1" "$command")
  elif [ "$before" = --format ]; then
    words="awb awa awd awf awg pgm bmp"
  elif [[ $before == --* ]]; then
    words=$(_marovia_values "$1" "$command" "$before")
  fi
  COMPREPLY=()
  if [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  else
    compopt -o default 2>/dev/null
  fi
}
complete -F _marovia marovia

_marovia_window() {
  local word=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  if [ "${COMP_WORDS[COMP_CWORD - 1]}" = --pad ]; then
    mapfile -t COMPREPLY < <(compgen -W "auto never" -- "$word")
  elif [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "--pad --help --help-all --version" -- "$word")
  else
    compopt -o default 2>/dev/null
  fi
}
complete -F _marovia_window marovia-window
