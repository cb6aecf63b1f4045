# Sourced by ./run, ./test and ./bench: checks for the build dependencies.
# On Debian it installs missing packages; on macOS it lists them.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Packages for every build, then those for tests, benchmarks and so on.
debian_build="g++ cmake ninja-build qt6-base-dev libqt6sql6-sqlite qt6-webengine-dev libgl-dev libssl-dev libsqlite3-dev libplist-dev libgcrypt20-dev pkg-config pandoc fonts-crosextra-carlito fonts-noto-color-emoji fonts-droid-fallback fonts-nanum"
debian_screens="xvfb"
debian_test="libgtest-dev libgmock-dev chromium nodejs openssl python3 python3-jsonschema xvfb xdotool imagemagick"
debian_engines="chromium firefox-esr webkit2gtk-driver nodejs xvfb"
debian_package="dpkg-dev file fakeroot lintian"
debian_package_test="debootstrap xvfb xauth xdotool imagemagick x11-utils"
debian_format="clang-format"
debian_tidy="clang-tidy python3"
debian_bench="libbenchmark-dev libssl-dev libsqlite3-dev time"
debian_fuzz="clang libclang-rt-14-dev"
brew_build="cmake ninja qt openssl@3 sqlite libplist libgcrypt pkgconf pandoc libiconv"
brew_screens="xorg-server"
brew_test="googletest node openssl@3 python"
brew_engines="node"
brew_package=""
brew_package_test=""
brew_format="clang-format"
brew_tidy="llvm python"
brew_bench="google-benchmark openssl@3 sqlite"
brew_fuzz="llvm"

fail() {
  echo "orvandel: $*" >&2
  exit 1
}

# Prints the absolute path of a file or folder, which need not exist.
absolute() {
  case "$1" in
    /*) echo "$1" ;;
    *) echo "$PWD/$1" ;;
  esac
}

# with_display COMMAND...: runs a command on its own virtual display.
with_display() {
  local number status
  coproc XSERVER { exec Xvfb -displayfd 1 -screen 0 1280x900x24 2>/dev/null; }
  read -r number <&"${XSERVER[0]}" || fail "no display could be started"
  DISPLAY=:$number QT_QPA_PLATFORM=xcb "$@"
  status=$?
  kill "$XSERVER_PID" 2>/dev/null
  wait "$XSERVER_PID" 2>/dev/null
  return $status
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

setup_debian() {
  local missing="" package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing="$missing $package"
  done
  [ -z "$missing" ] && return
  echo "orvandel: installing$missing" >&2
  [ "$(id -u)" = 0 ] || command -v sudo >/dev/null || fail "not root and no sudo; please install:$missing"
  as_root apt-get update -q >/dev/null || fail "apt-get update failed"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends $missing >/dev/null </dev/null ||
    fail "could not install:$missing"
}

setup_macos() {
  command -v brew >/dev/null || fail "Homebrew is missing; with it, install: $*"
  local missing="" formula prefixes=""
  for formula in "$@"; do
    brew list --formula "$formula" >/dev/null 2>&1 || missing="$missing $formula"
  done
  [ -z "$missing" ] || fail "missing formulas; please run: brew install$missing"
  # Some of them aren't linked into Homebrew's own folder.
  for formula in qt openssl@3 sqlite libiconv; do
    prefixes="$prefixes$(brew --prefix "$formula"):"
  done
  export CMAKE_PREFIX_PATH="$prefixes$(brew --prefix)${CMAKE_PREFIX_PATH:+:$CMAKE_PREFIX_PATH}"
}

# setup KIND...: KIND is build, test, format, tidy, screens, bench, fuzz, package or package_test.
setup() {
  local kind debian="" formulas="" name
  for kind in "$@"; do
    name=debian_$kind; debian="$debian ${!name}"
    name=brew_$kind; formulas="$formulas ${!name}"
  done
  case "$(uname -s)" in
    Darwin) setup_macos $formulas ;;
    *)
      if command -v dpkg-query >/dev/null; then
        setup_debian $debian
      else
        echo "orvandel: not Debian; please install the equivalents of:$debian" >&2
      fi
      ;;
  esac
}

# build PRESET: configures and builds. The output is logged, and the end of the log printed on failure.
build() {
  local preset=$1 folder log
  mkdir -p "$root/build"
  log=$root/build/$preset.log
  cd "$root" || exit 1
  echo "orvandel: building ($preset) ..." >&2
  { cmake --preset "$preset" && cmake --build --preset "$preset"; } >"$log" 2>&1 || {
    tail -n 60 "$log" >&2
    fail "the build failed; its full output is in $log"
  }
}
