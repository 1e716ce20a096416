#!/usr/bin/env bash
# Runs the first recipe of docs/many_files.md for GNU parallel as it stands, on a small folder, and
# compares with a run without it.
#
#   tests/cli/recipe.sh TOOL
set -euo pipefail
tool=$(realpath "$1")
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir bin images
ln -s "$tool" bin/marovia
export PATH=$work/bin:$PATH HOME=$work

for i in $(seq 25); do cp "$root/tests/data/images/grey.pgm" "images/a $i.pgm"; done
awk '/^```sh/ { block = 1; next } /^```/ && block { exit } block' "$root/docs/many_files.md" >recipe
grep -q parallel recipe
bash -eu recipe
marovia compress -q images/*.pgm --output-dir plain
diff -r packed plain
