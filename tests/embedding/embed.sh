#!/usr/bin/env bash
# embed.sh FOLDER KVO CONFIGURE...: configures examples/embedding with CONFIGURE... and builds it in
# FOLDER. The program must change a page exactly as `kvo set` does, and keep it unchanged after a
# failure.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
folder=$1 kvo=$2
shift 2
mkdir -p "$folder"
cd "$folder"
{ "$@" -S "$root/examples/embedding" -B build && cmake --build build --target change_control; } >log 2>&1 || {
  cat log >&2
  exit 1
}
program=build/change_control

cp "$root/examples/newsletter/newsletter.html" page.html
"$program" page.html Summe Format '0.0'
"$kvo" set "$root/examples/newsletter/newsletter.html" Summe Format='0.0' -o expected.html
cmp page.html expected.html
grep -q 'format="0.0"' page.html

# fails MESSAGE ARGUMENT...: the program reports MESSAGE and keeps the page unchanged.
fails() {
  local message=$1 code=0
  shift
  cp page.html before.html
  "$program" page.html "$@" 2>said || code=$?
  if [ "$code" -ne 1 ] || ! grep -qF "$message" said; then
    echo "Exit code $code, \"$message\" expected. It said:" >&2
    cat said >&2
    exit 1
  fi
  cmp page.html before.html
}
fails "has no control with the id nobody" nobody Format 0
fails "NoSuchProperty" Summe NoSuchProperty 0
sed -i 's/KVOPDesignObjects.DTCScript/KVOPDesignObjects.DTCSkript/' page.html
fails "[unknown-class]" Summe Format '0.00'
