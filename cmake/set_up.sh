# Sourced by ./run and ./test: makes a fresh Debian 12 able to build and show the project, and
# configures and builds one preset. Quick when nothing changed.

packages=(
  g++ cmake ninja-build ccache
  qtbase5-dev libqt5svg5-dev
  libbenchmark-dev
  fonts-noto-cjk
)

say() { printf '%s\n' "$*" >&2; }

install_packages() {
  local missing=() package
  for package in "${packages[@]}"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] \
      || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  say "Installing: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      say "These packages are missing; install them as root: ${missing[*]}"
      exit 1
    fi
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -qq >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# build PRESET: configures and builds everything.
build() {
  local preset=$1
  local log options=()
  log=$(mktemp)
  # Said only where it is asked for: another value would build everything anew.
  if [ -n "${PROCESS_EDIT_WERROR:-}" ]; then
    options=(-DPROCESS_EDIT_WERROR="$PROCESS_EDIT_WERROR")
  fi
  if ! cmake --preset "$preset" "${options[@]}" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    exit 1
  fi
  rm -f "$log"
  cmake --build --preset "$preset" >&2
}
