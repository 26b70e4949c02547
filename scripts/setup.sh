# Sourced by the scripts beside it: brings a bare Debian machine to the point where the project builds.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '\n== %s\n' "$*"; }
fail() {
  printf '\n%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# What the library, the command line and their tests are built and run with, as Debian packages.
build_packages=(g++ cmake ninja-build pkg-config python3 libhwy-dev libgtest-dev libgif-dev libpng-dev
  libjpeg62-turbo-dev libwebp-dev libcli11-dev libimagequant-dev)

# What the operations are measured beside.
peer_packages=(libopencv-core-dev libopencv-imgproc-dev libpixman-1-dev libyuv-dev libsdl2-dev libimagequant-dev)

# need_packages NAME...: installs those that are missing, all at once.
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f '${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  command -v apt-get >/dev/null || fail "these packages are missing and this is no Debian system: ${missing[*]}"
  say "Installing ${missing[*]}"
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || fail "installing packages needs root or sudo: ${missing[*]}"
    root=(sudo)
  fi
  "${root[@]}" apt-get update -qq || fail "apt-get update failed"
  DEBIAN_FRONTEND=noninteractive "${root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" \
    >/dev/null || fail "installing failed: ${missing[*]}"
}

# quietly WHAT COMMAND...: shows the command's output only when it fails.
quietly() {
  local what=$1 log
  shift
  log=$(mktemp)
  "$@" >"$log" 2>&1 || { cat "$log"; fail "$what failed"; }
  rm -f "$log"
}

# configure PRESET [CMAKE OPTION...]: one of the presets.
configure() {
  local preset=$1
  shift
  cd "$top"
  quietly "configuring $preset" cmake --preset "$preset" -G Ninja "$@"
}

# build PRESET [CMAKE OPTION...]: configures and builds one of the presets.
build() {
  local preset=$1
  say "Building ($preset)"
  configure "$@"
  quietly "building $preset" cmake --build --preset "$preset"
}

# run_tests PRESET [CTEST OPTION...]: the tests of a built preset; shows the failures and the count.
run_tests() {
  local log preset=$1
  shift
  log=$(mktemp)
  if (cd "$top" && ctest --preset "$preset" --parallel "$(nproc)" "$@") >"$log" 2>&1; then
    tail -n 5 "$log"
    rm -f "$log"
  else
    grep -v ' Passed \| Start ' "$log"
    fail "tests failed ($preset)"
  fi
}
