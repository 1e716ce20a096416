#!/usr/bin/env bash
# Builds the codec in many ways and checks that every build writes the same bytes: the golden test
# must pass in each, and the files and pictures of some 25 million samples, and what these become under
# the floating-point wavelet, must have the same digests. No build may fuse a multiplication with an
# addition.
#
#   same_bytes.sh               gcc and clang, -O0 to -O3, and for x86-64-v3
#   same_bytes.sh emulated      with cross compilers, run by qemu: aarch64, and s390x, whose bytes
#                               lie the other way round; installs what it needs
#   same_bytes.sh native emulated
#
# MAROVIA_BATCHES (50) is the number of batches of some half a million samples.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
out=$root/build/same_bytes
batches=${MAROVIA_BATCHES:-50}
reference=
mkdir -p "$out"

# build NAME COMPILER FLAGS [CMAKE ARGUMENTS...]
build() {
  local name=$1 compiler=$2 flags=$3
  shift 3
  command -v "$compiler" >/dev/null || {
    echo "$name: $compiler is not installed" >&2
    exit 1
  }
  cmake -S "$root" -B "$out/$name" -G Ninja -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" -DMAROVIA_BUILD_CLI=OFF \
    -DMAROVIA_BUILD_WINDOW=OFF -DMAROVIA_PNG=OFF -DMAROVIA_TIFF=OFF -DMAROVIA_JPEG=OFF \
    "$@" >"$out/$name.configure.txt"
  cmake --build "$out/$name" --parallel "$(nproc)" \
    --target test_golden campaign >"$out/$name.build.txt"
}

# digest_batches NAME RUNNER...: as many parts at once as there are processors
digest_batches() {
  local name=$1 parts part share first=1
  shift
  parts=$(nproc)
  for ((part = 0; part < parts; ++part)); do
    share=$(((batches + part) / parts))
    "$@" "$out/$name/tests/campaigns/campaign" digest "$share" "$first" >"$out/$name.part$part" &
    first=$((first + share))
  done
  wait
  for ((part = 0; part < parts; ++part)); do cat "$out/$name.part$part"; done
}

# check NAME RUNNER...: runs what `build` built, under an emulator if one is given
check() {
  local name=$1 started=$SECONDS samples
  shift
  "$@" "$out/$name/tests/test_golden" >"$out/$name.golden.txt" || {
    tail -n 20 "$out/$name.golden.txt" >&2
    echo "$name: the golden test fails" >&2
    exit 1
  }
  digest_batches "$name" "$@" >"$out/$name.digests.txt"
  samples=$(awk '{ sum += $3 } END { print sum + 0 }' "$out/$name.digests.txt")
  [ "$(wc -l <"$out/$name.digests.txt")" -eq "$batches" ] || {
    echo "$name: digests of some batches are missing" >&2
    exit 1
  }
  reference=${reference:-$name}
  cmp "$out/$reference.digests.txt" "$out/$name.digests.txt" >&2 || {
    echo "$name: digests differ from those of $reference" >&2
    exit 1
  }
  echo "$name: golden test passed, $samples samples the same ($((SECONDS - started)) s)"
}

# check_unfused NAME OBJDUMP INSTRUCTIONS COMPILER FLAGS...: no such instruction in the codec, though
# the pattern finds the one that the compiler makes where it may
check_unfused() {
  local name=$1 objdump=$2 instructions=$3
  shift 3
  echo 'double f(double a, double b, double c) { return a * b + c; }' |
    "$@" -O2 -ffp-contract=fast -x c++ -c -o "$out/fused.o" -
  "$objdump" -d "$out/fused.o" | grep -qE "$instructions" || {
    echo "$name: '$instructions' does not find a fused instruction" >&2
    exit 1
  }
  if "$objdump" -d "$out/$name/libmarovia.so" | grep -E "$instructions" >&2; then
    echo "$name: fused multiply-add in the library" >&2
    exit 1
  fi
  echo "$name: no fused multiply-add"
}

check_native() {
  local compiler level x86_fused='\svfn?m(add|sub)'
  for compiler in g++ clang++; do
    for level in -O0 -O1 -O2 -O3; do
      build "$compiler$level" "$compiler" "$level"
      check "$compiler$level"
    done
  done
  [ "$(uname -m)" = x86_64 ] || return 0
  for compiler in g++ clang++; do
    build "$compiler-x86-64-v3" "$compiler" '-O3 -march=x86-64-v3'
    check_unfused "$compiler-x86-64-v3" objdump "$x86_fused" "$compiler" -march=x86-64-v3
    if grep -qw avx2 /proc/cpuinfo && grep -qw fma /proc/cpuinfo; then
      check "$compiler-x86-64-v3"
    else
      echo "$compiler-x86-64-v3: this machine cannot run it"
    fi
  done
}

# check_emulated PROCESSOR INSTRUCTIONS
check_emulated() {
  local target=$1-linux-gnu cross
  cross=(-DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="$1"
    -DCMAKE_CROSSCOMPILING_EMULATOR="qemu-$1")
  # The test library of the system is for the system's own processor.
  cmake -S /usr/src/googletest -B "$out/$1-gtest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DBUILD_GMOCK=OFF -DCMAKE_C_COMPILER="$target-gcc" -DCMAKE_CXX_COMPILER="$target-g++" \
    -DCMAKE_INSTALL_PREFIX="$out/$1-root" "${cross[@]}" >"$out/$1-gtest.txt"
  cmake --build "$out/$1-gtest" --target install >>"$out/$1-gtest.txt"
  build "$1" "$target-g++" '-O2 -static' -DCMAKE_PREFIX_PATH="$out/$1-root" "${cross[@]}"
  check_unfused "$1" "$target-objdump" "$2" "$target-g++"
  check "$1" "qemu-$1"
}

for what in "${@:-native}"; do
  case $what in
    native) check_native ;;
    emulated)
      "$root/scripts/install_packages.sh" build test cross
      check_emulated aarch64 '\s(fn?m(add|sub)|fml[as])\s'
      check_emulated s390x '\s(m[as][de]br|w?v?fn?m[as](db|sb)?)\s'
      ;;
    *)
      echo "usage: same_bytes.sh [native] [emulated]" >&2
      exit 2
      ;;
  esac
done
