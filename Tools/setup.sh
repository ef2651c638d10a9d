# What run and test share: installing what is missing, configuring and building, with one line per stage and its seconds.
# Sourced with the repository's root as the working directory. Each step does nothing where nothing changed.

set -euo pipefail

jobs=$(nproc 2>/dev/null || echo 2)

# Runs a command as a named stage, showing the end of its output only when it fails. The whole output stays in build/log.
stage() {
  local name=$1 started=$SECONDS log status=0
  shift
  mkdir -p build/log
  log="build/log/$(printf '%s' "$name" | tr -cs 'A-Za-z0-9\n' '-').txt"
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -eq 0 ]; then
    printf '%-36s %4d s\n' "$name" $((SECONDS - started))
  else
    printf '%-36s %4d s  FAILED (%s)\n' "$name" $((SECONDS - started)) "$log"
    tail -n "${shown:-60}" "$log" >&2
  fi
  return "$status"
}

fail() {
  printf '%s\n' "$1" >&2
  exit 1
}

is_installed() {
  case "$1" in
    nodejs) command -v node >/dev/null && return ;;
    npm) command -v npm >/dev/null && return ;;
  esac
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

missing_packages() {
  local package
  grep -v -e '^#' -e '^[[:space:]]*$' packages.txt | while read -r package; do
    is_installed "$package" || printf '%s ' "$package"
  done
}

# apt's lists may be absent or older than the archive, so they are fetched only once something has to be installed.
install_packages() {
  "${privilege[@]}" apt-get update -q &&
    "${privilege[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "$@"
}

setup_packages() {
  local missing
  command -v dpkg-query >/dev/null || fail "This needs a Debian system; the packages it uses are listed in packages.txt."
  missing=$(missing_packages)
  [ -n "$missing" ] || return 0
  privilege=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null && { sudo -n true 2>/dev/null || { [ -t 0 ] && sudo -v; }; } ||
      fail "Missing packages: ${missing% }. Install them as root: apt-get install --no-install-recommends ${missing% }"
    privilege=(sudo)
  fi
  # shellcheck disable=SC2086 # one word per package
  stage "install packages" install_packages $missing
}

setup_node() {
  local version
  version=$(node -p 'process.versions.node')
  node -e 'const [a, b] = process.versions.node.split(".").map(Number); process.exit(a > 18 || (a === 18 && b >= 15) ? 0 : 1)' ||
    fail "Node $version is too old: 18.15 or newer is needed."
  # The Debian package of Emscripten looks for its JavaScript parser where only Debian's own node looks by itself.
  if [ -d /usr/share/nodejs ]; then
    export NODE_PATH="/usr/share/nodejs${NODE_PATH:+:$NODE_PATH}"
  fi
  local wanted stamp=node_modules/.installed-lock
  wanted="$(sha256sum <package-lock.json | cut -d' ' -f1) $version"
  if [ "$(cat "$stamp" 2>/dev/null)" != "$wanted" ]; then
    stage "npm ci" npm ci --ignore-scripts --no-audit --no-fund
    printf '%s\n' "$wanted" >"$stamp"
  fi
}

# ccache writes below the home directory; a checkout without a usable one keeps the cache to itself.
setup_ccache() {
  if [ -z "${CCACHE_DIR:-}" ] && ! { [ -n "${HOME:-}" ] && mkdir -p "$HOME/.cache/ccache" 2>/dev/null && [ -w "$HOME/.cache/ccache" ]; }; then
    export CCACHE_DIR="$PWD/build/ccache"
  fi
}

setup() {
  setup_packages
  setup_node
  setup_ccache
}

# Configures and builds one preset; further arguments are the targets. Ninja itself configures anew when a CMake file changes.
build() {
  local preset=$1
  shift
  if [ ! -f "build/$preset/build.ninja" ] || [ CMakePresets.json -nt "build/$preset/CMakeCache.txt" ]; then
    stage "configure $preset" cmake --preset "$preset" || return
  fi
  stage "build $preset" ninja -C "build/$preset" -j"$jobs" "$@"
}

# Whether the bundle is newer than all that goes into it.
page_is_bundled() {
  local stamp=build/wasm/bundled name
  for name in zelkon-plot.js zelkon-plot.wasm; do
    [ -f "out/web/$name" ] || return
  done
  [ -f "$stamp" ] && [ -z "$(find Hosts/Web Backends/Canvas Resources LICENSE package-lock.json tsconfig.json \
    build/wasm/bin/zelkon-plot-module.wasm -newer "$stamp" -print -quit)" ]
}

build_page() {
  build wasm zelkon-plot-module || return
  page_is_bundled && return
  stage "bundle the page's module" node Hosts/Web/build.mjs && touch build/wasm/bundled
}
