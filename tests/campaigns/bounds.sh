#!/bin/sh
# Measures what the dearest known files cost beside what they may, from a small size up to the
# limit of 2^26 pixels, and searches for dearer ones.
#
#   tests/campaigns/bounds.sh [SECONDS_OF_SEARCH]     60 seconds at each of two sizes
#
# Takes 3 GB of memory and about ten minutes at the largest size, most of them to write the files.
set -eu
cd "$(dirname "$0")/../.."

seconds=${1:-60}
out=build/campaigns
mkdir -p "$out"
{
  cmake -S . -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=Release -DMAROVIA_BUILD_CLI=OFF \
    -DMAROVIA_BUILD_WINDOW=OFF && cmake --build "$out" --target bounds_campaign
} >"$out/build.log" 2>&1 || { cat "$out/build.log" >&2; exit 1; }

status=0
bounds() { "$out/tests/campaigns/bounds_campaign" "$@" || status=1; }
bounds table 512 512 1
bounds table 4096 4096 1
bounds table 2048 32764 1
bounds search 256 "$seconds" 1
bounds search 512 "$seconds" 2
exit "$status"
