#!/usr/bin/env bash
# manual.sh KVO FOLDER: every command and every option that kvo knows is in its manual page, in both
# languages, and in its completion.
set -euo pipefail
kvo=$1 folder=$2
failed=0
problem() {
  echo "$*" >&2
  failed=1
}

# proposals WORD...: what is proposed for the last word.
. "$folder/kvo.bash"
proposals() {
  COMP_WORDS=(kvo "$@") COMP_CWORD=$# COMPREPLY=()
  _kvo
  printf '%s\n' "${COMPREPLY[@]}"
}

# section COMMAND PAGE: what the manual page says about one command, its dashes as they are typed.
section() {
  zcat "$2" | sed 's/\\-/-/g' | awk -v usage=".SS kvo $1" '
    /^\.SS/ { on = index($0 " ", usage " ") == 1 }
    on'
}

count=0
check() {  # COMMAND OPTION: both are in the manual pages and the completion
  local page
  for page in "$folder"/kvo.1.gz "$folder"/kvode_DE.UTF-8.1.gz; do
    # Here-strings, because grep -q would end what writes to it.
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
# What this test itself could overlook.
[ "$(wc -w <<<"$commands")" -ge 10 ] || problem "too few commands: $commands"
[ "$count" -ge 30 ] || problem "too few options: $count"
check save --force
[ "$(proposals new DTCPri)" = DTCPrint ] || problem "classes are not completed"
[ -z "$(proposals save pa)" ] || problem "pages are files"
[ -z "$(proposals save -o -)" ] || problem "the value of -o is a file"
if (failed=0; check save --no-such-option; exit $failed) 2>/dev/null; then problem "this test notices nothing"; fi
exit $failed
