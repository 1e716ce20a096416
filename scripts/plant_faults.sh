#!/usr/bin/env bash
# Proves the tests: plants the faults of scripts/faults.tsv one at a time in a clone of the last
# commit, builds it, and tells which test catches each.
#
#   scripts/plant_faults.sh CLONE [FAULT...]
#
# CLONE is a folder of its own, made where there is none; what it holds is replaced. Without names
# all faults are planted, after the tests have passed without one. A line for each goes to standard
# output: its room, its name, and the test that caught it, or that none did.
set -euo pipefail
[ $# -gt 0 ] || { sed -n '2,9s/^# \?//p' "$0"; exit 2; }

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mkdir -p "$1"
clone=$(cd "$1" && pwd)
build=$clone/build/faults
shift
log=$build/planted.log
sources=('*.cpp' '*.h' ':!tests' ':!fuzz' ':!bench' ':!examples')
readonly seconds_for_a_program=180

renew() {
  [ -d "$clone/.git" ] || git clone -q "$root" "$clone"
  git -C "$clone" fetch -q "$root" HEAD
  git -C "$clone" checkout -q --force --detach FETCH_HEAD
  cmake -S "$clone" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS \
    -DMAROVIA_BUILD_BENCH=OFF >/dev/null
}

faults() { # of these names, or all
  local wanted=" $* "
  while IFS=$'\t' read -r name rest; do
    if [[ $name != '#'* && ($wanted == '  ' || $wanted == *" $name "*) ]]; then
      printf '%s\t%s\n' "$name" "$rest"
    fi
  done <"$root/scripts/faults.tsv"
}

# Texts are exact, so each must be found once, wherever its code has moved.
check() {
  local status=0 name text count
  while IFS=$'\t' read -r name _ text _; do
    count=$({ git -C "$clone" grep -ohF -e "$text" -- "${sources[@]}" || true; } | wc -l)
    [ "$count" = 1 ] || { echo "$name: its text is found $count times" >&2; status=1; }
  done
  return $status
}

restore() { git -C "$clone" checkout -q -- .; }

plant() { # text replacement
  local file
  file=$clone/$(git -C "$clone" grep -lF -e "$1" -- "${sources[@]}")
  TEXT=$1 WITH=$2 perl -0pi -e 's/\Q$ENV{TEXT}\E/$ENV{WITH}/' "$file"
}

# The programs that most likely catch a fault of a room, and are quick.
likely_programs() {
  case $1 in
    files | cli) echo test_cli ;;
    capi) echo c_interface_test ;;
    base | image | pictures | chart | app | window | qtplugin) echo "test_$1" ;;
    *) echo test_golden test_codec "test_$1" ;;
  esac
}

builds() { cmake --build "$build" "$@" >"$log" 2>&1; }

program_file() { find "$build" -name "$1" -type f -executable; }

# By one program, which ends at its first failure.
caught_by() { # program
  local program test status=0
  program=$(program_file "$1")
  (cd "$build" && timeout "$seconds_for_a_program" "$program" --gtest_fail_fast) >"$log" 2>&1 || status=$?
  [ $status != 0 ] || return 1
  test=$(grep -aoP '^\[  FAILED  \] \K\S+' "$log" | head -1 || true)
  [ -n "$test" ] || test=$(grep -aoP '^\[ RUN      \] \K\S+' "$log" | tail -1 || true)
  echo "caught by ${test:-$1}$([ $status != 124 ] || echo ' (it hangs)')"
}

# A test counts that fails twice: those of the window's display may fail once on a busy machine.
caught_by_any() {
  ctest --test-dir "$build" --stop-on-failure --repeat until-pass:2 --parallel "$(nproc)" \
    --timeout "$seconds_for_a_program" >"$log" 2>&1 && return 1
  echo "caught by $(grep -aoP '^\s+\d+ - \K\S+(?= \((?!Skipped|Not Run))' "$log" | head -1)"
}

verdict() { # room
  local program
  for program in $(likely_programs "$1"); do
    [ -n "$(program_file "$program")" ] || continue
    builds --target "$program" || { echo "does not build"; return; }
    caught_by "$program" && return
  done
  builds || { echo "does not build"; return; }
  caught_by_any || echo missed
}

renew
faults "$@" | check
trap restore EXIT
builds || { echo "It does not build without a fault; see $log" >&2; exit 1; }
if [ $# = 0 ]; then
  ! caught_by_any >&2 || { echo "Without a fault, that is; see $log" >&2; exit 1; }
fi
faults "$@" | while IFS=$'\t' read -r name room text replacement; do
  plant "$text" "$replacement"
  printf '%s\t%s\t%s\n' "$room" "$name" "$(verdict "$room" </dev/null)"
  restore
done
