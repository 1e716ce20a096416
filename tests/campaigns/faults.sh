#!/usr/bin/env bash
# Lets files, folders, pipes, memory and signals fail under the tool. After every fault the old file
# must be whole or the new one, nothing else may lie in the folder, the exit status must be the promised one,
# and one line must name the file and what happened.
#
#   faults.sh TOOL FAILING_NEW [KILLS [STEP [SCENE...]]]
#
# FAILING_NEW is the library that lets allocations fail: every STEP-th (1) of a run, one after another.
# KILLS (200) times the tool is killed at a random moment of a write. SCENE is one of the functions
# below, from full_disks on; unless told, all are played.
#
# Full and read-only file systems are mounted in a name space of the script's own. Where the system
# does not allow that, it says so and goes on without.
set -euo pipefail

tool=$(realpath "$1")
failing_new=$(realpath "$2")
kills=${3:-200}
step=${4:-1}
all_scenes=(full_disks read_only_file_system without_proc owners_and_groups forbidden_folders odd_names
  links nodes_and_pipes closed_streams memory_that_runs_out signals)
scenes=("${@:5}")

if [ -z "${MAROVIA_OWN_MOUNTS:-}" ]; then
  export MAROVIA_OWN_MOUNTS=1
  for options in '--mount' '--mount --user --map-root-user'; do
    # shellcheck disable=SC2086  # two words
    if unshare $options true 2>/dev/null; then exec unshare $options "$0" "$@"; fi
  done
  MAROVIA_OWN_MOUNTS=none
fi

work=$(mktemp -d)
scratch=$(mktemp -d)
cleanup() {
  # A signal may strike what runs in the background while it still is a copy of this shell.
  [ "$BASHPID" = $$ ] || return 0
  [ "$MAROVIA_OWN_MOUNTS" = none ] || umount -q "$work"/tiny "$work"/sealed 2>/dev/null || true
  rm -rf "$work" "$scratch"
}
trap cleanup EXIT
cd "$work"
cases=0
failures=0

fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

# check STATUS TEXT COMMAND...: the command ends with STATUS, and with one line that holds TEXT; with
# no line where TEXT is empty
check() {
  local status=0 wanted=$1 text=$2
  shift 2
  cases=$((cases + 1))
  "$@" 2>"$scratch/err" || status=$?
  [ "$status" -eq "$wanted" ] || fail "status $status, not $wanted: $*: $(cat "$scratch/err")"
  if [ -z "$text" ]; then
    [ ! -s "$scratch/err" ] || fail "says '$(cat "$scratch/err")': $*"
  elif ! grep -qF "$text" "$scratch/err" || [ "$(wc -l <"$scratch/err")" -ne 1 ] ||
    ! grep -q '^marovia: ' "$scratch/err"; then
    fail "does not say '$text' in one line but '$(cat "$scratch/err")': $*"
  fi
}

# check_same FILE...: each is as it was when kept by `keep`
keep() { cp --parents "$@" "$scratch"; }
check_same() {
  local file
  for file in "$@"; do cmp "$file" "$scratch/$file" >&2 || fail "$file changed"; done
}

# check_names FOLDER NAME...: that is all there is in it, hidden files too
check_names() {
  local folder=$1 names
  shift
  names=$(cd "$folder" && find . -mindepth 1 -printf '%P\n' | sort | tr '\n' ' ')
  [ "$names" = "$(printf '%s\n' "$@" | sort | sed '/^$/d' | tr '\n' ' ')" ] ||
    fail "in $folder lie: $names"
}

make_files() {
  mkdir data
  { printf 'P5 640 480 255\n' && head -c 307200 /dev/urandom; } >data/noise.pgm
  { printf 'P5 64 64 255\n' && head -c 4096 /dev/zero; } >data/flat.pgm
  "$tool" compress data/noise.pgm data/noise.awg --lossless
  "$tool" compress data/flat.pgm data/flat.awf
}

# mount_at FOLDER OPTIONS: false where there are no mounts
mount_at() {
  if [ "$MAROVIA_OWN_MOUNTS" = none ]; then
    echo "No mounts here: $1 is left out" >&2
    return 1
  fi
  mkdir "$1"
  mount -t tmpfs -o "$2" tmpfs "$1"
}

full_disks() {
  mount_at tiny size=64k,nr_inodes=8 || return 0
  cp data/flat.awf tiny/old.awf
  cp data/flat.pgm tiny/flat.pgm
  keep tiny/old.awf
  check 4 'tiny/new.awf: cannot be written: No space left' \
    "$tool" truncate data/noise.awg tiny/new --rate 4
  check 4 'tiny/old.awf: cannot be written: No space left' \
    "$tool" truncate data/noise.awg tiny/old -f --rate 4
  check 4 'tiny/new.pgm: cannot be written: No space left' \
    "$tool" decompress data/noise.awg tiny/new.pgm
  check_same tiny/old.awf
  check_names tiny flat.pgm old.awf
  # A file system with room but no inode left.
  touch tiny/{1,2,3,4,5}
  check 4 'tiny/new.awf: cannot be written: No space left' "$tool" compress tiny/flat.pgm tiny/new.awf
  check 4 'tiny/old.awf: cannot be written: No space left' \
    "$tool" compress tiny/flat.pgm tiny/old.awf -f
  check_same tiny/old.awf
  check_names tiny 1 2 3 4 5 flat.pgm old.awf
}

read_only_file_system() {
  mount_at sealed rw || return 0
  cp data/flat.awf sealed/old.awf
  mount -o remount,ro sealed
  keep sealed/old.awf
  check 4 'sealed/new.awf: cannot be written: Read-only' "$tool" compress data/flat.pgm sealed/new.awf
  check 4 'sealed/old.awf: cannot be written: Read-only' \
    "$tool" compress data/flat.pgm sealed/old.awf -f
  check 4 'sealed/new.pgm: cannot be written: Read-only' \
    "$tool" decompress sealed/old.awf sealed/new.pgm
  check_same sealed/old.awf
  check_names sealed old.awf
}

# Where nothing leads back to a nameless file, files are written under another name.
without_proc() {
  mkdir unmapped
  [ "$MAROVIA_OWN_MOUNTS" != none ] || return 0
  mount -t tmpfs tmpfs /proc
  check 0 '' "$tool" compress data/flat.pgm unmapped/new.awf
  check 0 '' "$tool" compress data/flat.pgm unmapped/new.awf -f
  check 4 'unmapped/new.awf: already exists' "$tool" compress data/flat.pgm unmapped/new.awf
  umount /proc
  cmp unmapped/new.awf data/flat.awf || fail "another file without /proc"
  check_names unmapped new.awf
}

# replaced_as OWNER:GROUP MODE WANTED: a file of those, replaced by user 1234 of the groups 1234 and
# 5678, comes to be as wanted
replaced_as() {
  cp data/flat.pgm shared/old.awf
  chown "$1" shared/old.awf
  chmod "$2" shared/old.awf
  check 0 '' setpriv --reuid 1234 --regid 1234 --groups 5678 \
    "$tool" compress data/flat.pgm shared/old.awf -f
  cases=$((cases + 1))
  [ "$(stat -c '%u:%g %a' shared/old.awf)" = "$3" ] ||
    fail "of $1 $2 became $(stat -c '%u:%g %a' shared/old.awf)"
}

owners_and_groups() {
  # Others must also be able to reach the tool, which a private folder does not let them.
  setpriv --reuid 1234 --regid 1234 --groups 5678 "$tool" --version >/dev/null 2>&1 || {
    echo "Only root may give files away, to those who reach the tool: owners and groups are left out" >&2
    return 0
  }
  mkdir shared
  chmod 777 shared "$work"
  replaced_as 1234:1234 640 '1234:1234 640'
  replaced_as 0:5678 664 '1234:5678 664'
  # A group that cannot be kept takes its rights with it.
  replaced_as 0:0 664 '1234:1234 644'
  replaced_as 4321:4321 2770 '1234:1234 700'
  check_names shared old.awf
}

# Root may write everywhere, unless it gives that power up.
forbidden_folders() {
  local powerless=()
  [ "$(id -u)" -ne 0 ] || powerless=(setpriv --bounding-set=-all --inh-caps=-all)
  mkdir closed
  cp data/flat.awf closed/old.awf
  keep closed/old.awf
  chmod 555 closed
  chmod 666 closed/old.awf
  check 4 'closed/new.awf: cannot be written: Permission denied' \
    "${powerless[@]}" "$tool" compress data/flat.pgm closed/new.awf
  check 4 'closed/old.awf: cannot be written: Permission denied' \
    "${powerless[@]}" "$tool" compress data/flat.pgm closed/old.awf -f
  check_same closed/old.awf
  check_names closed old.awf
  chmod 000 closed/old.awf
  check 4 'closed/old.awf: cannot be opened: Permission denied' \
    "${powerless[@]}" "$tool" info closed/old.awf
  chmod 000 closed
  check 4 'closed/old.awf: cannot be written: Permission denied' \
    "${powerless[@]}" "$tool" compress data/flat.pgm closed/old.awf -f
  chmod 755 closed
}

odd_names() {
  local long most
  long=$(printf 'x%.0s' {1..256})
  most=$(printf 'x%.0s' {1..251})
  mkdir names
  check 4 'cannot be opened: File name too long' "$tool" compress "$long" names/new
  check 4 'cannot be written: File name too long' "$tool" compress data/flat.pgm "names/$long"
  check 4 'cannot be written: File name too long' "$tool" decompress data/flat.awf "names/$long.pgm"
  check 4 'cannot be written' "$tool" compress data/flat.pgm data/flat.pgm/new.awf
  check 2 'OUT is an empty name' "$tool" compress data/flat.pgm ''
  check_names names
  # The longest name that there can be leaves no room for a longer one beside it.
  check 0 '' "$tool" compress data/flat.pgm "names/$most"
  check 0 '' "$tool" compress data/flat.pgm "names/$most" -f
  check_names names "$most.awh"
}

# Where several names lead to one file, the one given stays what it is.
links() {
  mkdir links links/away
  cp data/noise.awg links/master.awg
  "$tool" truncate links/master.awg links/away/real.awf --rate 3
  ln -s away/real.awf links/soft.awf
  ln -s away links/folder.awf
  ln -s away/none.awf links/dangling.awf
  ln -s nowhere/none.awf links/lost.awf
  ln links/away/real.awf links/hard.awf
  keep links/hard.awf

  check 4 'links/soft.awf: already exists' "$tool" truncate links/master.awg links/soft --rate 1
  check 4 'links/folder.awf: cannot be written: it is a folder' \
    "$tool" truncate links/master.awg links/folder -f --rate 1
  check 4 'links/lost.awf: cannot be written: No such file' \
    "$tool" truncate links/master.awg links/lost --rate 1
  # From a file to itself, by its link; its hard link keeps the old content.
  check 0 '' "$tool" truncate links/soft.awf links/soft.awf -f --rate 1
  [ "$(readlink links/soft.awf)" = away/real.awf ] || fail "the link was replaced"
  [ "$(stat -c %s links/away/real.awf)" -lt 40000 ] || fail "not written through the link"
  check_same links/hard.awf
  check 0 '' "$tool" truncate links/hard.awf links/hard.awf -f --rate 2
  [ "$(stat -c %s links/hard.awf)" -gt 70000 ] || fail "not written over the hard link"
  check 0 '' "$tool" truncate links/master.awg links/dangling --rate 1
  cmp links/away/none.awf links/away/real.awf || fail "not written through the dangling link"
  check_names links away away/none.awf away/real.awf dangling.awf folder.awf hard.awf lost.awf \
    master.awg soft.awf
}

nodes_and_pipes() {
  mkdir nodes
  mkfifo nodes/pipe.awf
  cat nodes/pipe.awf >"$scratch/out" &
  check 0 '' "$tool" compress data/flat.pgm nodes/pipe.awf --method aswdr
  wait $!
  cmp "$scratch/out" data/flat.awf || fail "not through the FIFO"
  [ -p nodes/pipe.awf ] || fail "the FIFO was replaced"
  # Its reader leaves: as in any pipeline the writer is told by SIGPIPE, or by an error if it
  # ignores that.
  head -c 1 nodes/pipe.awf >"$scratch/out" &
  check 141 '' \
    env --default-signal=PIPE "$tool" decompress data/noise.awg nodes/pipe.awf --format pgm
  wait $!
  head -c 1 nodes/pipe.awf >"$scratch/out" &
  check 4 'nodes/pipe.awf: cannot be written: Broken pipe' \
    env --ignore-signal=PIPE "$tool" decompress data/noise.awg nodes/pipe.awf --format pgm
  wait $!
  cp -a /dev/null nodes/null.awf 2>/dev/null || ln -s /dev/null nodes/null.awf
  check 0 '' "$tool" compress data/flat.pgm nodes/null.awf
  check 0 '' "$tool" compress data/flat.pgm nodes/null.awf -f
  [ -c nodes/null.awf ] || fail "the device was replaced"
  check 4 '/dev/full: cannot be written: No space left' "$tool" compress data/flat.pgm /dev/full
  [ -c /dev/full ] || fail "/dev/full was replaced"
  check_names nodes null.awf pipe.awf
}

closed_streams() {
  local into
  for into in '| true' '| head -c 1'; do
    check 141 '' env --default-signal=PIPE \
      bash -o pipefail -c "'$tool' decompress data/noise.awg - $into >'$scratch/out'"
  done
  check 4 'standard output: cannot be written: Broken pipe' \
    bash -o pipefail -c "trap '' PIPE; '$tool' decompress data/noise.awg - | head -c 1 >'$scratch/out'"
  check 4 'standard output: cannot be written' bash -c "'$tool' decompress data/flat.awf - >&-"
  check 4 'standard input: cannot be opened' bash -c "'$tool' compress - data/o.awf <&-"
  # Nothing meant for a stream that is closed gets into a file that takes its number.
  check 0 '' bash -c "'$tool' compress data/flat.pgm data/streams.awf -v <&- >&- 2>&-"
  cmp data/streams.awf data/flat.awf || fail "a closed stream got into the file"
  rm data/streams.awf
  check_names data flat.awf flat.pgm noise.awg noise.pgm
}

# Each allocation of a run fails in turn, alone and with all that follow.
memory_that_runs_out() {
  local words count=0
  mkdir short
  cp data/flat.awf short/old.awf
  keep short/old.awf
  while read -r words; do
    for stays in '' +; do
      # shellcheck disable=SC2086  # one line, several words
      run_short_of_memory $words
    done
  done <<'END'
compress data/flat.pgm short/new.awf --verify
compress data/flat.pgm short/new.awg --lossless --json
decompress data/flat.awf short/new.pgm --rate 0.3
measure data/flat.pgm data/flat.pgm
info data/flat.awf --json
truncate data/noise.awg short/new.awf --rate 0.25
truncate data/noise.awg short/old.awf -f --rate 0.3
END
  echo "$count times memory ran out"
}

# Ends where the run has fewer allocations than that.
run_short_of_memory() {
  local nth status
  for ((nth = 1; ; nth += step)); do
    rm -f "$scratch/struck" short/new.*
    status=0
    MAROVIA_FAILING_NEW=$nth$stays MAROVIA_STRUCK=$scratch/struck LD_PRELOAD=$failing_new \
      "$tool" "$@" >"$scratch/out" 2>"$scratch/err" || status=$?
    [ -e "$scratch/struck" ] || break
    count=$((count + 1))
    if [ "$status" -ne 0 ]; then
      check_out_of_memory "$status" "$nth$stays" "$@"
    elif [ -s "$scratch/err" ]; then
      fail "allocation $nth$stays of $*: says '$(cat "$scratch/err")' and succeeds"
    fi
  done
  cp "$scratch/short/old.awf" short/old.awf
}

check_out_of_memory() {
  local status=$1 nth=$2
  shift 2
  [ "$status" -eq 1 ] || fail "allocation $nth of $*: status $status"
  grep -q '^marovia: .*out of memory$' "$scratch/err" && [ "$(wc -l <"$scratch/err")" -eq 1 ] ||
    fail "allocation $nth of $*: says '$(cat "$scratch/err")'"
  [ -z "$(find short -name '.*' -type f -print -delete)" ] ||
    fail "allocation $nth of $*: a stray file"
}

# strike SIGNAL MICROSECONDS COMMAND...: sends the signal at a random moment of the time that a whole
# run takes, and a third more. A shell starts what runs in the background deaf to SIGINT.
strike() {
  local signal=$1 microseconds=$(((RANDOM << 15 | RANDOM) % ($2 * 4 / 3)))
  shift 2
  env --default-signal=INT,TERM "$@" 2>>"$scratch/err" &
  sleep "$(printf '%d.%06d' $((microseconds / 1000000)) $((microseconds % 1000000)))"
  kill -s "$signal" $! 2>/dev/null || true
  status=0
  wait $! 2>/dev/null || status=$?
}

# microseconds_of COMMAND...: the quickest of five runs
microseconds_of() {
  local started taken best=60000000
  for _ in 1 2 3 4 5; do
    started=$(date +%s%N)
    "$@"
    taken=$((($(date +%s%N) - started) / 1000))
    [ "$taken" -ge "$best" ] || best=$taken
  done
  echo "$best"
}

signals() {
  { printf 'P5 4096 2048 255\n' && head -c 8388608 /dev/urandom; } >large.pgm
  "$tool" compress large.pgm large.awb --method wdr --coding binary --rate 8
  strike_often KILL "$kills"
  strike_often TERM $((kills / 4))
  strike_often INT $((kills / 4))
}

# Strikes while a file is replaced, then while one is made, and looks at what is left.
strike_often() {
  local signal count=$2 tries olds=0 news=0 strays=0 status microseconds
  signal=$1
  mkdir "struck_$signal"
  cd "struck_$signal"
  cp ../large.awb new.awb
  "$tool" truncate new.awb old.awb --rate 1
  # A file that is short enough already is read and written as it is: the run is mostly the write.
  local run=("$tool" truncate new.awb out.awb -f -q --rate 9)
  microseconds=$(microseconds_of "${run[@]}")
  for ((tries = 0; tries < count; ++tries)); do
    if ((tries % 2)); then rm -f out.awb; else cp old.awb out.awb; fi
    : >"$scratch/err"
    strike "$signal" "$microseconds" "${run[@]}"
    if [ -e out.awb ] && cmp -s out.awb new.awb; then
      news=$((news + 1))
    elif { ((tries % 2)) && [ ! -e out.awb ]; } || cmp -s out.awb old.awb; then
      olds=$((olds + 1))
      [ "$status" -gt 128 ] || fail "$signal: status $status, and the old file"
    else
      fail "$signal: neither the old file nor the new one"
    fi
    # Only where a whole file is replaced can one be left, between its getting a name and its taking
    # the other's place.
    strays=$((strays + $(find . -name '.marovia-*' | wc -l)))
    find . -name '.marovia-*' -exec cmp {} new.awb \; -delete || fail "$signal: a stray half file"
  done
  cd ..
  if [ "$signal" != KILL ] && [ "$strays" -ne 0 ]; then fail "$signal: $strays stray files"; fi
  echo "SIG$signal: $count strikes in the $microseconds us of a run, $olds left the old state," \
    "$news the new file, $strays beside it a whole one under another name"
}

make_files
[ ${#scenes[@]} -gt 0 ] || scenes=("${all_scenes[@]}")
for scene in "${scenes[@]}"; do "$scene"; done
if [ "$failures" -ne 0 ]; then
  echo "$failures faults ended badly" >&2
  exit 1
fi
echo "$cases faults of files ended as they must"
