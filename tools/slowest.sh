#!/usr/bin/env bash
# slowest.sh BUILD-FOLDER...: prints the ten slowest tests of the last run, and the ten sources that
# took longest in their last compilation.
set -uo pipefail
export LC_ALL=C  # numbers with a decimal point

# seconds_of_tests FOLDER: prints "SECONDS NAME" for each test, from GoogleTest's results.
seconds_of_tests() {
  find "$1/results" -name '*.xml' -exec cat {} + 2>/dev/null |
    sed -n 's/.*<testcase name="\([^"]*\)".* time="\([0-9.]*\)".* classname="\([^"]*\)".*/\2 \3.\1/p'
}

# seconds_of_sources FOLDER: prints "SECONDS SOURCE" for each object, from Ninja's log.
seconds_of_sources() {
  [ -f "$1/.ninja_log" ] || return 0
  awk -F '\t' -v folder="${1##*/}" '
    $4 ~ /\.o(bj)?$/ { spent[$4] = ($2 - $1) / 1000 }
    END {
      for (object in spent) {
        name = object
        sub(/CMakeFiles\/[^\/]*\.dir\//, "", name)
        sub(/\.o(bj)?$/, "", name)
        print spent[object], folder "/" name
      }
    }' "$1/.ninja_log"
}

# top_ten: prints the ten largest "SECONDS NAME" lines.
top_ten() { sort -rn | head -n 10 | awk '{ printf "%8.1f s  %s\n", $1, $2 }'; }

tests=$(for folder; do seconds_of_tests "$folder"; done)
echo "$(printf '%s\n' "$tests" | grep -c .) tests; the slowest:"
printf '%s\n' "$tests" | top_ten
echo "The sources that took longest to compile:"
for folder; do seconds_of_sources "$folder"; done | top_ten
