#!/usr/bin/env bash
# The Python example with NumPy and without it: the same file comes out, and a picture.
#
#   python_example.sh LIBRARY ROOT
set -euo pipefail
export MAROVIA_LIBRARY=$1
root=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

run() { python3 "$root/examples/round_trip.py" "$root/Images/camera.pgm" 0.25; }

# A module of this name that cannot be imported hides an installed one.
echo 'raise ImportError' >"$folder/numpy.py"
PYTHONPATH=$folder run >"$folder/plain"
run >"$folder/any"
cmp "$folder/plain" "$folder/any"
grep -qE '^512 x 512: 81[89][0-9] bytes, PSNR (29|3[0-9])\.' "$folder/plain" || {
  cat "$folder/plain" >&2
  exit 1
}
# The library's words arrive as an exception.
! python3 "$root/examples/round_trip.py" "$root/Images/camera.pgm" nan 2>"$folder/error"
grep -q 'ValueError: .' "$folder/error"
