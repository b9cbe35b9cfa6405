#!/usr/bin/env bash
# Installs every Debian package that the build, the program and the tests
# need. Skips what is already there; uses sudo when not root. With --fuzz,
# also clang and its runtime for the libFuzzer targets of `make fuzz`.
set -euo pipefail

packages=(
  cmake ninja-build g++ make pkg-config
  qt6-base-dev qt6-svg-dev libgl-dev        # Qt Widgets, PrintSupport, Test, Svg
  qt6-gtk-platformtheme                     # native dialogs on a desktop
  fonts-liberation2 fontconfig              # metric twins of Arial and Times New Roman
  libeigen3-dev                             # eigenvalues of the time-domain analysis
  libgtest-dev libgmock-dev libbenchmark-dev
  ngspice                                   # independent check of the analysis
  poppler-utils                             # pdftotext: texts of the printed page
  clang-format
)
if [ "${1:-}" = "--fuzz" ]; then
  packages=(clang libclang-rt-14-dev)       # libFuzzer targets
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
