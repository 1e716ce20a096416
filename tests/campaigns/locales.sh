#!/usr/bin/env bash
# Runs the tool and tests in locales that write numbers and letters otherwise: files, pictures,
# reports, JSON and messages must be what they are without.
#
#   locales.sh ENTER_LOCALE TOOL TEST...      ENTER_LOCALE: the library that takes up the locale
#
# The locales are made in a folder of the script's own.
set -euo pipefail

enter=$(realpath "$1")
tool=$(realpath "$2")
tests=("${@:3}")

if ! command -v localedef >/dev/null || [ ! -d /usr/share/i18n/locales ]; then
  echo "The package locales is not installed"
  exit 77
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for locale in de_DE tr_TR ar_EG; do
  mkdir -p "$scratch/locales"
  localedef -i "$locale" -f UTF-8 "$scratch/locales/$locale.UTF-8"
done

# in_locale NAME COMMAND...
in_locale() {
  local name=$1
  shift
  env LC_ALL="$name" LANG="$name" LOCPATH="$scratch/locales" LD_PRELOAD="$enter" "$@"
}

# All that the tool says and writes goes to files of the current folder.
use_tool() {
  local name=$1 n=0
  local run=(in_locale "$name" "$tool")
  { echo 'P2 48 32 255' && seq 0 1535 | awk '{ print ($1 * $1) % 251 }'; } >in.pgm
  while read -r words; do
    n=$((n + 1))
    # shellcheck disable=SC2086  # one line, several words
    "${run[@]}" $words >"out$n" 2>"err$n" || echo "status $?" >>"err$n"
  done <<'END'
compress in.pgm a.awf --rate 1.25 --json -v
compress in.pgm b.awg --lossless --json -v
compress in.pgm c.awb --method wdr --coding binary --rate 0.75 --region 2,3,20,30 --share 0.625 -v
decompress a.awf a.bmp --rate 0.8125 --json -v
decompress b.awg b.pgm --json -v
measure in.pgm b.pgm
measure in.pgm a.bmp --json
measure in.pgm a.bmp --region 1,2,10,12
info a.awf
info b.awg --json
truncate a.awf d.awf --rate 0.3125
decompress d.awf D.PGM
truncate b.awg I.awf --bytes 300 --json
compress in.pgm o --rate 0,5
compress in.pgm o --rate 1e400
compress in.pgm INFO.AWI
--help
END
}

mkdir "$scratch/C"
(cd "$scratch/C" && use_tool C)
for locale in de_DE.UTF-8 tr_TR.UTF-8 ar_EG.UTF-8; do
  [ "$(in_locale "$locale" locale -k int_curr_symbol)" != "$(in_locale C locale -k int_curr_symbol)" ]
  mkdir "$scratch/$locale"
  (cd "$scratch/$locale" && use_tool "$locale")
  diff -r "$scratch/C" "$scratch/$locale" >&2 || {
    echo "$locale: the tool writes something else" >&2
    exit 1
  }
  for test in "${tests[@]}"; do
    in_locale "$locale" QT_QPA_PLATFORM=offscreen "$test" >"$scratch/log" 2>&1 || {
      tail -n 30 "$scratch/log" >&2
      echo "$locale: $test fails" >&2
      exit 1
    }
  done
  echo "$locale: $(find "$scratch/$locale" -type f | wc -l) files and outputs of the tool the same," \
    "${#tests[@]} test programs pass"
done
