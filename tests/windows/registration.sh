#!/bin/bash
# registration.sh DLL KIND: tests that regsvr32, run once or twice, for the machine and for the
# user, writes the required keys, and that regsvr32 /u restores the registry. Uses a new Wine prefix
# of its own. The names and ids come from tests/golden/classes.txt.
set -u
here=$(cd "$(dirname "$0")" && pwd)
if [ $# -ne 2 ]; then
  echo "registration.sh DLL win32|win64" >&2
  exit 2
fi
windows_path() { printf 'Z:%s' "$(realpath "$1" | tr / '\\')"; }
dll=$(windows_path "$1")
folder=${dll%\\*}
classes=$here/../golden/classes.txt
# The type library's key for programs of the component's kind, and for those of the other kind.
kind=$2
other_kind=win32
[ "$kind" = win64 ] || other_kind=win64

work=$(mktemp -d)
export KVO_WINE_PREFIX=$work/prefix
# Ends only programs of this prefix.
end() {
  "$here/under-wine.sh" --end >/dev/null 2>&1
  rm -rf "$work"
}
trap end EXIT

failures=0
checks=0
complain() {
  failures=$((failures + 1))
  echo "$*"
}
wine() { "$here/under-wine.sh" "$@" </dev/null; }

# export_classes NAME: writes both class roots to NAME.machine and NAME.user, in UTF-8. Windows has
# no user classes until something registers one, and may keep an empty key afterwards.
export_classes() {
  local root file
  for root in machine:HKLM user:HKCU; do
    file=$work/$1.${root%%:*}
    rm -f "$file.reg"
    wine reg add "${root#*:}\\Software\\Classes" /f >/dev/null
    wine reg export "${root#*:}\\Software\\Classes" "Z:${file//\//\\}.reg" /y >/dev/null
    if ! iconv -f utf-16 -t utf-8 "$file.reg" | tr -d '\r' >"$file" || ! [ -s "$file" ]; then
      complain "Cannot export the registry: $file"
    fi
  done
}

# same A B: both exports are identical, byte for byte.
same() {
  local root
  for root in machine user; do
    checks=$((checks + 1))
    cmp -s "$work/$1.$root" "$work/$2.$root" || {
      complain "$2: the $root's classes differ from $1:"
      diff "$work/$1.$root" "$work/$2.$root" | head -n 10
    }
  done
}

regsvr() {
  checks=$((checks + 1))
  wine regsvr32 /s "$@" "$dll" || complain "regsvr32 $* failed: $?"
}

# flatten NAME: writes NAME.machine.flat and NAME.user.flat, with a line for each key and each
# value: the key in lower case, a tab, and reg's line for the value.
flatten() {
  local root
  for root in machine user; do
    awk '/^\[/ { key = tolower($0) } /^\[/ || /^["@]/ { print key "\t" (/^\[/ ? "" : $0) }' \
      "$work/$1.$root" >"$work/$1.$root.flat"
  done
}

small() { printf '%s' "$1" | tr '[:upper:]' '[:lower:]'; }

# expect FILE ROOT KEY NAME TEXT: the key has this text value; "@" is its default value.
expect() {
  local value="$4"
  [ "$4" = @ ] || value="\"$4\""
  checks=$((checks + 1))
  grep -qxF "$(small "[$2\\Software\\Classes\\$3]")"$'\t'"$value=\"${5//\\/\\\\}\"" "$1" ||
    complain "missing in $3: $value=\"$5\""
}

expect_key() {
  checks=$((checks + 1))
  grep -qxF "$(small "[$2\\Software\\Classes\\$3]")"$'\t' "$1" || complain "missing key: $3"
}

expect_no_key() {
  checks=$((checks + 1))
  ! grep -qxF "$(small "[$2\\Software\\Classes\\$3]")"$'\t' "$1" ||
    complain "unexpected key: $3"
}

# Prints "NAME ID" of each control and each page, in the order of the list of classes.
registered_classes() {
  local page
  sed -n 's/^\(DTC[A-Za-z]*\) \({.*}\)$/\1 \2/p' "$classes"
  for page in $(sed -n 's/^    \(prop[A-Za-z]*\)$/\1/p' "$classes" | sort -u); do
    echo "$page $(sed -n "s/^    KVO_PAGE($page, *\"\({.*}\)\").*/\1/p" "$list")"
  done
}

# library_id NAME: prints the id of a constant from the list of classes.
library_id() {
  sed -n "/ $1 =/,/;/p" "${list%.cpp}.h" | grep -o '{[0-9A-F-]\{36\}}' | head -n 1
}

list=$here/../../host/registration/classes.cpp
resources=$here/../../host/com/Resources.h
first_bitmap=$(sed -n 's/.*kFirstToolboxBitmap = \([0-9]*\);/\1/p' "$resources")
library=$(library_id kLibrary)
framework=$(library_id kFramework)
contract=$(library_id kRuntimeTextInterfaceId)
category='{40FC6ED4-2438-11CF-A3DB-080036F12502}'

# expect_all EXPORT ROOT: expects all keys of all classes.
expect_all() {
  local file=$1 root=$2 name id bitmap=0 controls=0 pages=0 key
  while read -r name id; do
    key="CLSID\\$id"
    expect "$file" "$root" "$key" @ "KVOPDesignObjects.$name"
    expect "$file" "$root" "$key\\InprocServer32" @ "$dll"
    expect "$file" "$root" "$key\\InprocServer32" ThreadingModel Apartment
    expect "$file" "$root" "$key\\ProgID" @ "KVOPDesignObjects.$name"
    expect "$file" "$root" "$key\\TypeLib" @ "$library"
    expect "$file" "$root" "$key\\Version" @ 1.0
    expect "$file" "$root" "KVOPDesignObjects.$name" @ "KVOPDesignObjects.$name"
    expect "$file" "$root" "KVOPDesignObjects.$name\\CLSID" @ "$id"
    case "$name" in
      DTC*)
        controls=$((controls + 1))
        expect_key "$file" "$root" "$key\\Control"
        expect_key "$file" "$root" "$key\\Implemented Categories\\$category"
        expect "$file" "$root" "$key\\MiscStatus" @ 0
        expect "$file" "$root" "$key\\MiscStatus\\1" @ 131473
        expect "$file" "$root" "$key\\ToolboxBitmap32" @ "$dll, $((first_bitmap + bitmap))"
        expect "$file" "$root" "$key\\Verb\\1" @ 'Eigenschaften...,0,2'
        bitmap=$((bitmap + 1))
        ;;
      *)
        pages=$((pages + 1))
        expect_no_key "$file" "$root" "$key\\Control"
        ;;
    esac
  done < <(registered_classes)
  checks=$((checks + 1))
  [ "$controls.$pages" = 12.13 ] ||
    complain "expected 12 controls and 13 pages, got $controls and $pages"
  key="TypeLib\\$library\\1.0"
  expect "$file" "$root" "$key" @ KVOPDesignObjects
  expect "$file" "$root" "$key\\0\\$kind" @ "$dll\\1"
  expect "$file" "$root" "$key\\FLAGS" @ 0
  expect "$file" "$root" "$key\\HELPDIR" @ "$folder"
  key="TypeLib\\$framework\\1.0"
  expect "$file" "$root" "$key" @ DTCFramework
  expect "$file" "$root" "$key\\0\\$kind" @ "$dll\\2"
  key="Interface\\$contract"
  expect "$file" "$root" "$key" @ IProvideRuntimeText
  expect "$file" "$root" "$key\\ProxyStubClsid32" @ '{00020424-0000-0000-C000-000000000046}'
  expect "$file" "$root" "$key\\TypeLib" @ "$framework"
  expect "$file" "$root" "$key\\TypeLib" Version 1.0
}

# round ROOT HIVE OPTION...: registers twice, checks, and unregisters.
round() {
  local root=$1 hive=$2
  shift 2
  export_classes "before-$root"
  regsvr "$@"
  export_classes "once-$root"
  flatten "once-$root"
  expect_all "$work/once-$root.$root.flat" "$hive"
  regsvr "$@"
  export_classes "twice-$root"
  same "once-$root" "twice-$root"
  # The other root must be unchanged.
  local other=user
  [ "$root" = machine ] || other=machine
  checks=$((checks + 1))
  cmp -s "$work/before-$root.$other" "$work/once-$root.$other" ||
    complain "registering for the $root changed the $other's classes"
  checks=$((checks + 1))
  ! cmp -s "$work/before-$root.$root" "$work/once-$root.$root" ||
    complain "registering for the $root changed nothing"
  regsvr /u "$@"
  export_classes "after-$root"
  same "before-$root" "after-$root"
  # Removing nothing is not a failure.
  regsvr /u "$@"
}

# Keys shared with programs of the other kind stay until their module is unregistered.
shared_stays() {
  local name id file=$work/shared.machine.flat root=HKEY_LOCAL_MACHINE
  local other="TypeLib\\$library\\1.0\\0\\$other_kind"
  export_classes before-shared
  regsvr
  wine reg add "HKLM\\Software\\Classes\\$other" /ve /d other.dll /f >/dev/null
  regsvr /u
  export_classes shared
  flatten shared
  while read -r name id; do
    expect "$file" "$root" "KVOPDesignObjects.$name\\CLSID" @ "$id"
    expect_no_key "$file" "$root" "CLSID\\$id"
  done < <(registered_classes)
  expect "$file" "$root" "$other" @ other.dll
  expect_no_key "$file" "$root" "TypeLib\\$library\\1.0\\0\\$kind"
  wine reg delete "HKLM\\Software\\Classes\\$other" /f >/dev/null
  regsvr /u
  export_classes after-shared
  same before-shared after-shared
}

round machine HKEY_LOCAL_MACHINE
shared_stays
round user HKEY_CURRENT_USER /n /i:user
echo "registration: $checks checks, $failures failures"
[ "$failures" -eq 0 ]
