#!/usr/bin/env bash
# Runs a command that takes its time, and tells on standard error how far it is: in a terminal in one
# line that counts up, in a log a line every tenth. If it fails, all that it said follows.
#
#   scripts/with_progress.sh WHAT COMMAND...
#
# How far it is, is read from what it says: ninja's "[3/70] ...", the "pmstatus:gcc:45.6:..." of
# apt's Status-Fd.
set -euo pipefail
what=$1
shift
log=$(mktemp)
trap 'rm -f "$log"' EXIT

# tell TEXT END: over the line before it in a terminal, else below
tell() {
  if [ -t 2 ]; then printf '\r%s: %s\e[K%s' "$what" "$1" "$2" >&2; else echo "$what: $1" >&2; fi
}

follow() {
  local line told=0 now
  while IFS= read -r line; do
    if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]]; then
      now=$((100 * BASH_REMATCH[1] / BASH_REMATCH[2]))
    elif [[ $line =~ ^(dl|pm)status:.*:([0-9]+)\.[0-9]+: ]]; then
      now=${BASH_REMATCH[2]}
    else
      continue
    fi
    [ -t 2 ] || now=$((now / 10 * 10))
    [ "$now" = "$told" ] || tell "$now %" ''
    told=$now
  done
}

tell ... ''
status=0
"$@" 2>&1 | tee "$log" | follow || status=${PIPESTATUS[0]}
if [ "$status" -ne 0 ]; then
  tell 'failed' $'\n'
  grep -vE '^(dl|pm)status:' "$log" >&2 || true
  exit "$status"
fi
tell "done in $SECONDS s" $'\n'
