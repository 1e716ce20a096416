#!/bin/sh
# Cuts and damages a file of each kind in every way that damage_campaign knows, two kinds side by
# side: every length of camera.pgm's file, 100,000 files with bits flipped, forged headers with all
# level and exponent bytes.
#
#   tests/campaigns/damage.sh [FLIPS [KIND...]]
set -eu
cd "$(dirname "$0")/../.."

flips=${1:-100000}
[ $# -eq 0 ] || shift
[ $# -gt 0 ] || set -- awg awb awa awd awf awc awh
out=build/campaigns
mkdir -p "$out"
{
  cmake -S . -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=Release -DMAROVIA_BUILD_CLI=OFF \
    -DMAROVIA_BUILD_WINDOW=OFF && cmake --build "$out" --target damage_campaign
} >"$out/build.log" 2>&1 || { cat "$out/build.log" >&2; exit 1; }

# The lossless file is the longest, so it goes first.
printf '%s\n' "$@" |
  xargs -P 2 -I KIND "$out/tests/campaigns/damage_campaign" Images/camera.pgm KIND 1 "$flips" 14
