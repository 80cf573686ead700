# Sourced by ./run, ./test and the scripts beside them: makes a fresh Debian 12 able to build and
# show the project, and configures and builds one preset. Quick when nothing changed. What goes wrong
# ends with one sentence that says what to do.

packages=(
  g++ cmake ninja-build
  qtbase5-dev libqt5svg5-dev qttranslations5-l10n
  fonts-noto-cjk
)

say() { printf '%s\n' "$*" >&2; }
fail() {
  say "$*"
  exit 1
}

# Every package is asked for in one call; unknown ones have no line.
missing_packages() {
  local installed package
  installed=$'\n'$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${packages[@]}" 2>/dev/null || true)$'\n'
  for package in "${packages[@]}"; do
    case $installed in
      *$'\ninstalled '"$package"$'\n'*) ;;
      *) printf '%s ' "$package" ;;
    esac
  done
}

install_packages() {
  local missing as_root=() log
  missing=$(missing_packages)
  [ -n "$missing" ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || fail "Install these packages as root and start again: $missing"
    as_root=(sudo)
  fi
  say "Installing: $missing"
  log=$(mktemp)
  # Split into words on purpose.
  # shellcheck disable=SC2086
  if ! { "${as_root[@]}" apt-get update -qq &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -y -qq --no-install-recommends $missing; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "These packages could not be installed; install them and start again: $missing"
  fi
  rm -f "$log"
}

# Says in one sentence why a preset could not be configured or built, as far as it can be told.
fail_for() {
  local preset=$1 what=$2 free
  free=$(df --output=avail -m build 2>/dev/null | tail -n 1 | tr -d ' ')
  if [ "${free:-1000}" -lt 200 ]; then
    fail "The disk is full ($free MB free below $PWD/build): make room and start again."
  fi
  fail "$what (preset $preset): the first error above says why."
}

# configure PRESET [OPTION...]: anew only if it was not, or otherwise. Ninja sees to the rest.
configure() {
  local preset=$1 stamp=build/$1/configured wish log
  shift
  # Said only where it is asked for: another value would build everything anew.
  [ -z "${PROCESS_EDIT_WERROR:-}" ] || set -- "$@" "-DPROCESS_EDIT_WERROR=$PROCESS_EDIT_WERROR"
  wish="$* $(cksum <CMakePresets.json)"
  [ -f "build/$preset/build.ninja" ] && [ "$wish" = "$(cat "$stamp" 2>/dev/null)" ] && return
  command -v "${CXX:-g++}" >/dev/null || fail "There is no C++ compiler ${CXX:-g++}: install it, or unset CXX."
  say "Configuring $preset"
  mkdir -p "build/$preset" || fail "The folder $PWD/build/$preset can't be made."
  log=$(mktemp)
  if ! cmake --preset "$preset" "$@" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail_for "$preset" "CMake could not configure the project"
  fi
  rm -f "$log"
  printf '%s' "$wish" >"$stamp"
}

# build PRESET [TARGET...]: everything, or the targets.
build() {
  local preset=$1
  shift
  cmake --build --preset "$preset" ${1:+--target "$@"} >&2 || fail_for "$preset" "The build failed"
}
