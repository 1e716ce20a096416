#!/bin/sh
# Measures the codec on the images of Images/ and writes docs/results.md. Takes some minutes; run it
# on a machine that does nothing else.
#
#   scripts/make_results.sh [BUILD_FOLDER [CAMPAIGN_IMAGES [RUNS]]]
#
# Nothing may be uncommitted, since the page names the commit.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
git -C "$root" diff --quiet HEAD || { echo "make_results.sh: commit first" >&2; exit 2; }
build=${1:-$root/build/results}
campaign_images=${2:-20000}
runs=${3:-9}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DMAROVIA_BUILD_BENCH=ON >/dev/null
cmake --build "$build" --target marovia_round_trip campaign >/dev/null
# The comparison with others is left out where their libraries, or Google Benchmark, are missing.
peers=$build/bench/marovia_bench
if cmake --build "$build" --target marovia_bench >/dev/null 2>&1; then
  "$peers" "$root"/Images/*.pgm --quality >"$work/quality"
fi

lossy=awb,awa,awd,awf,awc,awh
lossy_head="| image | bits per pixel | $(printf %s "$lossy" | sed 's/,/ | /g') |
|---|---|$(printf %s "$lossy" | sed 's/[a-z]*,\{0,1\}/---|/g')"

load=$(cut -d ' ' -f 1 /proc/loadavg)

# measure IMAGES OPTIONS... prints the table without its head. The images come first: an option with
# several values would take them.
measure() {
  "$build/bench/marovia_round_trip" "$@" --tsv --repeat "$runs" >"$work/table"
  tail -n +2 "$work/table"
}
# Columns: image, size, coder, wavelet, bpp, bytes, PSNR, compress ms, decompress ms.
measure "$root"/Images/*.pgm --kinds awg,awh --lossless --wavelets 5/3 \
  --wavelets 2+2,2 >"$work/lossless"
measure "$root"/Images/*.pgm --kinds "$lossy" --wavelets 9/7 --rates 0.25,0.5,1 >"$work/lossy"
measure "$root/Images/camera.pgm" --kinds awb --wavelets 9/7 --wavelets 5/3 --wavelets 2+2,2 \
  --rates 0.25,0.5,1 >"$work/wavelets"
"$build/tests/campaigns/campaign" lossless "$campaign_images" 1 >"$work/campaign"

# The rows of a table with one line an image and rate, and a cell for each coder: the columns
# named, joined by " / ". Rows of one image and rate come coder by coder, all rates of one after
# another.
by_coder() {
  awk -F '\t' -v fields="$1" '
    BEGIN { n = split(fields, field, " ") }
    {
      # The rate that was asked for: what a file has is a few bytes off it.
      rate = $5 < 0.37 ? "0.25" : $5 < 0.75 ? "0.5" : "1"
      key = $1 " | " rate
      if (!(key in cells)) order[++count] = key
      text = $(field[1])
      for (i = 2; i <= n; ++i) text = text " / " $(field[i])
      cells[key] = cells[key] " " text " |"
    }
    END { for (i = 1; i <= count; ++i) print "| " order[i] " |" cells[order[i]] }
  ' "$work/lossy"
}

# One line an image (and rate, in a lossy table), a column for each coder, named in the first row.
quality_table() {
  awk -F '\t' -v lossless="$1" '
    (($7 == "exact") == lossless) {
      key = lossless ? $1 : $1 " | " $5
      coder = lossless && $4 != "-" ? $3 " " $4 : $3
      if (!(key in cells)) order[++count] = key
      if (!(coder in seen)) { seen[coder] = 1; head = head " " coder " |"; rule = rule "---|" }
      cells[key] = cells[key] " " (lossless ? $5 : $7) " |"
    }
    END {
      print lossless ? "| image |" head : "| image | bits per pixel |" head
      print lossless ? "|---|" rule : "|---|---|" rule
      for (i = 1; i <= count; ++i) print "| " order[i] " |" cells[order[i]]
    }
  ' "$work/quality"
}

cat >"$root/docs/results.md" <<END
# Results

Made by scripts/make_results.sh on $(date -u +%Y-%m-%d), at $(git -C "$root" describe --always), on
$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1) ($(nproc) processors, one of them used), built by
$(c++ --version | head -n 1), Release. Levels are those that the codec chooses by itself.
The load average was $load at the start; above 1, other work took part of the machine.
Times are for bytes in memory and the fastest of $runs runs: what disturbs a run only ever slows it.

The images are those of Images/: $(awk -F '\t' '!seen[$1]++ { printf "%s%s (%s)", sep, $1, $2; sep = ", " }' "$work/lossless").

## Lossless

| image | coder | wavelet | bytes | bits per pixel | compress ms | decompress ms |
|---|---|---|---|---|---|---|
$(awk -F '\t' '{ print "| " $1 " | " $3 " | " $4 " | " $6 " | " $5 " | " $8 " | " $9 " |" }' "$work/lossless")

2+2,2 is what a lossless file gets unless told: most photographs come out up to 1 % shorter. Pages of
text and drawings come out 3 to 25 % shorter with 5/3. \`--wavelet best\` codes with both at once and
keeps the shorter file.

Every one of them comes back bit for bit. So did all of a campaign over seeded random, structured,
flat and hard-edged images of 3 to 256 pixels a side, with both integer wavelets and every number of
levels:

    $(cat "$work/campaign")

## Lossy, 9/7

PSNR in decibels:

$lossy_head
$(by_coder 7)

Milliseconds to compress / to decompress:

$lossy_head
$(by_coder "8 9")

## Wavelets

camera.pgm as awb:

| wavelet | bits per pixel | bytes | PSNR | compress ms | decompress ms |
|---|---|---|---|---|---|
$(awk -F '\t' '{ print "| " $4 " | " $5 " | " $6 " | " $7 " | " $8 " | " $9 " |" }' "$work/wavelets")
END

if [ -s "$work/quality" ]; then
  cat >>"$root/docs/results.md" <<END

## Beside others

PSNR in decibels, 9/7 wavelets on both sides. Ours may have as many bytes as the file that OpenJPEG
makes when it is asked for the rate:

$(quality_table 0)

Lossless, bits per pixel:

$(quality_table 1)
END
fi
