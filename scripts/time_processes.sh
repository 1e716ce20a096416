#!/usr/bin/env bash
# Times whole processes in pairs: the tool beside opj_compress and opj_decompress, each pair one after
# the other, in processor time. Prints the median ratio of the pairs.
#
#   scripts/time_processes.sh TOOL IMAGE.pgm [PAIRS]
set -euo pipefail

tool=$1
image=$2
pairs=${3:-9}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Processor time of a command, in milliseconds.
cost() {
  TIMEFORMAT='%U %S'
  { time "$@" >/dev/null 2>&1; } 2>&1 | awk '{ print 1000 * ($1 + $2) }'
}

# Where: peer's command, ours.
pair() {
  local name=$1 theirs=$2 ours=$3
  for ((i = 0; i < pairs; ++i)); do
    # shellcheck disable=SC2086 # the words of a command
    echo "$(cost $theirs) $(cost $ours)"
  done | awk '{ print $1 / $2, $1, $2 }' | sort -n | awk -v name="$name" '
    { line[NR] = $0 }
    END { split(line[int((NR + 1) / 2)], m, " ")
          printf "| %s | %.0f ms | %.0f ms | %.2f |\n", name, m[3], m[2], m[1] }'
}

echo "| whole process | marovia | OpenJPEG | times as fast |"
echo "|---|---|---|---|"
pair "compress, 0.5 bits per pixel" "opj_compress -i $image -o $work/a.j2k -r 16 -I" \
  "$tool compress $image $work/a.awf -f -T 1"
pair "decompress" "opj_decompress -i $work/a.j2k -o $work/a.pgm" \
  "$tool decompress $work/a.awf $work/b.pgm -f -T 1"
pair "compress, lossless" "opj_compress -i $image -o $work/l.j2k" \
  "$tool compress $image $work/l.awg -f -T 1"
pair "decompress, lossless" "opj_decompress -i $work/l.j2k -o $work/l.pgm" \
  "$tool decompress $work/l.awg $work/m.pgm -f -T 1"
