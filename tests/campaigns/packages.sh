#!/usr/bin/env bash
# Installs the Debian packages on a bare Debian 12 made for it, uses all of them there, and removes
# them. Needs root rights, the network, and some minutes.
#
#   packages.sh            builds the packages first
#   packages.sh FOLDER     takes those in the folder
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
packages=${1:-$root/build/packages}
[ $# -gt 0 ] || "$root/scripts/make_packages.sh" "$packages"
"$root/scripts/install_packages.sh" package

bare=$(mktemp -d)
chmod 755 "$bare"
finish() {
  umount "$bare/proc" 2>/dev/null || true
  rm -rf --one-file-system "$bare"
}
trap finish EXIT

fail() {
  echo "packages.sh: $1" >&2
  exit 1
}
inside() { chroot "$bare" env DEBIAN_FRONTEND=noninteractive HOME=/root LC_ALL=C.UTF-8 bash -euo pipefail -c "$1"; }
mirror=$(sed -nE 's/^(deb |URIs: ).*(https?:[^ ]+).*/\2/p' /etc/apt/sources.list \
  /etc/apt/sources.list.d/* 2>/dev/null | grep -v security | head -n 1 || true)
debootstrap --variant=minbase bookworm "$bare" "${mirror:-http://deb.debian.org/debian}" >"$bare.log" ||
  fail "$(tail "$bare.log")"
rm -f "$bare.log"
cp /etc/resolv.conf "$bare/etc/"
cp -r /etc/apt/apt.conf.d/. "$bare/etc/apt/apt.conf.d/"
mount -t proc proc "$bare/proc"
cp "$packages"/*.deb "$bare/tmp/"
echo "A bare system is there"
install="apt-get install -y -qq --no-install-recommends"

# The Python package alone codes arrays, and brings no desktop.
inside "apt-get update -qq && $install /tmp/libmarovia0*.deb /tmp/python3-marovia_*.deb >/tmp/log 2>&1" ||
  fail "$(tail "$bare/tmp/log")"
inside 'python3 - <<END
import marovia, numpy
image = numpy.eye(99, dtype=numpy.uint8)
assert (marovia.decode(marovia.encode(image, lossless=True)) == image).all()
END'
! inside 'dpkg-query -Wf "\${Package}\n"' | grep -E '^(libqt|libx11|libwayland|libgl|x11)' ||
  fail "the Python package brings a desktop"
echo "Python alone works"

# The packages alone, with what they say they need.
inside "$install /tmp/*.deb >/tmp/log 2>&1" || fail "$(tail "$bare/tmp/log")"
inside 'cd /tmp
  marovia compress /usr/share/marovia/Images/camera.pgm camera.awh
  marovia decompress camera.awh camera.pgm
  marovia measure /usr/share/marovia/Images/camera.pgm camera.pgm
  QT_QPA_PLATFORM=offscreen marovia-window --version'
# The window itself, for as long as it takes to show that it stays.
status=0
inside 'QT_QPA_PLATFORM=offscreen timeout 5 marovia-window /tmp/camera.awh' 2>/dev/null || status=$?
[ "$status" -eq 124 ] || fail "the window ends by itself, with status $status"
[ -L "$bare/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/libmarovia.so" ] ||
  fail "there is no library to link with"
grep -q image/x-marovia "$bare/usr/share/mime/globs" ||
  fail "the file types are not registered"
echo "Installed and used"

# What others build on it: a program, a man page read, Pillow.
inside "$install g++ pkg-config python3-pil man-db >/tmp/log 2>&1" || fail "$(tail "$bare/tmp/log")"
cp -r "$root/examples" "$bare/tmp/"
inside 'cd /tmp
  c++ -std=c++20 examples/consumer/consumer.cpp -o consumer $(pkg-config --cflags --libs marovia)
  ./consumer /usr/share/marovia/Images/camera.pgm
  python3 -c "import marovia.pillow; from PIL import Image; print(Image.open(\"camera.awh\"))"
  man marovia-compress | grep -q "compress an image"'
echo "Built upon"

names=$(for package in "$packages"/*.deb; do dpkg-deb -f "$package" Package; done | tr '\n' ' ')
inside "apt-get purge -y -qq $names >/tmp/log 2>&1" || fail "$(tail "$bare/tmp/log")"
left=$(find "$bare" -xdev -iname '*marovia*' -not -path "$bare/tmp/*" -not -path "$bare/var/*")
[ -z "$left" ] || fail "left behind: $left"
inside 'apt-get -qq check'
echo "Removed, and nothing is left"
