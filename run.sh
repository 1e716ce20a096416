#!/usr/bin/env bash
# Builds Marovia and runs it: the window where there is a display, else every image of Images/, or
# the images named, there and back as a table. Or the studio as a page of this machine alone.
#
#   ./run.sh web                   builds the page, serves it, and prints its address
#   ./run.sh                       all sample images
#   ./run.sh photo.pgm scan.bmp    these images
#   ./run.sh --rates 0.1,0.2       with options of the table (--help lists them)
set -euo pipefail
started_in=$PWD
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$root"

if [ "${1:-}" = web ]; then
  scripts/install_packages.sh web
  scripts/build_web.sh
  cd web/studio
  exec ../node_modules/.bin/vite preview --host 127.0.0.1 "${@:2}"
fi

scripts/install_packages.sh build
# Tests are not built here, so that a machine without the test packages gets along.
build=build/run
scripts/with_progress.sh Configuring cmake --preset release -B "$build" -DMAROVIA_BUILD_TESTS=OFF
scripts/with_progress.sh Building cmake --build "$build"

cd "$started_in"
window=$root/$build/window/marovia-window
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x "$window" ]; then
  exec "$window" "$@"
fi

named=0
for word in "$@"; do
  if [ -f "$word" ]; then named=$((named + 1)); fi
done
if [ "$named" -eq 0 ]; then set -- "$root"/Images/*.pgm "$@"; fi
exec "$root/$build/bench/marovia_round_trip" "$@"
