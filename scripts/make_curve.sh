#!/usr/bin/env bash
# Draws docs/camera_curve.svg anew: the lossy coders on Images/camera.pgm.
#
#   scripts/make_curve.sh TOOL     such as build/run/cli/marovia
set -euo pipefail
tool=$(realpath "$1")
cd "$(dirname "${BASH_SOURCE[0]}")/.."
"$tool" curve Images/camera.pgm docs/camera_curve.svg --force
