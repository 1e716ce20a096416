#!/usr/bin/env bash
# Builds the fuzzers with clang and runs all of them, some side by side, and prints what they did as
# a table. What they learn stays in build/fuzz/corpus for the next run.
#
#   tests/campaigns/fuzz.sh [SECONDS [SIDE_BY_SIDE]]     60 seconds in all on all processors
#
# Exit status 1 where an input failed; it is then named, and lies in build/fuzz/findings.
set -euo pipefail
cd "$(dirname "$0")/../.."

seconds=${1:-60}
lanes=${2:-$(nproc)}
out=build/fuzz
# The longest input worth trying, by target.
declare -A longest=([decode]=2048 [cut]=2048 [read_images]=2048
  [read_pictures]=2048 [round_trip]=512
  [decode_plainly]=512 [encode_plainly]=384)
# The plain codec is the slowest, so it goes first.
targets=(decode_plainly encode_plainly round_trip cut decode read_pictures read_images)

scripts/install_packages.sh build fuzz
cmake --preset fuzz >"$out.log" 2>&1 || { cat "$out.log" >&2; exit 1; }
cmake --build --preset fuzz >"$out.log" 2>&1 || { cat "$out.log" >&2; exit 1; }
"$out/fuzz/fuzz_seeds" tests/data "$out/seeds"
mkdir -p "$out/findings" "$out/logs"

# Little memory is held back to catch late uses, so that the peak is that of the codec; short records
# of where it was allocated, and inputs chosen without weighing how rare they are, for speed.
export ASAN_OPTIONS=quarantine_size_mb=16:malloc_context_size=2

run_target() {
  local target=$1 found=()
  [ ! -d "tests/data/findings/$target" ] || found=("tests/data/findings/$target")
  mkdir -p "$out/corpus/$target"
  "$out/fuzz/fuzz_$target" "$out/corpus/$target" "$out/seeds/$target" "${found[@]}" \
    -max_total_time="$each" -max_len="${longest[$target]}" -timeout=10 -rss_limit_mb=1024 -entropic=0 \
    -print_final_stats=1 -artifact_prefix="$out/findings/$target-" >"$out/logs/$target" 2>&1 ||
    echo failed >>"$out/logs/$target"
}

statistic() { sed -n "s/^stat::$2: *//p" "$out/logs/$1"; }

rounds=$(((${#targets[@]} + lanes - 1) / lanes))
each=$((seconds / rounds > 0 ? seconds / rounds : 1))
for ((first = 0; first < ${#targets[@]}; first += lanes)); do
  for target in "${targets[@]:first:lanes}"; do run_target "$target" & done
  wait
done

status=0
total=0
echo "| Target | Executions | Seconds | Executions a second | Peak memory (MiB) | Failed |"
echo "|---|---|---|---|---|---|"
for target in "${targets[@]}"; do
  failed=no
  if grep -q '^failed$' "$out/logs/$target"; then
    failed=$(sed -n 's/.*Test unit written to //p' "$out/logs/$target" | head -n 1)
    status=1
  fi
  executions=$(statistic "$target" number_of_executed_units)
  total=$((total + ${executions:-0}))
  echo "| $target | ${executions:-?} | $each | $(statistic "$target" average_exec_per_sec) |" \
    "$(statistic "$target" peak_rss_mb) | $failed |"
done
echo "| all | $total | $((each * ${#targets[@]})) | | | |"
exit "$status"
