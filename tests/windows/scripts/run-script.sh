#!/bin/sh
# run-script.sh SCRIPT [--last LINE] [ARGUMENT...]: runs a script of this folder under Wine. It has
# succeeded when it ends with 0 and its last line is LINE, or else ends in ", 0 failures": Wine's
# cscript ends with 0 and in silence when a script breaks off in the middle.
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
    echo "The script broke off." >&2
    exit 1
    ;;
esac
