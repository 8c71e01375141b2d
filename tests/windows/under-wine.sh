#!/bin/sh
# under-wine.sh PROGRAM [ARGUMENT...]: runs a Windows program in the tests' own Wine prefix, in
# German. Creates the prefix on first use. Needs an X server: the one started by ./test, whose
# number is in build/display, or else DISPLAY.
# under-wine.sh --end ends every program in the prefix.
#   KVO_WINE_PREFIX  a prefix other than build/wine
#   KVO_WINE_ROOT    the root folder of a Debian for i386, whose 32-bit Wine is used; this checkout
#                    and /tmp must be mounted there. Needs root.
set -u
here=$(realpath "$(dirname "$0")")
build=$(realpath "$here/../..")/build
if [ -n "${KVO_WINE_ROOT:-}" ]; then
  exec setarch i686 chroot "$KVO_WINE_ROOT" /usr/bin/env -u KVO_WINE_ROOT \
    KVO_WINE_PREFIX="${KVO_WINE_PREFIX:-$build/wine32}" "$here/under-wine.sh" "$@"
fi
export WINEPREFIX="${KVO_WINE_PREFIX:-$build/wine}" WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES='mscoree,mshtml='  # suppresses prompts to install what is not used
# Creates the locale here, because a bare machine only has C.
export LOCPATH="$build/locale-$(uname -m)" LC_ALL=de_DE.UTF-8
# Ignores the user's own settings.
export HOME="$build/wine-home" TZ=UTC
unset LANGUAGE WAYLAND_DISPLAY XDG_CONFIG_HOME XDG_CONFIG_DIRS XDG_DATA_HOME XDG_DATA_DIRS XDG_RUNTIME_DIR
PATH="$PATH:/usr/lib/wine"  # Debian's folder of wine and wine64
wine=wine64
command -v "$wine" >/dev/null || wine=wine
if [ "${1:-}" = --end ]; then exec wineserver -k; fi
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
    # Without a window manager, Wine would wait two seconds for one at every window.
    "$wine" wineboot -i >"$WINEPREFIX.log" 2>&1 &&
      "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >>"$WINEPREFIX.log" 2>&1 &&
      wineserver -w &&
      # Debian's Wine includes Tahoma but does not search its folder.
      ln -sf /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts/" &&
      touch "$WINEPREFIX/made"
  } || {
    echo "Cannot create the Wine prefix; see $WINEPREFIX.log." >&2
    exit 2
  }
) 9>"$WINEPREFIX.lock" || exit 2
# The first program in a prefix starts Wine's services. They outlive it, and a reader of its output
# would wait for them as well.
"$wine" cmd /c exit </dev/null >/dev/null 2>&1
exec "$wine" "$@"
