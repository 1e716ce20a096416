#!/usr/bin/env bash
# Builds Marovia with warnings as errors and the library's assertions, and runs every test.
#
#   ./test.sh                 all tests
#   ./test.sh -R 'Tool'       arguments go to ctest
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/install_packages.sh build test
scripts/with_progress.sh Configuring cmake --preset dev
scripts/with_progress.sh Building cmake --build --preset dev
# What runs in browsers is left out where its compiler or npm's registry is not to be had, its page
# where no browser is.
if scripts/install_packages.sh web; then
  status=0
  scripts/build_web.sh || status=$?
  [ $status = 0 ] || [ $status = 75 ] || exit $status
  scripts/install_packages.sh browser || true
fi
started=$(date +%s)
if ctest --preset dev --parallel "$(nproc)" "$@"; then
  echo "All tests passed in $(($(date +%s) - started)) s."
else
  echo "Some tests failed; build/dev/Testing/Temporary/LastTest.log has their output." >&2
  exit 1
fi
