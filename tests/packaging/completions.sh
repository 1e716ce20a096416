#!/usr/bin/env bash
# Asks bash, zsh and fish, where they are there, what may follow on a command line.
#
#   completions.sh TOOL ROOT
set -euo pipefail
PATH=$(dirname "$1"):$PATH
folder=$2/completions

fail() {
  echo "completions.sh: $1" >&2
  exit 1
}
expect() {
  [[ " ${*:3} " == *" $2 "* ]] || fail "$1: no $2 among: ${*:3}"
}

# A folder of files to choose from.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir folder
touch 'a photo.PGM' b.bmp c.awf d.txt e.png
# only SHELL WANTED OFFERED: just these are offered, the folder apart
only() {
  local offered
  offered=$(printf '%s\n' "$3" | sed 's/\\//g' | grep -v '^folder' | sort | tr '\n' '|')
  [ "$offered" = "$2|" ] || fail "$1 offers $offered and not $2|"
}

compopt() { :; } # which only works while something is completed
# What bash offers for the last of these words.
ask_bash() {
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  _marovia marovia "${*: -1}"
}
# shellcheck source=/dev/null
. "$folder/marovia.bash"
ask_bash marovia co
expect bash compress "${COMPREPLY[@]}"
ask_bash marovia compress --
offered=("${COMPREPLY[@]}")
for option in $(marovia compress --help | grep -oE '^  (-.,)?--[a-z0-9-]+' | grep -oE '\--.*'); do
  expect bash "$option" "${offered[@]}"
done
ask_bash marovia compress --wavelet 2
[ "${COMPREPLY[*]}" = 2+2,2 ] || fail "bash: the wavelets are ${COMPREPLY[*]}"
ask_bash marovia decompress --format p
expect bash pgm "${COMPREPLY[@]}"
only_bash() {
  ask_bash "${@:2}"
  only bash "$1" "$(printf '%s\n' "${COMPREPLY[@]}")"
}
only_bash 'a photo.PGM|b.bmp|e.png' marovia compress ''
only_bash c.awf marovia compress --rate 1 -q b.bmp ''
only_bash b.bmp marovia compress x.pgm --output-dir folder b
only_bash c.awf marovia decompress -j 4 ''
only_bash 'a photo.PGM|b.bmp|e.png' marovia decompress c.awf ''
expect bash truncate "$(ask_bash marovia help tr; echo "${COMPREPLY[@]}")"

if command -v zsh >/dev/null; then
  # The functions that show what is offered print it instead.
  # shellcheck disable=SC2016 # zsh is to see it
  ask_zsh() {
    zsh -fc '_describe() { print -l -- ${(P)@[-1]%%:*} }; compadd() { print -l -- $@ }
      _files() { print -l -- FILES ${~@[-1]} }; file=$1; shift; words=("$@"); CURRENT=$#; service=marovia; . $file' \
      zsh "$folder/_marovia" "$@" | tr '\n' ' '
  }
  expect zsh truncate "$(ask_zsh marovia tr)"
  expect zsh --lossless "$(ask_zsh marovia compress --)"
  expect zsh never "$(ask_zsh marovia compress --pad '')"
  expect zsh b.bmp "$(ask_zsh marovia compress '')"
  expect zsh 'FILES c.awf' "$(ask_zsh marovia compress --rate 1 -q b.bmp '')"
  expect zsh 'FILES c.awf' "$(ask_zsh marovia decompress -j 4 '')"
fi
if command -v fish >/dev/null; then
  # shellcheck disable=SC2016 # fish is to see it
  fish_lines() { fish -N -c 'source $argv[1]; complete -C $argv[2]' "$folder/marovia.fish" "$1" | cut -f 1; }
  ask_fish() { fish_lines "$1" | tr '\n' ' '; }
  expect fish truncate "$(ask_fish 'marovia tr')"
  expect fish --lossless "$(ask_fish 'marovia compress --lo')"
  expect fish never "$(ask_fish 'marovia compress --pad n')"
  only fish 'a photo.PGM|b.bmp|e.png' "$(fish_lines 'marovia compress ')"
  only fish c.awf "$(fish_lines 'marovia compress --rate 1 -q b.bmp ')"
  only fish c.awf "$(fish_lines 'marovia decompress -j 4 ')"
fi
