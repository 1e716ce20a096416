#!/usr/bin/env bash
# A run over many images, two at a time, that is killed twice, interrupted once and resumed ends with
# the same bytes as one that was left alone.
#
#   tests/campaigns/resume.sh TOOL CAMPAIGN [COUNT]     2000 images unless told
set -euo pipefail
tool=$(realpath "$1")
campaign=$(realpath "$2")
count=${3:-2000}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
shopt -s nullglob

fail() {
  echo "resume.sh: $1" >&2
  exit 1
}

mkdir images
"$campaign" images "$count" images
find images -name '*.pgm' -print0 >list
run() { "$tool" compress --files0-from list --output-dir "$1" -j 2 --skip-existing; }
done_in() { find "$1" -name '*.awh' | wc -l; }

run undisturbed

# interrupt SIGNAL EIGHTHS: starts the run and strikes when so much is there.
interrupt() {
  # Not by the function: the signal must strike the tool itself.
  "$tool" compress --files0-from list --output-dir killed -j 2 --skip-existing &
  local process=$!
  local there=()
  until [ ${#there[@]} -ge $(($2 * count / 8)) ]; do there=(killed/*.awh); done
  kill "-$1" "$process" || fail "the run ended before it could be struck"
  wait "$process" 2>/dev/null && fail "the kill came too late"
  echo "$1 with $(done_in killed) of $count files there"
}
strays() { find killed -name '.*' -type f; }

interrupt KILL 1
strays | xargs -r rm # what no program can prevent
interrupt TERM 2
[ -z "$(strays)" ] || fail "an interrupt left a stray file"
interrupt KILL 3
strays | xargs -r rm
run killed

diff -r undisturbed killed || fail "the bytes differ"
[ "$(done_in killed)" -eq "$count" ] || fail "files are missing"
echo "$count files, the same bytes"
