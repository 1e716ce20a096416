#!/usr/bin/env bash
# Builds the Debian packages of this tree into a folder, and checks them.
#
#   scripts/make_packages.sh           into build/packages
#   scripts/make_packages.sh FOLDER
set -euo pipefail
mkdir -p "${1:-$(dirname "${BASH_SOURCE[0]}")/../build/packages}"
out=$(realpath "${1:-$(dirname "${BASH_SOURCE[0]}")/../build/packages}")
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install_packages.sh build package
build=build/package
# Hardened as all of Debian is; dated by the commit, so that one commit gives the same packages.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
compiling="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)"
linking=$(dpkg-buildflags --get LDFLAGS)
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || date +%s)}
export SOURCE_DATE_EPOCH
# The folders of the library and of plugins follow from the prefix, so it is Debian's already here.
cmake --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DMAROVIA_BUILD_TESTS=OFF \
  -DCMAKE_CXX_FLAGS="$compiling" -DCMAKE_EXE_LINKER_FLAGS="$linking" \
  -DCMAKE_SHARED_LINKER_FLAGS="$linking" -DCMAKE_MODULE_LINKER_FLAGS="$linking" \
  -DMAROVIA_BUILD_BENCH=OFF -DMAROVIA_BUILD_WINDOW=ON \
  -DMAROVIA_ZSH_COMPLETIONS=share/zsh/vendor-completions >/dev/null
scripts/with_progress.sh Building cmake --build "$build"
rm -f "$out"/*.deb
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$out" >"$build/cpack.log" 2>&1 || {
  cat "$build/cpack.log" >&2
  exit 1
}
rm -rf "$out/_CPack_Packages"
lintian --fail-on error,warning "$out"/*.deb
ls -l "$out"/*.deb
