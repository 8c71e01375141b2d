#!/usr/bin/env bash
# completion.sh KVO OUT: writes kvo's command line completion for bash, generated from the output of
# --help for the program and for each command.
set -euo pipefail
kvo=$1
exec >"$2"
export LC_ALL=C.UTF-8

# options: prints the options in a help text; with "values", those that take a value.
options() {
  awk -v values="${1:-}" '
    /^Options:$/ { on = 1; next }
    $0 == "" { on = 0 }
    on {
      sub(/^ +/, "")
      sub(/  .*/, "")
      valued = sub(/ [A-Z|]+$/, "")
      gsub(/,/, "")
      if (values == "" || valued) print
    }' | xargs
}

commands=$("$kvo" --help | awk '/^Commands:$/ { on = 1; next } $0 == "" { on = 0 } on { print $1 }' | xargs)
classes=$("$kvo" classes | grep -oE '^DTC[A-Za-z]+' | xargs)
cat <<END
# Completion of kvo for bash. Written by tools/completion.sh.
_kvo() {
  local word=\${COMP_WORDS[COMP_CWORD]} before=\${COMP_WORDS[COMP_CWORD - 1]} options= valued= arguments=
  COMPREPLY=()
  case \$COMP_CWORD:\${COMP_WORDS[1]} in
    1:*)
      options="$("$kvo" --help | options)"
      arguments="help $commands"
      ;;
    2:help) arguments="$commands" ;;
END
for command in $commands; do
  help=$("$kvo" "$command" --help)
  echo "    *:$command)"
  echo "      options=\"$(options <<<"$help")\""
  echo "      valued=\" $(options values <<<"$help") \""
  # Completes a class first if the usage says so.
  [[ ${help%%$'\n'*} != *CLASS* ]] ||
    echo "      [ \$COMP_CWORD -ne 2 ] || arguments=\"$classes\""
  echo "      ;;"
done
cat <<'END'
  esac
  # Completes file names when nothing here fits.
  [[ $valued == *" $before "* ]] && return
  [[ $word == -* ]] && arguments=$options
  COMPREPLY=($(compgen -W "$arguments" -- "$word"))
}
complete -o default -F _kvo kvo
END
