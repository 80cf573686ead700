#!/usr/bin/env bash
# host_test.sh FOLDER [CMAKE_OPTION...]: the host that README.md shows, word for word, builds with
# the project as a folder of its own, opens the example, and is driven through an edit, a run and a
# save. What was built stays in FOLDER, so that the next time only what has changed is compiled.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
folder=$1
shift

fail() {
  printf '%s\n' "$*"
  exit 1
}

# block LANGUAGE: the first code of that language below the heading.
block() {
  awk -v fence="\`\`\`$1" '/^## / { here = $0 == "## Embedding" }
                           inside && $0 == "```" { exit }
                           inside { print }
                           here && $0 == fence { inside = 1 }' "$root/README.md"
}

# take FILE LANGUAGE: written only where it differs, which would compile it again.
take() {
  block "$2" >"$folder/taken"
  [ -s "$folder/taken" ] || fail "README.md shows no $2 below \"Embedding\""
  cmp -s "$folder/taken" "$1" || cp "$folder/taken" "$1"
}

host=$folder/host
mkdir -p "$host"
take "$host/CMakeLists.txt" cmake
take "$host/main.cpp" cpp
lines=$(cat "$host/CMakeLists.txt" "$host/main.cpp" | wc -l)
[ "$lines" -le 60 ] || fail "The host in README.md has grown to $lines lines"
ln -sfn "$root" "$host/process_edit"

cmake -S "$host" -B "$folder/build" "$@" \
  -DCMAKE_PROJECT_my_host_INCLUDE="$root/tests/embed_minimal/host_ways.cmake"
cmake --build "$folder/build" --target my_host

rm -rf "$folder/project"
cp -r "$root/examples/bench_check" "$folder/project"
if ! "$folder/build/my_host" "$folder/project" ecu_check >"$folder/output" 2>&1; then
  cat "$folder/output"
  fail "The host did not quit cleanly"
fi
cat "$folder/output"
grep -q 'said by an added step' "$folder/output" || fail "The added step was not run"
grep -q 'ecu_check 运行结束' "$folder/output" || fail "The run did not end well"
grep -q 'said by an added step' "$folder/project/CApplet/ecu_check/processInfo.pedt" ||
  fail "The edit was not saved"
if grep -E 'QObject|QThread|QWidget|QCoreApplication|\[流程编辑\]' "$folder/output"; then
  fail "The host was told of something that went wrong"
fi
