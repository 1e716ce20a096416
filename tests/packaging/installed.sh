#!/usr/bin/env bash
# Installs the built tree into a scratch folder, and uses it from there as its users do.
#
#   installed.sh BUILD ROOT CXX
set -euo pipefail
build=$1
root=$2
cxx=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
prefix=$folder/usr

fail() {
  echo "installed.sh: $1" >&2
  exit 1
}

cmake --install "$build" --prefix "$prefix" >"$folder/log" || fail "$(cat "$folder/log")"
library=$(find "$prefix" -name 'libmarovia.so')
[ -n "$library" ] || fail "there is no shared library"
libraries=$(dirname "$library")
marovia=$prefix/bin/marovia
sample=$prefix/share/marovia/Images/camera.pgm

# To everybody the library shows the public interface, and nothing else.
nm -D -C --defined-only "$library" | cut -d ' ' -f 3- | grep -v ' for marovia::Error@' >"$folder/all"
sed -nE '/@@MAROVIA_[0-9.]+$/s/^(marovia::)?([A-Za-z_:]+).*/\2/p' "$folder/all" | sort -u >"$folder/shown"
{
  sed -nE '/#define/d; s/.*MAROVIA_API .*\b([A-Za-z]+)\(.*/\1/p' "$prefix"/include/marovia/*.h
  sed -nE 's/.*\b(marovia_[a-z_]+)\(.*/\1/p' "$prefix/include/marovia/marovia.h"
  echo Error::Error
} | sort -u >"$folder/public"
diff "$folder/public" "$folder/shown" >&2 || fail "the library shows other symbols than its headers"
! grep -vE 'marovia.*@@|^MAROVIA_' "$folder/all" >&2 || fail "the library shows what is not its own"

"$marovia" compress "$sample" "$folder/camera.awh"
"$marovia" decompress "$folder/camera.awh" "$folder/camera.pgm"
if command -v file >/dev/null; then
  file -m "$prefix/share/marovia/marovia.magic" "$folder/camera.awh" |
    grep -q ': Marovia compressed image, version 1, 512 x 512, 9/7 wavelet$' ||
    fail "file does not know what the tool writes"
fi
"$marovia" measure "$sample" "$folder/camera.pgm" | grep -q 'PSNR error:  3[0-9]' ||
  fail "the installed tool does not give the picture back"
# The desktop puts a size and two files in place of its marks, the second of them there and empty.
entry=$(sed -n 's/^Exec=marovia //p' "$root/packaging/marovia.thumbnailer")
: >"$folder/small.png"
entry=${entry//%s/48} entry=${entry//%i/$folder/camera.awh} entry=${entry//%o/$folder/small.png}
# shellcheck disable=SC2086 # several words are wanted
"$marovia" $entry && [ "$(od -An -tx1 -j16 -N8 "$folder/small.png")" = ' 00 00 00 30 00 00 00 30' ] ||
  fail "the entry of thumbnails makes none"

# One version everywhere, and the fronts use the library rather than a copy of the codec.
version=$("$marovia" --version | cut -d ' ' -f 2)
grep -m 1 '^## ' "$root/CHANGELOG.md" | grep -q "^## $version - " || fail "CHANGELOG.md begins with another version"
grep -m 1 '<release ' "$root/packaging/org.marovia.marovia.metainfo.xml" | grep -q "version=\"$version\"" ||
  fail "the newest release of the metainfo is of another version"
plugin=$(find "$prefix" -name libqmarovia.so)
for front in "$prefix"/bin/* $plugin; do
  readelf -d "$front" | grep -q 'NEEDED.*libmarovia' || fail "$front does not use the library"
done
[ -z "$plugin" ] || ! readelf -V "$plugin" | grep PRIVATE || fail "the plugin uses more than the public interface"
[ -f "$prefix/share/doc/marovia/LICENSE" ] || fail "the licence is not installed"

# C reads the version in #if; older C++ is told what it lacks.
cat >"$folder/version.c" <<'END'
#include <marovia/marovia.h>
#include <marovia/version.h>
#include <string.h>
#if MAROVIA_VERSION_NUMBER != MAROVIA_VERSION_MAJOR * 10000 + MAROVIA_VERSION_MINOR * 100 + MAROVIA_VERSION_PATCH
#error "the parts are not the whole"
#endif
int main(void) { return strcmp(marovia_version(), MAROVIA_VERSION_STRING); }
END
cc -std=c99 -Wall -Wextra -Werror -I"$prefix/include" "$folder/version.c" -o "$folder/version" \
  -L"$libraries" -lmarovia -Wl,-rpath,"$libraries"
"$folder/version" || fail "the library is of another version than its headers"
for header in "$prefix"/include/marovia/*.h; do
  case $header in */marovia.h | */version.h) continue ;; esac
  ! "$cxx" -std=c++17 -fsyntax-only -I"$prefix/include" -x c++ "$header" 2>"$folder/log" &&
    grep -q 'error.* need C++20' "$folder/log" || fail "$header does not say that it needs C++20"
done

# A failure crosses the border of the library as the type that the header declares.
use_consumer() {
  "$1" "$sample" | grep -q '^1638[0-9] bytes, PSNR 3' || fail "$1 does not round-trip"
  status=0
  error=$("$1" "$folder/camera.awh" 2>&1) || status=$?
  [ "$status" -eq 1 ] && [ -n "$error" ] || fail "$1 does not catch the library's error"
}

cmake -S "$root/examples/consumer" -B "$folder/consumer" -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_PREFIX_PATH="$prefix" >"$folder/log" 2>&1 &&
  cmake --build "$folder/consumer" >"$folder/log" 2>&1 || fail "$(cat "$folder/log")"
use_consumer "$folder/consumer/consumer"

# As a part of another project: nothing but a compiler is asked for, and the library is static unless
# that project says otherwise.
mkdir "$folder/whole"
{
  echo 'cmake_minimum_required(VERSION 3.25)'
  echo 'project(whole LANGUAGES CXX)'
  echo "add_subdirectory($root marovia)"
  grep -v -E '^(cmake_minimum|project|find_package)' "$root/examples/consumer/CMakeLists.txt"
} >"$folder/whole/CMakeLists.txt"
cp "$root/examples/consumer/consumer.cpp" "$folder/whole"
without=$(printf -- '-DCMAKE_DISABLE_FIND_PACKAGE_%s=ON ' GTest CLI11 nlohmann_json PNG TIFF JPEG Qt6 benchmark)
# shellcheck disable=SC2086 # several words are wanted
cmake -S "$folder/whole" -B "$folder/part" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS_RELEASE=-O0 \
  $without >"$folder/log" 2>&1 && cmake --build "$folder/part" >"$folder/log" 2>&1 ||
  fail "$(cat "$folder/log")"
[ -f "$folder/part/marovia/libmarovia.a" ] || fail "a subdirectory does not make a static library"
use_consumer "$folder/part/consumer"

# The lines of the README do as they say.
readme_block() { sed -n "/^\`\`\`$1/,/^\`\`\`/p" "$root/README.md" | sed '1d;$d'; }
readme_block cmake | sed 's/yours/consumer/; s/Marovia REQUIRED/Marovia 0.1 REQUIRED/' |
  diff - <(grep -E '^(find_package|target_link)' "$root/examples/consumer/CMakeLists.txt") >&2 ||
  fail "the README has other lines for CMake than the example"
if command -v pkg-config >/dev/null; then
  export PKG_CONFIG_PATH=$libraries/pkgconfig LD_LIBRARY_PATH=$libraries
  {
    printf '#include <%s>\n' fstream iterator
    readme_block cpp | grep '^#'
    echo 'int main(int, char** words) { std::ifstream in(words[1], std::ios::binary);'
    echo 'const marovia::Bytes bytes(std::istreambuf_iterator<char>(in), {});'
    readme_block cpp | grep -v '^#'
    echo 'return back.image.SameShape(image) ? 0 : 1; }'
  } >"$folder/readme.cpp"
  # shellcheck disable=SC2046 # several words are wanted
  "$cxx" -std=c++20 "$folder/readme.cpp" -o "$folder/readme" \
    $(pkg-config --cflags --libs marovia)
  "$folder/readme" "$sample" || fail "the README's program does not do its work"
fi

window=$prefix/bin/marovia-window
if [ -x "$window" ]; then
  QT_QPA_PLATFORM=offscreen "$window" --version >/dev/null || fail "the installed window does not start"
  [ -f "$prefix/share/marovia/Marovia.HLP" ] || fail "the window has no help"
  desktop=$prefix/share/applications/marovia.desktop
  icon=$(sed -n 's/^Icon=//p' "$desktop")
  [ -n "$(find "$prefix/share/icons" -name "$icon.*")" ] || fail "there is no icon $icon"
fi
