#!/bin/sh
# under-wine.sh PROGRAM [ARGUMENT...]: runs a Windows program in a Wine prefix of the tests' own, in
# German. The prefix is made when it is first needed. Needs an X server: the one that ./test has
# started and left the number of in build/display, else the one of DISPLAY.
set -u
build=$(cd "$(dirname "$0")/../.." && pwd)/build
export WINEPREFIX="${KVO_WINE_PREFIX:-$build/wine}" WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES='mscoree,mshtml='  # nobody is asked to install what is not used
# The locale is made here, because a bare machine has none but C.
export LOCPATH="$build/locale" LC_ALL=de_DE.UTF-8
# Nothing comes from the user's own settings.
export HOME="$build/wine-home" TZ=UTC
unset LANGUAGE WAYLAND_DISPLAY XDG_CONFIG_HOME XDG_CONFIG_DIRS XDG_DATA_HOME XDG_DATA_DIRS XDG_RUNTIME_DIR
PATH="$PATH:/usr/lib/wine"  # where Debian keeps wine64
if [ -s "$build/display" ]; then
  DISPLAY=:$(cat "$build/display")
  export DISPLAY
fi
if [ -z "${DISPLAY:-}" ]; then
  echo "Wine needs an X server; start one, such as Xvfb, and set DISPLAY." >&2
  exit 2
fi
mkdir -p "$HOME"
(
  flock 9
  [ -d "$LOCPATH/de_DE.UTF-8" ] || {
    mkdir -p "$LOCPATH"
    LC_ALL=C localedef -i de_DE -f UTF-8 "$LOCPATH/de_DE.UTF-8" || exit 2
  }
  [ -e "$WINEPREFIX/made" ] || {
    rm -rf "$WINEPREFIX"
    # No window manager runs beside the tests; Wine would wait two seconds for it at every window.
    wine64 wineboot -i >"$build/wine.log" 2>&1 &&
      wine64 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >>"$build/wine.log" 2>&1 &&
      wineserver -w &&
      # Debian's Wine brings Tahoma along and does not look where it lies.
      ln -sf /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/" &&
      touch "$WINEPREFIX/made"
  } || {
    echo "The Wine prefix could not be made; build/wine.log has everything." >&2
    exit 2
  }
) 9>"$build/wine.lock" || exit 2
# The first program in a prefix starts Wine's services. They outlive it, and whoever reads its output
# would wait for theirs as well.
wine64 cmd /c exit </dev/null >/dev/null 2>&1
exec wine64 "$@"
