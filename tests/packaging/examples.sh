#!/usr/bin/env bash
# Runs every example command of the README, the man pages and --help, a scratch folder a document.
#
#   examples.sh TOOL ROOT
set -euo pipefail
tool=$1
root=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# The files that examples are about.
pool=$folder/pool
mkdir "$pool"
cp "$root/Images/camera.pgm" "$pool/photo.pgm"
cp "$root/Images/coffee.pgm" "$pool/scan.pgm"
"$tool" compress "$pool/photo.pgm" "$pool/photo.awh"
"$tool" compress "$pool/scan.pgm" "$pool/master.awh" --lossless
for name in photo scan; do
  "$tool" compress "$pool/$name.pgm" "$folder/$name.awg" --lossless
  "$tool" decompress "$folder/$name.awg" "$pool/$name.bmp"
done
"$tool" decompress "$pool/photo.awh" "$pool/decoded.pgm"
"$tool" decompress "$folder/photo.awg" "$pool/photo.png"
for tree in photos decoded; do
  mkdir -p "$pool/$tree/"{a,b}
  cp "$pool/decoded.pgm" "$pool/$tree/a/one.pgm"
  cp "$pool/decoded.pgm" "$pool/$tree/b/one.pgm"
done

# The files are there from the start, so those that an example writes are replaced.
marovia() {
  case " $* " in
    *" --skip-existing "*) "$tool" "$@" ;;
    " compress "* | " decompress "* | " truncate "* | " difference "* | " curve "* | " thumbnail "*)
      "$tool" "$@" --force ;;
    *) "$tool" "$@" ;;
  esac
}

# Every line of standard input that is a command; what explains it stands behind two blanks.
failures=0
run_examples() {
  local count=0 line
  rm -rf "$folder/here"
  cp -r "$pool" "$folder/here"
  cd "$folder/here"
  while IFS= read -r line; do
    count=$((count + 1))
    if ! (eval "$line") >"$folder/out" 2>&1 </dev/null; then
      echo "$1: this example fails: $line" >&2
      cat "$folder/out" >&2
      failures=$((failures + 1))
    fi
  done < <(sed -nE 's/^(    |  |\.Dl )(marovia [a-z].*)/\2/p' | sed -E 's/ {2,}.*//')
  [ "$count" -gt 0 ] || echo "$1: no example was found" >&2
  total=$((total + count))
}

total=0
run_examples README.md <"$root/README.md"
for page in "$root"/man/marovia*.1; do
  case $page in */marovia-window.1) continue ;; esac
  run_examples "$(basename "$page")" <"$page"
done
for command in $("$tool" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'); do
  run_examples "marovia $command --help" < <("$tool" "$command" --help)
done
[ "$total" -ge 30 ] || {
  echo "examples.sh: only $total examples were found" >&2
  exit 1
}
[ "$failures" -eq 0 ]
