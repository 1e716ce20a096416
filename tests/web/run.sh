#!/usr/bin/env bash
# The tests of the package or of the page; skipped where that was not built.
#
#   run.sh NODE codec|studio TOOL
set -euo pipefail
part=$2
cd "$(dirname "${BASH_SOURCE[0]}")/../../web/$part"
if [ ! -d dist ]; then
  echo "web/$part is not built (scripts/build_web.sh)"
  exit 77
fi
if [ "$part" = studio ] && ! command -v chromium >/dev/null; then
  echo "there is no Chromium"
  exit 77
fi
MAROVIA_TOOL=$3 exec "$1" --expose-gc --test test/*.test.js
