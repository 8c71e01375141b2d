#!/usr/bin/env bash
# Builds the fuzzers and runs each for KVO_FUZZ_SECONDS (60), two at a time, under the address and
# undefined-behaviour sanitizers. Then plays KVO_STORIES (3000) random stories on Qt's widgets.
# Fails when any of them finds something. `./test fuzz` calls it.
set -uo pipefail
cd "$(dirname "$0")/.."
export KVO_FUZZ_SECONDS=${KVO_FUZZ_SECONDS:-60}
runs=build/fuzz/runs
mkdir -p "$runs"
mapfile -t names < <(sed -n 's/^kvo_add_fuzzer(\([A-Za-z]*\) .*/\1/p' fuzz/CMakeLists.txt)

echo "Building the fuzzers; from scratch this takes some minutes."
{ cmake --preset fuzz && cmake --build --preset fuzz --target "${names[@]/%/_fuzz}"; } >build/fuzz.log 2>&1 || {
  tail -n 60 build/fuzz.log >&2
  echo "The build failed; build/fuzz.log has everything." >&2
  exit 1
}

# search NAME: runs one fuzzer. Keeps its corpus in $runs/NAME/learnt, and failing inputs in
# $runs/NAME/found, which the next run tries first.
search() {
  local name=$1 program=build/fuzz/bin/$1_fuzz run=$runs/$1 corpus=fuzz/corpus/$1 dict=fuzz/$1.dict
  # The scanner also reads pages.
  [ "$name" != scanner ] || { corpus=fuzz/corpus/page dict=fuzz/page.dict; }
  mkdir -p "$run/learnt" "$run/found"
  touch "$run/start"
  local options=(-max_total_time="$KVO_FUZZ_SECONDS" -rss_limit_mb=1024 -timeout=20
    -artifact_prefix="$run/found/" -print_final_stats=1)
  [ ! -f "$dict" ] || options+=(-dict="$dict")
  local code=0 inputs
  "$program" "${options[@]}" "$run/learnt" "$run/found" "$corpus" >"$run/log" 2>&1 </dev/null || code=$?
  inputs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$run/log")
  if [ "$code" -eq 0 ] && [ "${inputs:-0}" -gt 0 ]; then
    echo "$name: $inputs inputs, nothing found"
    return 0
  fi
  {
    echo "$name: FAILED (exit code $code, whole output in $run/log)"
    grep -a -E 'what\(\):|ERROR: |runtime error: ' "$run/log" | sed 's/^/  /'
    find "$run/found" -type f -newer "$run/start" | while read -r found; do
      echo "  the input:  $found"
      echo "  once more:  $program $found"
      echo "  to keep it: move it to $corpus/ under the name of what went wrong"
    done
  } >&2
  return 1
}
export -f search
export runs

failed=0
printf '%s\n' "${names[@]}" | xargs -P 2 -I NAME bash -c 'search NAME' || failed=1

# Starts after the stories that ./test plays.
export KVO_STORIES=${KVO_STORIES:-3000} KVO_STORY_SEED=${KVO_STORY_SEED:-301}
{ cmake --preset sanitize -DKVO_EDITOR=ON && cmake --build --preset sanitize --target kvo_qt_tests; } \
  >build/fuzz.log 2>&1 || {
  tail -n 60 build/fuzz.log >&2
  exit 1
}
build/sanitize/bin/kvo_qt_tests --gtest_filter='Stories.*' || failed=1
exit $failed
