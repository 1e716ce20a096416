#!/usr/bin/env bash
# Holds the includes of every folder against the table in docs/architecture.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

declare -A allowed
while IFS='|' read -r _ folder _ includes _; do
  folder=${folder//[\` ]/}
  allowed[$folder]=" ${includes//\`/} "
done < <(grep -E '^\| `[a-z]+` \|' docs/architecture.md)

failures=0
complain() {
  echo "$1" >&2
  failures=$((failures + 1))
}

sources() { find "$1" \( -name '*.h' -o -name '*.cpp' \) -print0; }

for folder in "${!allowed[@]}"; do
  [ -d "$folder" ] || complain "docs/architecture.md lists $folder/, which is not there"
done

for folder in */; do
  folder=${folder%/}
  if [ "$folder" = build ] || [ -z "$(sources "$folder" | tr -d '\0')" ]; then continue; fi
  if [ -z "${allowed[$folder]:-}" ]; then
    complain "$folder/ is not in the table of docs/architecture.md"
    continue
  fi
  [[ " window qtplugin tests " == *" $folder "* ]] ||
    ! sources "$folder" | xargs -0 grep -nE '#include <Q' ||
    complain "$folder/ includes a toolkit"
  [[ ${allowed[$folder]} != *" everything "* ]] || continue
  while IFS=: read -r file include; do
    included=${include#*\"}
    included=${included%%/*}
    # The public headers are everyone's, but for the codec's own.
    [ "$included" != marovia ] || [[ $include != *marovia/codec.h* ]] || included=codec.h
    [ "$included" = "$folder" ] || [ "$included" = marovia ] ||
      [[ ${allowed[$folder]} == *" $included "* ]] ||
      complain "$file includes $included, which the table of docs/architecture.md does not allow"
  done < <(sources "$folder" | xargs -0 grep -HoE '^#include "[a-z_]+/[a-z_.]+' || true)
done

[ "$failures" -eq 0 ]
