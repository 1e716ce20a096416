#!/usr/bin/env bash
# Reads image files of others and holds their greys against those that ImageMagick gives, or where
# these differ by more than 1 against a second opinion: which files are read, which refused and why,
# and which differ from both.
#
#   pictures.sh TOOL FILE...
#
# Exit status 1 where a file differs, or the tool ends in another way than it documents.
set -euo pipefail
tool=$1
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Of several pages the first; turned upright, and without transparency, as the tool has them.
magick_grey() {
  # Only inks are converted; what a file says of its gamma is not used.
  local colours=(-set colorspace sRGB)
  [ "$(identify -format '%[colorspace]' "$1[0]" 2>/dev/null)" != CMYK ] || colours=(-colorspace sRGB)
  timeout 60 convert "$1[0]" -auto-orient -alpha off "${colours[@]}" -grayscale Rec601Luma -depth 8 \
    "pgm:$folder/theirs.pgm" 2>/dev/null
}
# The picture that the collection has of the file, that of libtiff's tool, or that of Netpbm.
second_grey() {
  local picture
  picture=$(dirname "$1")/../html/$(basename "$1" .bmp).png
  if [ -f "$picture" ] && convert "$picture" "ppm:$folder/theirs.pgm" && near; then return; fi
  case ${1,,} in
    *.bmp) bmptopnm "$1" ;;
    *.tif | *.tiff)
      # A later page that it does not read is no matter.
      tiff2rgba "$1" "$folder/theirs.tif" || true
      convert "$folder/theirs.tif[0]" ppm:-
      ;;
    *.png) pngtopam "$1" ;;
  esac >"$folder/theirs.pgm" 2>/dev/null && near
}

# How far the greys are from those of the others.
distance() {
  "$tool" measure -q "$folder/ours.pgm" "$folder/theirs.pgm" 2>&1 | sed -n '1s/^Sup-norm error: *//p'
}
near() {
  error=$(distance || true)
  [ "${error:-999}" -le 1 ]
}

declare -A count=()
tell() {
  count[$1]=$((${count[$1]:-0} + 1))
  printf '%s\t%s\t%s\n' "$1" "$file" "${2:-}"
}

failed=0
for file in "$@"; do
  status=0
  rm -f "$folder"/*
  timeout 60 "$tool" compress "$file" "$folder/ours.awg" --convert 2>"$folder/err" || status=$?
  if [ "$status" -ge 4 ] && [ "$status" -le 6 ]; then
    tell refused "$(tail -n 1 "$folder/err" | sed 's/.*: //')"
    continue
  elif [ "$status" -ne 0 ]; then
    tell FAILED "status $status: $(cat "$folder/err")"
    failed=1
    continue
  fi
  "$tool" decompress "$folder/ours.awg" "$folder/ours.pgm"
  if ! magick_grey "$file"; then
    tell alone
    continue
  fi
  if near; then
    tell read "$error"
    continue
  fi
  first=$error
  if second_grey "$file"; then
    tell read "$error, ImageMagick differs by ${first:-its size}"
  else
    tell DIFFERS "by ${first:-its size}"
    failed=1
  fi
done
for outcome in "${!count[@]}"; do echo "$outcome: ${count[$outcome]}" >&2; done
exit "$failed"
