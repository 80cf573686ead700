#!/usr/bin/env bash
# How ./run ends when the machine lacks what it needs: one sentence that says what to do. Commands
# of the machine are replaced by ones that fail as they would.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
cd "$work"
cp "$root/CMakePresets.json" .

fake() { # NAME SCRIPT
  printf '#!/bin/sh\n%s\n' "$2" >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}
# expect SENTENCE SCRIPT: the script ends with 1, and its last line holds the sentence.
expect() {
  local status=0 output
  output=$(PATH=$work/bin:$PATH bash -c "set -euo pipefail; . '$root/cmake/set_up.sh'; $2" 2>&1) || status=$?
  if [ $status -ne 1 ] || [[ $(tail -n 1 <<<"$output") != *"$1"* ]]; then
    printf 'Expected an end with 1 and "%s", got %s and:\n%s\n' "$1" "$status" "$output"
    exit 1
  fi
}

fake dpkg-query 'echo "installed g++"; echo "deinstall cmake"; exit 1'
fake apt-get 'echo "E: Unable to locate package"; exit 100'
fake sudo 'exec "$@"'
expect 'could not be installed; install them and start again: cmake ninja-build ' install_packages
fake id 'echo 1000'
rm "$work/bin/sudo"
expect 'as root and start again: cmake ninja-build ' \
  'command() { [ "$2" != sudo ] && builtin command "$@"; }; install_packages'

expect 'There is no C++ compiler no-such-compiler' 'CXX=no-such-compiler configure release'
fake cmake 'echo "CMake Error: something"; exit 1'
fake df 'printf "Avail\n 5000\n"'
expect 'CMake could not configure the project (preset release): the first error above says why' \
  'CXX=sh configure release'
expect 'The build failed (preset release)' 'build release workbench'
fake df 'printf "Avail\n   12\n"'
expect 'The disk is full (12 MB free below ' 'build release workbench'

fake cmake 'echo configured >>calls'
mkdir -p build/release
touch build/release/build.ninja
for options in '' '' -DX=ON; do
  PATH=$work/bin:$PATH bash -c "set -euo pipefail; . '$root/cmake/set_up.sh'; CXX=sh configure release $options" 2>/dev/null
done
[ "$(wc -l <calls)" -eq 2 ] || { echo "Configured $(wc -l <calls) times, not 2"; exit 1; }
