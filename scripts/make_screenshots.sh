#!/usr/bin/env bash
# Pictures of the window on a screen of 1280 x 800, from the steps of the end-to-end run: as it is
# (..._1), at twice the scale (_2), with letters of 18 points (_18), and dark (_dark). Those that docs/screenshots
# has are replaced there.
#
#   scripts/make_screenshots.sh PROGRAM FOLDER     such as build/run/window/marovia-window shots
set -euo pipefail
program=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
shots=$(mktemp -d)
trap 'rm -rf "$shots"' EXIT

take() {
  env "${@:2}" "$root/tests/window/end_to_end.sh" "$program" "$root" "$shots"
  for shot in "$shots"/*.png; do
    convert "$shot" -strip +dither -colors 256 -define png:compression-level=9 \
      "$folder/$(basename "$shot" .png)_$1.png"
  done
}
take 1 QT_SCALE_FACTOR=1
take 2 QT_SCALE_FACTOR=2
take 18 QT_SCALE_FACTOR=1 POINTS=18
take dark QT_SCALE_FACTOR=1 THEME=Dark

for kept in "$root"/docs/screenshots/*.png; do
  cp "$folder/$(basename "$kept")" "$kept"
done
