#!/usr/bin/env bash
# manual.sh KVO FOLDER: tests that every command and option of kvo is in its manual pages, in both
# languages, and in its completion.
set -euo pipefail
kvo=$1 folder=$2
failed=0
problem() {
  echo "$*" >&2
  failed=1
}

# proposals WORD...: prints the completions of the last word.
. "$folder/kvo.bash"
proposals() {
  COMP_WORDS=(kvo "$@") COMP_CWORD=$# COMPREPLY=()
  _kvo
  printf '%s\n' "${COMPREPLY[@]}"
}

# section COMMAND PAGE: prints the manual page's section about one command, with its dashes as
# typed.
section() {
  zcat "$2" | sed 's/\\-/-/g' | awk -v usage=".SS kvo $1" '
    /^\.SS/ { on = index($0 " ", usage " ") == 1 }
    on'
}

count=0
check() {  # COMMAND OPTION: reports an option that the manual pages or the completion lack
  local page
  for page in "$folder"/kvo.1.gz "$folder"/kvode_DE.UTF-8.1.gz; do
    # Uses here-strings, because grep -q would end a program that writes to it.
    grep -qE -- "^\.B (.*, )?$2( |,|\$)" <<<"$(section "$1" "$page")" ||
      problem "$page does not have $2 of kvo $1"
  done
  grep -qxF -- "$2" <<<"$(proposals "$1" "$2")" || problem "kvo $1 $2 is not completed"
  count=$((count + 1))
}

commands=$("$kvo" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
for command in $commands; do
  grep -qxF "$command" <<<"$(proposals "${command:0:2}")" || problem "kvo $command is not completed"
  for option in $("$kvo" "$command" --help | sed -n '/^Options:/,/^$/p' | grep -oE '^  (-[a-z], )?--[a-z-]+' | tr -d ,); do
    check "$command" "$option"
  done
done
# Tests this test itself.
[ "$(wc -w <<<"$commands")" -ge 10 ] || problem "too few commands: $commands"
[ "$count" -ge 30 ] || problem "too few options: $count"
check save --force
[ "$(proposals new DTCPri)" = DTCPrint ] || problem "classes are not completed"
[ -z "$(proposals save pa)" ] || problem "pages are completed instead of left to the shell"
[ -z "$(proposals save -o -)" ] || problem "the value of -o is completed instead of left to the shell"
if (failed=0; check save --no-such-option; exit $failed) 2>/dev/null; then problem "this test does not detect a missing option"; fi
exit $failed
