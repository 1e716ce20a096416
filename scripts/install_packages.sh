#!/usr/bin/env bash
# Installs what is missing of the packages for building, testing or checking Marovia (Debian 12).
#
#   scripts/install_packages.sh GROUP...      GROUP: build, test, check, bench, fuzz, cross, package,
#                                             web, browser
#
# A system that has them all is left alone: no root rights, no network.
set -euo pipefail

build_packages=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev qt6-base-dev
  libpng-dev libtiff-dev libjpeg62-turbo-dev fonts-dejavu-core)
test_packages=(libgtest-dev xvfb openbox xdotool imagemagick desktop-file-utils libxml2-utils
  locales valgrind parallel appstream pkg-config python3 mandoc zsh fish file
  python3-numpy python3-pil python3-pytest python3-distributed mypy)
check_packages=(clang-format clang-tidy cppcheck)
package_packages=(dpkg-dev file lintian debootstrap python3)
# The peers are measured where they are installed.
bench_packages=(libbenchmark-dev pkg-config libopenjp2-7-dev libcharls-dev libjpeg62-turbo-dev
  libjxl-dev)
fuzz_packages=(clang)
# Other processors: compilers for them, an emulator, and the test library to build for them.
cross_packages=(g++-aarch64-linux-gnu g++-s390x-linux-gnu qemu-user googletest)
# The module and the page; npm comes with Node where that is not Debian's.
web_packages=(cmake ninja-build clang-19 lld-19 libc++-19-dev-wasm32 libc++abi-19-dev-wasm32
  libclang-rt-19-dev-wasm32 wasi-libc)
command -v npm >/dev/null || web_packages+=(nodejs npm)
browser_packages=(chromium)

wanted=()
for group in "$@"; do
  case $group in
    build) wanted+=("${build_packages[@]}") ;;
    test) wanted+=("${test_packages[@]}") ;;
    check) wanted+=("${check_packages[@]}") ;;
    package) wanted+=("${package_packages[@]}") ;;
    bench) wanted+=("${bench_packages[@]}") ;;
    fuzz) wanted+=("${fuzz_packages[@]}") ;;
    cross) wanted+=("${cross_packages[@]}") ;;
    web) wanted+=("${web_packages[@]}") ;;
    browser) wanted+=("${browser_packages[@]}") ;;
    *)
      echo "install_packages.sh: unknown group '$group' (build, test, check, bench, fuzz, cross, package, web or browser)" >&2
      exit 2
      ;;
  esac
done

is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

give_up() {
  echo "install_packages.sh: $1; install by hand: ${missing[*]}" >&2
  exit 1
}

missing=()
if command -v dpkg-query >/dev/null; then
  for package in "${wanted[@]}"; do
    is_installed "$package" || missing+=("$package")
  done
else
  missing=("${wanted[@]}")
fi
[ ${#missing[@]} -gt 0 ] || exit 0

command -v apt-get >/dev/null || give_up "this is no Debian system"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || give_up "root rights are needed and there is no sudo"
  as_root=(sudo)
fi
# How far apt is goes to a descriptor of its own: apt closes it to the scripts of the packages.
apt() {
  # shellcheck disable=SC2016 # the inner shell is to see it
  "${BASH_SOURCE[0]%/*}/with_progress.sh" "$1" "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    sh -c 'exec apt-get -q -o Dpkg::Use-Pty=0 -o APT::Status-Fd=3 "$@" 3>&1' apt "${@:2}"
}
echo "${#missing[@]} packages are missing: ${missing[*]}" >&2
apt "Updating the package lists" update || give_up "the package lists cannot be updated"
fetch=(install -y --no-install-recommends "${missing[@]}")
apt "Downloading them and what they need" "${fetch[@]}" --download-only &&
  apt "Installing them" "${fetch[@]}" || give_up "the packages cannot be installed"
