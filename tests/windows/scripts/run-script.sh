#!/bin/sh
# run-script.sh SCRIPT [--last LINE] [ARGUMENT...]: runs a script of this folder under Wine.
# Succeeds if the exit code is 0 and the last line is LINE, or by default ends in ", 0 failures",
# because Wine's cscript ends silently with 0 when a script aborts.
set -u
here=$(cd "$(dirname "$0")" && pwd)
script="Z:$(realpath "$here/$1" | tr / '\\')"
shift
last='*, 0 failures'
if [ "${1:-}" = --last ]; then
  last=$2
  shift 2
fi
said=$("$here/../under-wine.sh" cscript //nologo "$script" "$@")
status=$?
said=$(printf '%s' "$said" | tr -d '\r')
printf '%s\n' "$said"
if [ $status -ne 0 ]; then exit $status; fi
case "$(printf '%s\n' "$said" | tail -n 1)" in
  $last) ;;
  *)
    echo "The script aborted." >&2
    exit 1
    ;;
esac
