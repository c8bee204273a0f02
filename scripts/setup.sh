#!/usr/bin/env bash
# Installs everything Tarnwick needs to build, run and test from Debian's
# packages. Safe to run again: it only installs what is missing.
set -euo pipefail

packages=(
  # toolchain
  g++ cmake ninja-build pkg-config ccache clang libclang-rt-dev clang-format
  # what draws images from their SVG sources: the recorder's styles at build
  # time, the application icon's sizes (scripts/render-icon.sh)
  python3 librsvg2-bin
  # libraries
  qt6-base-dev libgl-dev libplist-dev libicu-dev libssl-dev nlohmann-json3-dev libsqlite3-dev
  # Qt's SVG image plugin: most applications' icons in the icon themes are SVG
  libqt6svg6
  libxcb1-dev libxcb-ewmh-dev libxcb-icccm4-dev libxcb-xinput-dev libxcb-res0-dev
  libxcb-xkb-dev libxcb-xtest0-dev libxcb-screensaver0-dev libxkbcommon-dev libxkbcommon-x11-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  # the updater: feeds, transfers, signatures
  libcurl4-openssl-dev libpugixml-dev libsodium-dev
  # making a release: its archive and signature
  openssl
  # what the end-to-end tests read the desktop with: repaints, the accessibility bus
  libxcb-damage0-dev libatspi2.0-dev at-spi2-core dbus-daemon
  # a desktop to run on and test against
  xvfb xauth openbox x11-utils x11-xkb-utils xdotool xterm pcmanfm tint2
  # the display's X resources, which a test sets as a desktop's settings do
  x11-xserver-utils
  # a GTK editor whose settings entry runs the same program as its own entry
  mousepad
  dbus-x11 imagemagick strace procps
  # a second window manager, and a GTK and a Qt application, for the panel's
  # end-to-end tests
  icewm mousepad featherpad
  # packaging and its checks: the package's dependencies, lint, the desktop's
  # files, the manual page; a status-notifier tray host to test against
  dpkg-dev lintian desktop-file-utils appstream man-db haskell-gtk-sni-tray-utils
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
