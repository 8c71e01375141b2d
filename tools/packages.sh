# Sourced by ./run and ./test: installs the Debian packages that are missing.

# need_packages PACKAGE...: returns at once when all are there.
need_packages() {
  local package missing=()
  for package; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing and only root can install them. Run as root, then try again:" >&2
      echo "  apt-get update && apt-get install ${missing[*]}" >&2
      exit 2
    fi
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0)
  if ! { "${apt[@]}" update && "${apt[@]}" install --no-install-recommends -y "${missing[@]}"; } \
    >build/apt.log 2>&1; then
    tail -n 20 build/apt.log >&2
    echo "Installing failed; the lines above say why, build/apt.log has everything." >&2
    exit 2
  fi
}

# What it takes to build the programs. SOCI's headers include Boost's.
build_packages=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libsoci-dev libboost-dev)
# What it takes to build the editor. fonts-wine brings the pages' font; the translations are those of
# Qt's own dialogs.
editor_packages=(qt6-base-dev qt6-webengine-dev libqt6svg6 qt6-translations-l10n fonts-wine)
# What it takes to test everything: the shop database is tested on SQLite files and on a PostgreSQL
# server of the tests' own.
test_packages=(libgtest-dev clang-format-14 sqlite3 libsqlite3-dev postgresql strace)
# What it takes to build the Windows component: the cross compiler, the compiler of type libraries,
# and from Wine the type library of automation. ./run windows builds for 32 bit as well.
windows_packages=(g++-mingw-w64-x86-64-posix mingw-w64-tools libwine)
windows_x86_packages=(g++-mingw-w64-i686-posix)
# What it takes to test it: Wine without its 32-bit half, with a screen, a German locale and Tahoma.
# GoogleTest's sources are built for Windows.
windows_test_packages=(wine64 fonts-wine xvfb locales googletest)
# What it takes to test it for 32 bit: a Debian for i386 in a folder, and in it the Wine for such
# programs.
windows_x86_test_packages=(debootstrap xvfb googletest)
i386_packages=(wine wine32 fonts-wine locales)
# What it takes to build the core for WebAssembly and test it under Node. GoogleTest's sources are
# built for it.
web_packages=(emscripten nodejs googletest)
# What it takes to fuzz, beside building: libFuzzer and the sanitizers' runtime come with clang.
fuzz_packages=(clang libclang-rt-dev)
# What it takes to make Debian packages and check them.
packaging_packages=(dpkg-dev file lintian desktop-file-utils appstream)
# What it takes to count the lines that the tests reach.
coverage_packages=(gcovr)
# What it takes to measure everything, with what it is measured against.
bench_packages=(libbenchmark-dev pkg-config libapr1-dev libboost-dev libctemplate-dev libglib2.0-dev
  libhtmlcxx-dev libxml2-dev qt6-base-dev perl python3 libsqlite3-dev sqlite3 postgresql)
