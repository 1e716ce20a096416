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
# The folders of the library and of plugins follow from the prefix, so it is Debian's already here.
cmake --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DMAROVIA_BUILD_TESTS=OFF \
  -DMAROVIA_BUILD_BENCH=OFF -DMAROVIA_BUILD_WINDOW=ON \
  -DMAROVIA_ZSH_COMPLETIONS=share/zsh/vendor-completions >/dev/null
cmake --build "$build"
rm -f "$out"/*.deb
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$out" >"$build/cpack.log" 2>&1 || {
  cat "$build/cpack.log" >&2
  exit 1
}
rm -rf "$out/_CPack_Packages"
lintian --fail-on error "$out"/*.deb
ls -l "$out"/*.deb
