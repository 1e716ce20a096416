#!/usr/bin/env bash
# Holds the man pages against the tool: a page a command, with just the options of its --help. Pages
# and MIME type have all kinds of files.
#
#   manuals.sh TOOL ROOT [WINDOW]
set -euo pipefail
tool=$1
man=$2/man
window=${3:-}
failures=0

complain() {
  echo "manuals.sh: $1" >&2
  failures=$((failures + 1))
}

helps_options() { grep -oE '^  (-[a-zA-Z], ?)?-?-[a-z][a-z0-9-]*' | grep -oE -- '-[-a-zA-Z0-9]+' | sort -u; }
pages_options() { grep -hE '^\.It Fl' "$@" | grep -oE 'Fl -?[a-zA-Z0-9][a-z0-9-]*' | sed 's/Fl /-/' | sort -u; }
compare() {
  diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") >&2 ||
    complain "$1 and --help (above) have other options"
}

common=$(mktemp)
trap 'rm -f "$common"' EXIT
sed -n '/^\.Ss Options of every command/,/^\.Sh/p' "$man/marovia.1" >"$common"

for command in $("$tool" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'); do
  page=$man/marovia-$command.1
  if [ ! -f "$page" ]; then
    complain "marovia $command has no page"
    continue
  fi
  compare "$page" "$(pages_options "$page" "$common")" "$("$tool" "$command" --help | helps_options)"
  grep -q "^\.It Xr marovia-$command 1$" "$man/marovia.1" || complain "marovia(1) lacks $command"
done
if [ -n "$window" ]; then
  compare "$man/marovia-window.1" "$(pages_options "$man/marovia-window.1")" \
    "$(QT_QPA_PLATFORM=offscreen "$window" --help | helps_options)"
fi

for name in $(sed -nE 's/^\.(It )?Xr (marovia[a-z-]*) 1.*/\2/p' "$man"/*.1 | sort -u); do
  [ -f "$man/$name.1" ] || complain "$name(1) is referred to and not there"
done
for kind in $("$tool" info --help | sed -nE 's/^  --format ([^ ]*).*/\1/p' | tr '|' ' '); do
  grep -q "^\.It \.$kind " "$man/marovia.1" || complain "marovia(1) lacks .$kind"
  grep -q "\*\.$kind\"" "$2/packaging/marovia-mime.xml" || complain "the MIME type lacks .$kind"
done
if command -v mandoc >/dev/null; then
  mandoc -Tlint -Wwarning "$man"/*.1 >&2 || complain "mandoc finds fault"
fi
[ "$failures" -eq 0 ]
