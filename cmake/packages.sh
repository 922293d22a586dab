# Debian packages that Strokemind needs, and how to install those that are missing. Sourced by ./check and ./run.
# shellcheck shell=bash

# To build and run the program.
# shellcheck disable=SC2034  # read by the scripts that source this file
build_packages=(
  cmake ninja-build g++ pkg-config ccache
  qt6-base-dev libx11-dev libxi-dev libxtst-dev libxext-dev libxfixes-dev libxrandr-dev libxcb1-dev libx11-xcb-dev
  libxcb-record0-dev libxcb-xinput-dev libxcb-shape0-dev libxcb-xfixes0-dev libxcb-xtest0-dev
)

# For the session that ./run plays where there is no display.
# shellcheck disable=SC2034
demo_packages=(xvfb openbox trayer xterm x11-utils imagemagick)

# To build and run the tests on top: test libraries, a private screen with what a desktop has, programs that the tests drive,
# and the tools that look at the sources.
# shellcheck disable=SC2034
test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev libatspi2.0-dev python3 git
  xvfb openbox xfwm4 metacity picom trayer tint2 dbus-x11 at-spi2-core
  xdotool xterm x11-utils x11-xkb-utils x11-xserver-utils xclip featherpad mousepad
  fontconfig imagemagick strace clang-format clang-tidy shellcheck clang libclang-rt-dev
  desktop-file-utils appstream man-db
)

# For tools/package.
# shellcheck disable=SC2034
package_packages=(dpkg-dev lintian debootstrap)

# install_missing PACKAGE...: installs those that are not there; does not touch the network when all are.
install_missing() {
  if ! command -v dpkg-query >/dev/null; then
    echo "This is not a Debian system: the equivalents of these packages must be there: $*" >&2
    return 0
  fi
  local present package missing=()
  # shellcheck disable=SC2016  # the format is dpkg-query's, not the shell's
  present=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p' || true)
  for package in "$@"; do
    grep -qxF -- "$package" <<<"$present" || missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  local as_root=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
