#!/usr/bin/env bash
# Runs the tests of the core and of kvo and writes which lines they reach to build/coverage/report.
# `./test coverage` calls it.
set -uo pipefail
cd "$(dirname "$0")/.."
folder=build/coverage
echo "Building; from scratch this takes some minutes."
{ cmake --preset coverage && cmake --build --preset coverage; } >build/coverage.log 2>&1 || {
  tail -n 60 build/coverage.log >&2
  echo "The build failed; build/coverage.log has everything." >&2
  exit 1
}
find "$folder" -name '*.gcda' -delete
failed=0
# Left out is what makes kvo die or its files fail, because it writes what it counted into files at its
# end, and what builds the libraries once more.
GTEST_FILTER=-Streams.ThatTookPartOfThePageAreNotSaidToBeUnchanged \
  ctest --preset coverage -L core -E '^(kvo_fault_tests|embedding)' || failed=1
rm -rf "$folder/report"
mkdir "$folder/report"
gcovr -j 2 --root . --filter 'common/' --filter 'controls/' --filter 'pages/' --filter 'document/' \
  --filter 'host/' --filter 'apps/' --print-summary --html-details "$folder/report/index.html" \
  "$folder" >"$folder/report/summary.txt" || failed=1
cat "$folder/report/summary.txt"
echo "Line by line: $folder/report/index.html"
exit $failed
