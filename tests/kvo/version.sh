#!/usr/bin/env bash
# version.sh CMAKE SCRIPT: tests that a program's version names the commit, and is the plain version
# without one.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# expect TEXT: the script writes TEXT as the version.
expect() {
  PATH=${path:-$PATH} "$1" -DROOT="$folder" -DVERSION=1.2.3 -DOUTPUT="$folder.cpp" -P "$2"
  local found
  found=$(sed -n 's/.*return "\(.*\)";.*/\1/p' "$folder.cpp")
  rm "$folder.cpp"
  [ "$found" = "$3" ] || { echo "\"$found\" instead of \"$3\"" >&2; exit 1; }
}
expect "$@" 1.2.3
if command -v git >/dev/null; then
  git=(git -C "$folder" -c user.name=Test -c user.email=test@example.invalid)
  "${git[@]}" init -q
  expect "$@" 1.2.3  # no commit yet
  echo one >"$folder/file"
  "${git[@]}" add file
  "${git[@]}" commit -qm one
  commit=$("${git[@]}" rev-parse --short HEAD)
  "${git[@]}" tag v1
  expect "$@" "1.2.3 ($commit)"
  echo two >"$folder/file"
  expect "$@" "1.2.3 ($commit-dirty)"
  # Simulates a machine without Git.
  path=/nonexistent expect "$@" 1.2.3
fi
