#!/bin/sh
# Damages files in every way, or measures what the dearest known files cost beside what they may.
#
#   tests/campaigns/campaign.sh damage [FLIPS [KIND...]]
#       each kind, two side by side: every length of camera.pgm's file, 100,000 files with bits
#       flipped, headers with all level and exponent bytes
#   tests/campaigns/campaign.sh bounds
#       from a small size up to the limit of 2^26 pixels: 3 GB of memory, some minutes
set -eu
cd "$(dirname "$0")/../.."

what=${1:?damage or bounds}
shift
out=build/campaigns
mkdir -p "$out"
{
  cmake -S . -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=Release -DMAROVIA_BUILD_CLI=OFF \
    -DMAROVIA_BUILD_WINDOW=OFF && cmake --build "$out" --target campaign bounds_campaign
} >"$out/build.log" 2>&1 || { cat "$out/build.log" >&2; exit 1; }

damage() {
  flips=${1:-100000}
  [ $# -eq 0 ] || shift
  # The lossless file is the longest, so it goes first.
  [ $# -gt 0 ] || set -- awg awb awa awd awf awc awh
  printf '%s\n' "$@" |
    xargs -P 2 -I KIND "$out/tests/campaigns/campaign" damage Images/camera.pgm KIND 1 "$flips"
}

bounds() {
  status=0
  for size in '512 512' '4096 4096' '2048 32764'; do
    # shellcheck disable=SC2086  # two words
    "$out/tests/campaigns/bounds_campaign" $size 1 || status=1
  done
  return "$status"
}

"$what" "$@"
