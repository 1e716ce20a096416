#!/usr/bin/env bash
# Runs every coder with every wavelet, and the commands of the tool, under valgrind: no use of what is
# not there or was never written, nothing lost.
#
#   memory.sh TOOL CAMPAIGN
set -euo pipefail

tool=$(realpath "$1")
campaign=$(realpath "$2")
command -v valgrind >/dev/null || {
  echo "valgrind is not installed"
  exit 77
}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

checked() {
  valgrind -q --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite,possible "$@"
}

{ echo 'P2 37 21 255' && seq 0 776 | awk '{ print ($1 * $1) % 251 }'; } >in.pgm
checked "$campaign" digest 1 1 small >digest
"$campaign" digest 1 1 small | cmp - digest
checked "$tool" compress in.pgm a.awf --verify --json >/dev/null
checked "$tool" truncate a.awf - --rate 0.25 >b.awf
checked "$tool" decompress b.awf b.bmp -q
checked "$tool" measure in.pgm b.bmp >/dev/null
status=0
checked "$tool" info in.pgm --format awf >/dev/null 2>&1 || status=$?
[ "$status" -eq 5 ]
echo "every coder with every wavelet and 5 runs of the tool: no errors, nothing lost"
