# Completion of marovia and marovia-window for bash. What can follow is asked of the program's own
# --help, so that it is always that of the program in use.

_marovia_images="png tif tiff jpg jpeg pgm ppm pbm pnm pam bmp dib"
_marovia_written="pgm bmp png tiff tif"
_marovia_packed="aw?"

_marovia_commands() {
  "$1" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
}

# The options that the help of a command, $1, tells of; with $2 those that take a value.
_marovia_options() {
  sed -nE "s/^  ((-[a-zA-Z]),)?(--[a-z0-9-]+)${2:+ [^ ]}.*/${2:+\2 }\3/p" <<<"$1"
}

# The values between which the option $2 chooses.
_marovia_values() {
  sed -nE "s/^  (-[a-zA-Z],)?$2 ([^ ]+\|[^ ]+)( .*|$)/\2/p" <<<"$1" | tr '|' '\n'
}

# The extensions of the file that comes behind $2 others.
_marovia_extensions() {
  case $1,$2 in
    compress,0 | curve,0 | measure,* | difference,[01]) echo "$_marovia_images" ;;
    compress,* | truncate,* | info,* | decompress,0 | thumbnail,0) echo "$_marovia_packed" ;;
    decompress,* | difference,* | thumbnail,*) echo "$_marovia_written" ;;
    curve,*) echo "svg tsv" ;;
  esac
}

# Files with one of the extensions $2, in either case, and folders, that begin with $1.
_marovia_files() {
  local extension
  shopt -s nocasematch
  for extension in $2; do compgen -f -X "!*.$extension" -- "$1" || true; done
  compgen -d -- "$1" || true
}

# How many files the words name so far. With --output-dir all are inputs.
_marovia_named() {
  local with_value word skip='' count=0
  with_value=" $(_marovia_options "$1" value | tr '\n' ' ') "
  for word in "${COMP_WORDS[@]:2:COMP_CWORD-2}"; do
    if [ -n "$skip" ]; then
      skip=
    elif [ "$word" = --output-dir ]; then
      echo 0
      return
    elif [[ $word == -?* ]]; then
      if [[ $with_value == *" $word "* ]]; then skip=yes; fi
    else
      count=$((count + 1))
    fi
  done
  echo "$count"
}

_marovia() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local command=${COMP_WORDS[1]} words='' help
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    words="$(_marovia_commands "$1") help --help --version"
  elif [ "$command" = help ]; then
    words=$(_marovia_commands "$1")
  else
    help=$("$1" "$command" --help 2>/dev/null)
    case $word,$before in
      -*) words=$(_marovia_options "$help") ;;
      *,--output-dir | *,--mirror | *,--against)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        return
        ;;
      *,--*) words=$(_marovia_values "$help" "$before") ;;
    esac
  fi
  if [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    return
  fi
  # Any file where none fits: what an image is, its content tells.
  compopt -o filenames -o default 2>/dev/null
  mapfile -t COMPREPLY < <(_marovia_files "$word" \
    "$(_marovia_extensions "$command" "$(_marovia_named "$help")")")
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
    compopt -o filenames -o default 2>/dev/null
    mapfile -t COMPREPLY < <(_marovia_files "$word" "pgm bmp $_marovia_packed")
  fi
}
complete -F _marovia_window marovia-window
