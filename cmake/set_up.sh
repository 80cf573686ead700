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
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# build PRESET: configures when needed and builds everything; output only when something goes wrong
# or takes a while.
build() {
  local preset=$1
  local options=(-DPROCESS_EDIT_WERROR="${PROCESS_EDIT_WERROR:-OFF}")
  if [ ! -f "build/$preset/build.ninja" ] || [ -n "${PROCESS_EDIT_WERROR:-}" ]; then
    cmake --preset "$preset" "${options[@]}" >&2
  fi
  cmake --build --preset "$preset" >&2
}
