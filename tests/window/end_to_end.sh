#!/usr/bin/env bash
# Compresses and decompresses a sample image by keyboard and mouse alone, in the built program on a
# display of its own, and checks the files that this leaves.
#
#   end_to_end.sh PROGRAM ROOT [SHOTS]    SHOTS: a folder for screenshots
#
# At the scale of QT_SCALE_FACTOR, with letters of POINTS points and the studio in THEME, if set.
set -euo pipefail
program=$1
root=$2
shots=${3:-}
folder=$(mktemp -d)
started=()

finish() {
  for process in "${started[@]}"; do kill "$process" 2>/dev/null || true; done
  rm -rf "$folder"
}
trap finish EXIT

fail() {
  echo "end_to_end.sh: $1" >&2
  exit 1
}

# Until the command succeeds, 20 s at most.
wait_for() {
  local tries=0
  until "$@" >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ "$tries" -lt 200 ] || fail "in vain waited for: $*"
    sleep 0.1
  done
}

window() { xdotool search --onlyvisible --name "$1" | tail -n 1; }
is_active() { [ "$(xdotool getactivewindow getwindowname 2>/dev/null)" = "$1" ]; }
is_settled() { [ "$(stat -c %s "$1")" -ge "$2" ]; }
await_window() { wait_for is_active "$1"; }
# Whether the program waits for events; what it gets while it runs it drops.
is_idle() {
  local before
  before=$(cut -d ' ' -f 3,14,15 "/proc/$marovia/stat")
  sleep 0.3
  [ "${before%% *}" = S ] && [ "$before" = "$(cut -d ' ' -f 3,14,15 "/proc/$marovia/stat")" ]
}
# The picture of what the last key led to, once that is drawn.
shoot() {
  [ -n "$shots" ] || return 0
  sleep 0.4
  import -window "$(xdotool getactivewindow)" "$shots/$1.png"
}

press_for() {
  xdotool key "$1"
  await_window "$2"
  wait_for is_idle
}

# Opens a file question by a key, and answers it.
answer() {
  press_for "$1" "$2"
  shift
  xdotool key ctrl+a
  xdotool type --delay 5 -- "$2"
  xdotool key Return
  await_window Marovia
  wait_for is_idle
}

exec 3>"$folder/display"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
started+=($!)
wait_for test -s "$folder/display"
DISPLAY=:$(cat "$folder/display")
export DISPLAY QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$folder XDG_CONFIG_HOME=$folder/config
unset WAYLAND_DISPLAY QT_QPA_PLATFORMTHEME
if [ -n "${POINTS:-}" ]; then
  export QT_QPA_PLATFORMTHEME=kde KDE_SESSION_VERSION=5
  mkdir -p "$folder/config"
  printf '[General]\nfont=Sans,%d\nmenuFont=Sans,%d\nfixed=Monospace,%d\n' "$POINTS" "$POINTS" \
    "$POINTS" >"$folder/config/kdeglobals"
fi
if [ -n "${THEME:-}" ]; then
  mkdir -p "$folder/config/marovia"
  printf '[General]\ntheme=%s\n' "$THEME" >"$folder/config/marovia/studio.conf"
fi
openbox >/dev/null 2>&1 &
started+=($!)
# A window that is there before its manager would not get the keys.
wait_for xdotool get_desktop

cp "$root/Images/camera.pgm" "$folder/photo.pgm"
"$program" &
marovia=$!
started+=("$marovia")
await_window Marovia
wait_for is_idle
eval "$(xdotool getactivewindow getwindowgeometry --shell)"
[ $((X + WIDTH)) -le 1290 ] && [ $((Y + HEIGHT)) -le 800 ] ||
  fail "the window of $WIDTH x $HEIGHT at $X, $Y is larger than the screen"
shoot start

answer ctrl+o "Get Image" "$folder/photo.pgm"
xdotool key alt+c
wait_for is_idle
shoot loaded

# A rectangle over the head, by mouse, in the picture's 256 x 256 points, which are pixels at all
# sizes of letters. Where the first is in the window:
case ${QT_SCALE_FACTOR:-1}-${POINTS:-9} in
  1-9) left=9 top=49 ;;
  2-9) left=67 top=195 ;;
  *) left=7 top=103 ;;
esac
picture() { xdotool mousemove --window "$(window '^Marovia$')" $((left + $1)) $((top + $2)); }
picture 70 30
xdotool mousedown 1
picture 100 60
picture 155 130
xdotool mouseup 1
wait_for is_idle

# Down the panel: method, coding, rate; Enter there is Go.
xdotool key Tab Tab Tab Tab Tab Right Tab Right Tab
xdotool key ctrl+a
xdotool type --delay 5 0.5
answer Return "Compress to" "$folder/photo"
packed=$folder/photo.awf
wait_for is_settled "$packed" 16300
[ "$(stat -c %s "$packed")" -le 16384 ] || fail "the file exceeds its rate"

answer Return "Decompress" "$packed"
answer ctrl+s "Save Reconstructed Image" "$folder/decoded.bmp"
wait_for is_settled "$folder/decoded.bmp" $((1078 + 512 * 512))
shoot decompressed

if [ -n "$shots" ]; then
  press_for F1 "Marovia Help"
  shoot help
  xdotool key Escape
  await_window Marovia
fi

# The studio: the file that the form shows, then the image anew; a size typed, one chosen on the
# curve, a region drawn; each saved.
picture 20 200
xdotool click --repeat 2 --delay 60 1
await_window "photo.awf - Marovia Studio"
xdotool key ctrl+o
await_window Open
xdotool type --delay 5 -- "$folder/photo.pgm"
xdotool key Return
await_window "photo.pgm - Marovia Studio"
wait_for is_idle
shoot studio

save_as() {
  press_for ctrl+s "Save compressed file"
  xdotool key ctrl+a
  xdotool type --delay 5 -- "$folder/$1"
  xdotool key Return
  await_window "photo.pgm - Marovia Studio"
  wait_for is_settled "$folder/$1" "$2"
  [ "$(stat -c %s "$folder/$1")" -le "$3" ] || fail "$1 has more bytes than were asked for"
}
studio() { xdotool mousemove --window "$(window 'Marovia Studio$')" "$1" "$2"; }
xdotool key alt+z
xdotool type --delay 5 8000
xdotool key Return
wait_for is_idle
save_as photo_typed.awf 7900 8000
if [ "${QT_SCALE_FACTOR:-1}-${POINTS:-9}" = 1-9 ]; then
  studio 1200 300
  xdotool click 1
  wait_for is_idle
  save_as photo_curve.awf 8100 200000
  xdotool key alt+z
  xdotool type --delay 5 8000
  xdotool key Return
fi
for view in 2 5; do
  xdotool key "alt+$view"
  wait_for is_idle
  shoot "studio_view$view"
done
xdotool key alt+1 alt+d
wait_for is_idle
studio 200 300
xdotool mousedown 1
studio 260 360
studio 350 450
xdotool mouseup 1
wait_for is_idle
shoot studio_region
save_as photo_region.awf 7800 8000
! cmp -s "$folder/photo_typed.awf" "$folder/photo_region.awf" || fail "the region changes no bit"
xdotool key ctrl+w
await_window Marovia

xdotool key alt+F4
wait_for test ! -d "/proc/$marovia"
[ "$(cd "$folder" && ls -I 'photo_*' | grep -E '^(photo|decoded)')" = $'decoded.bmp\nphoto.awf\nphoto.pgm' ] ||
  fail "there are other files than expected"
cmp -s "$root/Images/camera.pgm" "$folder/photo.pgm" || fail "the source image was changed"
