#!/usr/bin/env bash
# Measures Marovia beside its peers, and prints the ratios against the goals, the memory and the
# times. Takes some minutes; run it on a machine that does nothing else.
#
#   ./bench.sh            prints the figures
#   ./bench.sh --write    puts ratios and memory into docs/performance.md too, which name the commit
#   ./bench.sh [--write] --benchmark_filter=awf    options of Google Benchmark
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

write=false
if [ "${1:-}" = --write ]; then
  write=true
  shift
  git diff --quiet HEAD || {
    echo "bench.sh: commit first" >&2
    exit 2
  }
fi

scripts/install_packages.sh build bench
cmake --preset bench >/dev/null
cmake --build --preset bench --target marovia_bench >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
load=$(cut -d ' ' -f 1 /proc/loadavg)
# All repetitions of all benchmarks in random order: a disturbance strikes every contestant.
build/bench/bench/marovia_bench Images/camera.pgm Images/astronaut.pgm \
  --figures "$work/tables" --benchmark_enable_random_interleaving=true \
  --benchmark_repetitions=15 --benchmark_min_time=0.02 \
  --benchmark_report_aggregates_only=true "$@" >"$work/log" || {
  cat "$work/log" >&2
  exit 1
}

{
  echo "Measured by bench.sh on $(date -u +%Y-%m-%d), at $(git describe --always), on"
  echo "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1) ($(nproc) processors), built by"
  echo "$(c++ --version | head -n 1), Release. Load average: $load at the start,"
  echo "$(cut -d ' ' -f 1 /proc/loadavg) at the end; above 1, other work took part of the machine."
  echo "Times are medians of 15 repetitions, of processor time."
  echo
  cat "$work/tables"
} >"$work/figures"
cat "$work/figures"

if $write; then
  sed -i '/^Codecs:/,$d' "$work/figures"
  awk -v figures="$work/figures" '
    /<!-- end of figures -->/ { skip = 0 }
    !skip
    /<!-- figures -->/ {
      skip = 1
      print ""
      while ((getline line < figures) > 0) print line
    }
  ' docs/performance.md >"$work/page"
  cp "$work/page" docs/performance.md
fi
