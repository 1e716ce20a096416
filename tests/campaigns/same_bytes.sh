#!/bin/sh
# Builds the codec with gcc and clang, unoptimised and optimised, and for a machine with fused
# multiply-add, and checks that every build writes the same bytes: the golden test must pass in each,
# and the files of the sample images must hash alike. Extra arguments go to cmake.
set -eu

root=$(cd "$(dirname "$0")/../.." && pwd)
out="$root/build/same_bytes"
mkdir -p "$out"
reference=

# build NAME COMPILER FLAGS...
build() {
  name=$1
  compiler=$2
  shift 2
  command -v "$compiler" >/dev/null || {
    echo "$name: $compiler is not installed" >&2
    exit 1
  }
  cmake -S "$root" -B "$out/$name" -G Ninja -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$*" -DMAROVIA_BUILD_CLI=OFF >/dev/null
  cmake --build "$out/$name" --target test_golden file_hashes >/dev/null
}

check() {
  name=$1
  "$out/$name/tests/test_golden" >"$out/$name.golden.txt" || {
    tail -n 20 "$out/$name.golden.txt" >&2
    echo "$name: the golden test fails" >&2
    exit 1
  }
  "$out/$name/tests/campaigns/file_hashes" "$root"/Images/*.pgm >"$out/$name.hashes.txt"
  if [ -z "$reference" ]; then
    reference=$name
  elif ! cmp "$out/$reference.hashes.txt" "$out/$name.hashes.txt" >&2; then
    echo "$name: files differ from those of $reference" >&2
    exit 1
  fi
  echo "$name: golden test passed, $(wc -l <"$out/$name.hashes.txt") files and pictures the same"
}

build gcc-O0 g++ -O0
check gcc-O0
build gcc-O3 g++ -O3
check gcc-O3
build clang-O0 clang++ -O0
check clang-O0
build clang-O3 clang++ -O3
check clang-O3
if grep -qw avx2 /proc/cpuinfo && grep -qw fma /proc/cpuinfo; then
  build gcc-O3-x86-64-v3 g++ -O3 -march=x86-64-v3
  check gcc-O3-x86-64-v3
  build clang-O3-x86-64-v3 clang++ -O3 -march=x86-64-v3
  check clang-O3-x86-64-v3
else
  echo "x86-64-v3: not on this machine"
fi
