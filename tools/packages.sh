# Sourced by ./run and ./test: installs missing Debian packages.

# need_packages PACKAGE...: installs those that are missing.
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

# To build the programs. SOCI's headers include Boost's.
build_packages=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libsoci-dev libboost-dev)
# To build the editor. fonts-wine contains the pages' font; the translations are for Qt's own
# dialogs.
editor_packages=(qt6-base-dev qt6-webengine-dev libqt6svg6 qt6-translations-l10n fonts-wine
                 libgumbo-dev)
# To test everything. The shop tests use SQLite files and their own PostgreSQL server.
test_packages=(libgtest-dev clang-format-14 git neovim patch sqlite3 libsqlite3-dev postgresql strace)
# To build the Windows component: the cross compiler, the type library compiler, and Wine's type
# library of automation. ./run windows also builds for 32 bit.
windows_packages=(g++-mingw-w64-x86-64-posix mingw-w64-tools libwine)
windows_x86_packages=(g++-mingw-w64-i686-posix)
# To test it: Wine without its 32-bit half, a virtual screen, a German locale and Tahoma. GoogleTest
# is built from source for Windows.
windows_test_packages=(wine64 fonts-wine xvfb locales googletest)
# To test it for 32 bit: a Debian for i386 in a folder, and in it Wine for 32-bit programs.
windows_x86_test_packages=(debootstrap xvfb googletest)
i386_packages=(wine wine32 fonts-wine locales)
# To build the core for WebAssembly and test it under Node. GoogleTest is built from source for it.
web_packages=(emscripten nodejs googletest)
# To fuzz, besides building: clang brings libFuzzer and the sanitizers' runtime.
fuzz_packages=(clang libclang-rt-dev)
# To make and check Debian packages.
packaging_packages=(dpkg-dev file lintian desktop-file-utils appstream)
# To measure test coverage.
coverage_packages=(gcovr)
# To run the benchmarks, with the libraries they compare against.
bench_packages=(libbenchmark-dev pkg-config libapr1-dev libboost-dev libctemplate-dev libglib2.0-dev
  libhtmlcxx-dev libxml2-dev qt6-base-dev perl python3 libsqlite3-dev sqlite3 postgresql)
