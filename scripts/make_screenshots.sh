#!/usr/bin/env bash
# Makes the pictures of docs/screenshots anew: the steps of the end-to-end run, at both scales.
#
#   scripts/make_screenshots.sh PROGRAM     such as build/run/window/marovia-window
set -euo pipefail
program=$(realpath "$1")
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
shots=$(mktemp -d)
trap 'rm -rf "$shots"' EXIT

for scale in 1 2; do
  QT_SCALE_FACTOR=$scale "$root/tests/window/end_to_end.sh" "$program" "$root" "$shots"
  for shot in "$shots"/*.png; do
    convert "$shot" -strip +dither -colors 256 -define png:compression-level=9 \
      "$root/docs/screenshots/$(basename "$shot" .png)_$scale.png"
  done
done
