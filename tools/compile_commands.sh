#!/usr/bin/env bash
# Writes compile_commands.json beside this checkout's README, where clangd finds it: how each source is
# compiled by itself, natively or for Windows. Configures only.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build
. tools/packages.sh
need_packages "${build_packages[@]}" "${editor_packages[@]}" "${test_packages[@]}" "${bench_packages[@]}" \
  "${windows_packages[@]}" "${windows_test_packages[@]}"
folder=build/clangd
cmake --preset dev -B "$folder/native" -DKVO_BENCH=ON -DKVO_FUZZ=ON >build/clangd.log
# Nothing is built there, so any file will do for the program that makes sources. As for clang-tidy, the
# commands have to name the folders of the cross-compiler's headers.
cmake --preset windows-tests -B "$folder/windows" -DKVO_UNITY=OFF -DKVO_COM_SOURCES="$PWD/test" \
  -DCMAKE_CXX_CLANG_TIDY=clang-tidy >>build/clangd.log

# Each file is a list with an object on several lines; the last lines are "}" and "]".
{
  sed '$d' "$folder/native/compile_commands.json" | sed '$s/$/,/'
  sed 1d "$folder/windows/compile_commands.json"
} >compile_commands.json

# The examples are projects of their own, and a build without a shop is another one; clangd does with
# the commands of their neighbours.
missing=0
while read -r source; do
  grep -qF "\"file\": \"$PWD/$source\"" compile_commands.json || {
    echo "Not in it: $source" >&2
    missing=1
  }
done < <(git ls-files '*.cpp' ':!examples' ':!document/shop/without')
exit $missing
