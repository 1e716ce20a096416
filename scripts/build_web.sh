#!/usr/bin/env bash
# Builds what runs in browsers: the module, the package around it in web/codec/dist, the page in
# web/studio/dist. Needs the packages of group web, and npm's registry the first time; ends with 75
# where that is not reached.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/with_progress.sh "Configuring the module" cmake --preset wasm
scripts/with_progress.sh "Building the module" cmake --build --preset wasm

cd web
# Not `npm ci`: npm 11 finds the lock out of step with packages for other systems, which it left out.
if [ package-lock.json -nt node_modules/.package-lock.json ]; then
  ../scripts/with_progress.sh "Fetching what the page is built with" npm install --no-save --no-fund --no-audit ||
    exit 75
fi
npm run --silent build --workspace codec
cp ../build/wasm/web/codec/module/marovia.wasm codec/dist/
cp ../LICENSE codec/
npm run --silent build --workspace studio
