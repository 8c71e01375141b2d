#!/usr/bin/env bash
# manual.sh PROGRAM OUT [LOCALE]: writes PROGRAM's compressed manual page for section 1, generated
# from the output of --help for the program and for each command.
set -euo pipefail
program=$1 out=$2 locale=${3:-C.UTF-8}
name=$(basename "$program")
german=
[[ $locale != de* ]] || german=1

# ask ARGUMENT...: runs the program. The locale need not be installed. Ignores what Qt leaks at
# exit.
ask() { env ASAN_OPTIONS=detect_leaks=0 LC_ALL="$locale" QT_QPA_PLATFORM=offscreen "$program" "$@"; }

# format LEVEL: formats a help text as a manual page ("page") or as the section of one command
# ("command").
format() {
  awk -v level="$1" -v name="$name" -v version="$version" -v german="$german" '
    function escaped(text) {
      gsub(/\\/, "\\e", text)
      gsub(/-/, "\\-", text)
      gsub(/\047/, "\\(aq", text)
      sub(/^\./, "\\\\\\&.", text)
      return text
    }
    function heading(english, translated) { print ".SH " (german ? translated : english) }
    NR == 1 {
      sub(/^[^:]*: /, "")
      usage = escaped($0)
      next
    }
    !described && $0 == "" { next }
    !described {
      described = 1
      summary = escaped($0)
      if (level == "page") {
        print ".TH " toupper(escaped(name)) " 1 \"\" \"" escaped(version) "\""
        heading("NAME", "BEZEICHNUNG")
        short = summary
        sub(/\.$/, "", short)
        print escaped(name) " \\- " tolower(substr(short, 1, 1)) substr(short, 2)
        heading("SYNOPSIS", "ÜBERSICHT")
        print ".B " usage
        heading("DESCRIPTION", "BESCHREIBUNG")
        print summary
      } else {
        print ".SS " usage
        print summary
      }
      next
    }
    /^[^ ].*:$/ {
      if (verbatim) print ".fi\n.RE"
      verbatim = /^(Examples|Beispiele):$/
      title = substr($0, 1, length($0) - 1)
      if (level == "page") print ".SH " toupper(title)
      else if (verbatim) print ".PP\n" title ":"
      if (verbatim) print ".PP\n.RS\n.nf"
      next
    }
    $0 == "" { next }
    verbatim { print escaped(substr($0, 3)); next }
    /^          / { sub(/^ +/, ""); print escaped($0); next }
    {
      sub(/^ +/, "")
      at = match($0, /  +/)
      print ".TP\n.B " escaped(substr($0, 1, at - 1)) "\n" escaped(substr($0, at + RLENGTH))
    }
    END { if (verbatim) print ".fi\n.RE" }'
}

version=$(ask --version)
version=${version%% (*}
help=$(ask --help)
# The names of the program's commands, if it has any.
commands=$(awk '/^(Commands|Befehle):$/ { on = 1; next } $0 == "" { on = 0 } on { print $1 }' <<<"$help")
{
  format page <<<"$help"
  if [ -n "$commands" ]; then
    if [ -n "$german" ]; then echo ".SH BEFEHLE IM EINZELNEN"; else echo ".SH COMMANDS IN DETAIL"; fi
    for command in $commands; do ask "$command" --help | format command; done
  fi
} | gzip -9n >"$out"
